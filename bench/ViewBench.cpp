// Painting the score view's back buffer: a whole page of the large tune at 100% and 200%, as a
// newly shown or scrolled window paints it, and the rectangle of one changed note, as typing a
// note repaints it.

#include "editor/CorrievalView.h"
#include "editor/ViewHost.h"
#include "fixtures/ScoreFixtures.h"
#include "model/CorrievalDoc.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"

#include <benchmark/benchmark.h>

namespace {

using namespace corrieval;

class BenchHost : public ViewHost {
public:
    QString TakePendingImport() override { return {}; }
    bool AutoZoom() const override { return false; }
    void ZoomChanged(const CCorrievalView&, float) override {}
    void TuneImported(CCorrievalView&, int) override {}
    CNoteBase* PalettePrototype(int) const override { return nullptr; }
    PaletteRange PaletteEntries(int) const override { return {}; }
    bool RestartPlay() override { return false; }
    void ShowContextMenu(const QPoint&) override {}
};

// A view of the large tune at `percent`, active as in the program, its window as large as a page.
struct BenchView {
    explicit BenchView(int percent) : Doc(fixtures::BuildTune(fixtures::LargeTuneShape())), View(*Doc, Host)
    {
        SetActiveViewProvider([this] { return &View; });
        View.SetZoom(percent);
        const CTunePage& page = *Doc->Pages.front();
        View.resize(View.Transform().DocumentRectToDevice(page.Bounds()).size() + QSize(40, 40));
        View.OnUpdate();
    }
    ~BenchView() { SetActiveViewProvider(nullptr); }

    QRect DeviceRect(const RectF& rect) const { return View.Transform().DocumentRectToDevice(rect); }

    BenchHost Host;
    std::unique_ptr<CCorrievalDoc> Doc;
    CCorrievalView View;
};

void PaintFullPage(benchmark::State& state)
{
    BenchView bench(static_cast<int>(state.range(0)));
    const QRect page = bench.DeviceRect(bench.Doc->Pages.front()->Bounds());
    for (auto _ : state)
        benchmark::DoNotOptimize(bench.View.PaintBackBuffer(page).constBits());
    state.SetLabel(QStringLiteral("%1 x %2 px").arg(page.width()).arg(page.height()).toStdString());
}
BENCHMARK(PaintFullPage)->Arg(100)->Arg(200)->Unit(benchmark::kMillisecond);

const CNoteEx* FirstNote(const CScoObj& object)
{
    if (const auto* note = dynamic_cast<const CNoteEx*>(&object))
        return note;
    if (const auto* container = dynamic_cast<const CGraphObjContainer*>(&object)) {
        for (const auto& child : container->Children()) {
            if (const CNoteEx* found = FirstNote(*child))
                return found;
        }
    }
    return nullptr;
}

void PaintChangedNote(benchmark::State& state)
{
    BenchView bench(100);
    const CNoteEx* note = FirstNote(*bench.Doc->Pages.front());
    if (note == nullptr) {
        state.SkipWithError("the tune has no note");
        return;
    }
    const QRect dirty = bench.DeviceRect(InvalidationBounds(note->GetBounds()));
    for (auto _ : state)
        benchmark::DoNotOptimize(bench.View.PaintBackBuffer(dirty).constBits());
}
BENCHMARK(PaintChangedNote)->Unit(benchmark::kMicrosecond);

} // namespace
