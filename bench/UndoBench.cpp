// Undo on the large score of ScoreFileBench: what one step costs in time (a snapshot before and
// after the change) and in memory (the snapshot's bytes, one per step kept).

#include "editor/UndoHistory.h"
#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

#include <benchmark/benchmark.h>

namespace {

void RecordAndUndoLargeScore(benchmark::State& state)
{
    auto doc = corrieval::fixtures::BuildTune(corrieval::fixtures::LargeTuneShape());
    corrieval::UndoHistory history(*doc);
    for (auto _ : state) {
        history.Record(QStringLiteral("Tempo"), [&] { ++doc->Tempo; });
        history.Undo();
    }
    const QByteArray bytes = corrieval::StoreScore(*doc, {});
    state.counters["file_bytes"] = static_cast<double>(bytes.size());
    state.counters["step_bytes"] = static_cast<double>(qCompress(bytes, 1).size());
}
BENCHMARK(RecordAndUndoLargeScore)->Unit(benchmark::kMillisecond);

} // namespace
