// WAV export of a two-part tune (8 bars of four crotchets on 2 systems, 74 bpm: 26 s of sound),
// through the same pulls as live play, to a file. "x_realtime" is seconds of sound rendered per
// second of wall-clock time: the multiple of real time. Memory is the process's resident set after the
// exports and its peak, which include the 9 MiB sample bank, and the growth of the resident set over the
// exports.

#include "fixtures/ScoreFixtures.h"
#include "model/CorrievalDoc.h"
#include "playback/PullSource.h"
#include "playback/SampleBank.h"
#include "playback/SampleMixer.h"
#include "playback/TuneSequence.h"
#include "playback/WavExport.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace corrieval;

// Resident and peak resident memory of this process in MiB, from /proc.
double ProcStatusMiB(const char* field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith(field))
            return line.mid(static_cast<qsizetype>(std::strlen(field)))
                       .trimmed()
                       .split(' ')
                       .front()
                       .toDouble() /
                   1024;
    }
    return 0;
}

void ExportTuneToWav(benchmark::State& state)
{
    for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot) {
        std::int16_t* words = SampleBank::Slot(slot);
        for (std::size_t i = 0; i < SampleBank::FilledWords; ++i)
            words[i] = static_cast<std::int16_t>((i * (slot + 3)) % 20000);
    }
    fixtures::TuneShape shape;
    shape.Columns = 8;
    shape.NotesPerBar = 4;
    const auto doc = fixtures::BuildTune(shape);
    CTuneSequence sequence(doc.get());
    CSampleMixer mixer;
    mixer.SetInstrument({.Loaded = true, .Channels = 2, .Problem = {}});
    mixer.SetSequence(&sequence);
    mixer.SetTempo(74);
    mixer.SetPart(0);
    MixerSource source(mixer);
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tune.wav"));

    const double residentBefore = ProcStatusMiB("VmRSS:");
    double seconds = 0;
    for (auto _ : state) {
        QString problem;
        if (!Succeeded(ExportWav(source, path, problem)))
            state.SkipWithError(qPrintable(problem));
        seconds += static_cast<double>(QFileInfo(path).size() - 56) / (44100 * 4);
    }
    state.counters["x_realtime"] = benchmark::Counter(seconds, benchmark::Counter::kIsRate);
    state.counters["rss_MiB"] = ProcStatusMiB("VmRSS:");
    state.counters["peak_rss_MiB"] = ProcStatusMiB("VmHWM:");
    state.counters["rss_growth_MiB"] = ProcStatusMiB("VmRSS:") - residentBefore;
}
BENCHMARK(ExportTuneToWav)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
