#include "notation/MusicFont.h"

#include <QGuiApplication>

#include <benchmark/benchmark.h>

#include <cstdio>

// Drawing needs a GUI application and the music font; the benchmarks run without a display.
int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (const QString problem = corrieval::LoadMusicFont(); !problem.isEmpty())
        std::fprintf(stderr, "corrieval-bench: %s Symbols are not drawn.\n", qPrintable(problem));
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
