// Building the play lists of a large tune, as every start of play does: 20 pages of 6 systems of
// 2 parts with 8 bars of four crotchets, every system repeated: 7,680 notes written, 15,360 played.

#include "fixtures/ScoreFixtures.h"
#include "model/CorrievalDoc.h"
#include "playback/TuneSequence.h"

#include <benchmark/benchmark.h>

namespace {

void BuildLargeSequence(benchmark::State& state)
{
    const auto doc = corrieval::fixtures::BuildTune(corrieval::fixtures::LargeTuneShape());
    corrieval::CTuneSequence sequence(doc.get());
    for (auto _ : state) {
        sequence.Build(nullptr);
        benchmark::DoNotOptimize(sequence.PlayList(0).data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sequence.PlayList(0).size() +
                                                                           sequence.PlayList(1).size()));
}
BENCHMARK(BuildLargeSequence)->Unit(benchmark::kMillisecond);

} // namespace
