#include "cli/CommandLine.h"
#include "cli/Commands.h"
#include "cli/PlayOptions.h"
#include "model/CorrievalDoc.h"
#include "platform/QtAudioDevice.h"
#include "playback/AudioStream.h"
#include "playback/NullAudioDevice.h"
#include "playback/WavExport.h"

#include <QEventLoop>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <unistd.h>
#include <unordered_map>

namespace corrieval::cli {

namespace {

volatile std::sig_atomic_t g_interrupted = 0;

// Ctrl-C (or a polite kill) ends the play at the next look at the clock, within 50 ms.
extern "C" void OnInterrupt(int)
{
    g_interrupted = 1;
}

// "1:05.3"
QString ClockText(double seconds)
{
    const int tenths = static_cast<int>(seconds * 10);
    return QStringLiteral("%1:%2.%3")
        .arg(tenths / 600)
        .arg(tenths / 10 % 60, 2, 10, QLatin1Char('0'))
        .arg(tenths % 10);
}

// Where a play stands in the score: the bars of the first part, numbered from 1 in written
// order, and which of them holds the note sounding at a given moment.
class BarFinder {
public:
    explicit BarFinder(const PreparedTune& tune) : m_list(tune.Sequence.PlayList(0))
    {
        const CBarEx* lastBar = nullptr;
        for (const CNoteSample* record : tune.Sequence.WrittenList(0)) {
            if (record->IsRepeatLine())
                continue;
            if (record->Bar != lastBar) {
                lastBar = record->Bar;
                ++m_barCount;
            }
            m_barOfNote.emplace(record->Note, m_barCount);
        }
        // Real time runs at the word rate over the channels, the mixer's clock at the word rate.
        m_ticksPerSecond = tune.Mixer.TicksPerSecond() * tune.Mixer.Channels();
    }

    int BarCount() const { return m_barCount; }
    double Seconds() const { return m_list.empty() ? 0 : TicksEnd(m_list.size() - 1) / m_ticksPerSecond; }
    // The bar sounding `seconds` into the play; 0 once the play list has run out.
    int BarAt(double seconds) const
    {
        const double ticks = seconds * m_ticksPerSecond;
        const auto at = std::partition_point(
            m_list.begin(), m_list.end(), [&](const CNoteSample* record) { return record->Start <= ticks; });
        if (at == m_list.begin() || ticks >= TicksEnd(m_list.size() - 1))
            return 0;
        const auto found = m_barOfNote.find((*(at - 1))->Note);
        return found != m_barOfNote.end() ? found->second : 0;
    }

private:
    double TicksEnd(std::size_t index) const
    {
        return static_cast<double>(m_list[index]->Start) + m_list[index]->Length;
    }

    const CNoteSampleArray& m_list;
    std::unordered_map<const CNoteEx*, int> m_barOfNote;
    int m_barCount = 0;
    double m_ticksPerSecond = 0;
};

const CommandHelp kHelp{"play", "play TUNE [OPTIONS]",
                        "Plays a tune through the sound server until it ends, showing the time and the bar: "
                        "on a terminal in one line rewritten in place, elsewhere a line for each bar. Ctrl-C "
                        "stops it."};

// The options of play; the tune is its one positional argument.
struct PlayLine : CommandLine {
    PlayOptions Play;
    QCommandLineOption Loop{QStringLiteral("loop"),
                            QStringLiteral("play the tune again and again until Ctrl-C")};
    QCommandLineOption NoSound{QStringLiteral("no-sound"),
                               QStringLiteral("go through the tune at its pace without a sound device")};

    PlayLine() : CommandLine(kHelp) { Add(Play.Options() + QList{Loop, NoSound}); }
};

// Plays until the tune ends (and, looping, until Ctrl-C), showing where it stands: on a terminal
// in one line rewritten in place, elsewhere a line for each bar.
int Perform(const PreparedTune& tune, CAudioStream& stream, bool loop, QTextStream& out)
{
    using Clock = std::chrono::steady_clock;
    const bool terminal = isatty(STDOUT_FILENO) != 0;
    stream.Start();
    Clock::time_point started = Clock::now();
    const BarFinder bars(tune);
    const QString total = ClockText(bars.Seconds());
    int shownBar = -1;
    int status = Success;

    QEventLoop events;
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&] {
        const double seconds = std::chrono::duration<double>(Clock::now() - started).count();
        const bool ended = !stream.IsPlaying() && !stream.IsPaused();
        if (!stream.Initialised()) {
            // The sound server went away; the stream has said so.
            status = FileFailed;
        } else if (ended && loop && g_interrupted == 0) {
            stream.Start();
            started = Clock::now();
            return;
        } else if (!ended && g_interrupted == 0) {
            const int bar = bars.BarAt(seconds);
            if (terminal || bar != shownBar) {
                const QString where = bar > 0 ? QStringLiteral("bar %1 of %2").arg(bar).arg(bars.BarCount())
                                              : QStringLiteral("ending");
                out << (terminal ? "\r" : "") << ClockText(std::min(seconds, bars.Seconds())) << " / "
                    << total << "  " << where.leftJustified(16) << (terminal ? "" : "\n") << Qt::flush;
                shownBar = bar;
            }
            return;
        }
        stream.Stop();
        events.quit();
    });
    clock.start(std::chrono::milliseconds(50));
    events.exec();
    if (terminal)
        out << '\n' << Qt::flush;
    return status;
}

} // namespace

int RunPlay(const QStringList& args, QTextStream& out, QTextStream& err)
{
    PlayLine line;
    if (const auto status = line.Parse(args, out, err))
        return *status;
    const auto file = line.OneTune(err);
    if (!file)
        return BadCommandLine;
    const auto settings = line.Play.Read(line.Parser());
    if (const QString* problem = std::get_if<QString>(&settings))
        return line.Wrong(err, *problem);

    // From here on Ctrl-C ends the play cleanly, even one that comes while the tune is loading.
    g_interrupted = 0;
    std::signal(SIGINT, OnInterrupt);
    std::signal(SIGTERM, OnInterrupt);
    return GuardFileErrors(err, [&] {
        const auto tune = PrepareTune(*file, std::get<PlaySettings>(settings));
        std::unique_ptr<AudioDevice> device;
        if (line.Parser().isSet(line.NoSound))
            device = std::make_unique<NullAudioDevice>();
        else
            device = std::make_unique<platform::QtAudioDevice>();
        // Without a sound device the stream has told the user why.
        CAudioStream stream(std::move(device), tune->Source);
        if (!stream.Initialised())
            return static_cast<int>(FileFailed);
        return Perform(*tune, stream, line.Parser().isSet(line.Loop), out);
    });
}

int ConvertToWav(const QString& in, const QString& out, const PlaySettings& settings, QTextStream& stdOut,
                 QTextStream& err, bww::ImportLog* log)
{
    return GuardFileErrors(err, [&] {
        const auto tune = PrepareTune(in, settings, log);
        QString problem;
        if (!Succeeded(ExportWav(tune->Source, out, problem)))
            throw FileError(out, problem);
        stdOut << out << Qt::endl;
        return static_cast<int>(Success);
    });
}

} // namespace corrieval::cli
