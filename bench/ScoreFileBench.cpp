// Loading and saving a large score: 20 pages of 6 systems of 2 parts with 8 bars each and four
// notes a bar, about 24,000 objects.

#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

#include <benchmark/benchmark.h>

namespace {

QByteArray LargeScore()
{
    return corrieval::StoreScore(*corrieval::fixtures::BuildTune(corrieval::fixtures::LargeTuneShape()), {});
}

void LoadLargeScore(benchmark::State& state)
{
    const QByteArray bytes = LargeScore();
    for (auto _ : state)
        benchmark::DoNotOptimize(corrieval::ReadScore(bytes, {}));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(LoadLargeScore)->Unit(benchmark::kMillisecond);

void SaveLargeScore(benchmark::State& state)
{
    const QByteArray bytes = LargeScore();
    auto doc = corrieval::ReadScore(bytes, {});
    for (auto _ : state)
        benchmark::DoNotOptimize(corrieval::StoreScore(*doc, {}));
    state.SetBytesProcessed(state.iterations() * bytes.size());
}
BENCHMARK(SaveLargeScore)->Unit(benchmark::kMillisecond);

} // namespace
