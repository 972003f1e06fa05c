// Drawing a dense score to PNG at 300 dpi, as the command-line tool does: four A4 pages of six
// systems of two parts, eight bars a stave and eight notes a bar. Each iteration draws and encodes
// the next page, so the time is per page; eight iterations draw each page twice.

#include "fixtures/ScoreFixtures.h"
#include "model/CorrievalDoc.h"
#include "platform/PageExport.h"

#include <QBuffer>
#include <QImage>

#include <benchmark/benchmark.h>

namespace {

void DrawDensePageToPng(benchmark::State& state)
{
    const auto doc = corrieval::fixtures::BuildTune(
        {.Pages = 4, .Groups = 6, .Parts = 2, .Columns = 8, .NotesPerBar = 8, .Repeats = true});
    std::size_t next = 0;
    for (auto _ : state) {
        corrieval::CTunePage& page = *doc->Pages[next++ % doc->Pages.size()];
        const QImage image =
            corrieval::platform::RenderPageImage(*doc, page, 300, corrieval::OutputMode::Screen);
        QBuffer png;
        png.open(QIODevice::WriteOnly);
        image.save(&png, "PNG");
        benchmark::DoNotOptimize(png.data().size());
    }
    state.SetLabel("ms per page");
}
BENCHMARK(DrawDensePageToPng)->Unit(benchmark::kMillisecond)->Iterations(8);

} // namespace
