#include "notation/MusicFont.h"

#include <QApplication>

#include <benchmark/benchmark.h>

#include <cstdio>

// Drawing needs the music font and the score view a widget application; the benchmarks run
// without a display.
int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    if (const QString problem = corrieval::LoadMusicFont(); !problem.isEmpty())
        std::fprintf(stderr, "corrieval-bench: %s Symbols are not drawn.\n", qPrintable(problem));
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
