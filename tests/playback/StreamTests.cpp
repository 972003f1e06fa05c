// The stream end to end through a PulseAudio daemon of the test's own: what the server plays is
// what was pulled, it sounds as the export does, and the stream tells when the server goes.

#include "TuneInMemory.h"
#include "platform/QtAudioDevice.h"
#include "playback/AudioStream.h"
#include "playback/PullSource.h"
#include "playback/WavExport.h"
#include "support/PulseDaemon.h"
#include "support/RecordingMessages.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <algorithm>
#include <chrono>
#include <cstring>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

using namespace corrieval;
using namespace std::chrono_literals;
using corrieval::testing::PulseDaemon;
using corrieval::testing::TuneInMemory;
using Words = std::vector<std::int16_t>;

namespace {

// Waits, running the event loop, until `done` holds; false after `limit`.
template <class Condition> bool WaitFor(Condition done, std::chrono::milliseconds limit = 5s)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        QCoreApplication::processEvents();
        std::this_thread::sleep_for(2ms);
    }
    return true;
}

// Passes a play's pulls on, keeping every word pulled since the last start.
class TappedSource final : public PullSource {
public:
    explicit TappedSource(PullSource& inner) : m_inner(inner) {}
    PlayResult Pull(std::int16_t* destination, std::uint32_t& count) override
    {
        const PlayResult result = m_inner.Pull(destination, count);
        const std::lock_guard lock(m_lock);
        m_pulled.insert(m_pulled.end(), destination, destination + count);
        return result;
    }
    void Reset(bool stopping) override
    {
        m_inner.Reset(stopping);
        const std::lock_guard lock(m_lock);
        if (!stopping)
            m_pulled.clear();
    }
    std::uint32_t Channels() const override { return m_inner.Channels(); }
    Words Pulled() const
    {
        const std::lock_guard lock(m_lock);
        return m_pulled;
    }

private:
    PullSource& m_inner;
    mutable std::mutex m_lock;
    Words m_pulled;
};

const QString kEngineMessage =
    QStringLiteral("The audio engine could not be initialised.\n\nError code: 0x-2147467259");

Words ReadWords(const QString& path, qint64 skip = 0)
{
    QFile file(path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll().mid(skip) : QByteArray();
    Words words(static_cast<std::size_t>(bytes.size()) / 2);
    std::memcpy(words.data(), bytes.constData(), words.size() * 2);
    return words;
}

// The notes of a signal made from the in-memory recordings: each run of words read in order from
// one recording, as its slot and length, up to the first silence. A new note of the same pitch,
// and a recording played from its start again, begin a new run.
std::vector<std::pair<int, std::size_t>> NoteRuns(const Words& words)
{
    // Word i of recording s is 1000 (s + 1) + i mod 997 + 1.
    const auto slot = [](std::int16_t word) { return (word - 1) / 1000 - 1; };
    const auto place = [](std::int16_t word) { return (word - 1) % 1000; };
    std::vector<std::pair<int, std::size_t>> runs;
    for (std::size_t i = 0; i < words.size() && words[i] != 0; ++i) {
        if (i > 0 && slot(words[i]) == slot(words[i - 1]) &&
            place(words[i]) == (place(words[i - 1]) + 1) % 997)
            ++runs.back().second;
        else
            runs.emplace_back(slot(words[i]), 1);
    }
    return runs;
}

TEST(StreamThroughSoundServer, SoundsAsTheExportAndTellsWhenTheServerGoes)
{
    if (!PulseDaemon::Installed())
        GTEST_SKIP() << "needs pulseaudio, parec and pactl";
    PulseDaemon daemon;
    ASSERT_TRUE(daemon.Ready());
    // Before anything of Qt Multimedia runs: it connects once, to the server named here.
    qputenv("PULSE_SERVER", daemon.Address().toLocal8Bit());

    TuneInMemory tune(2);
    TappedSource tapped(tune.Source);
    corrieval::testing::RecordingMessages messages;
    CAudioStream stream(std::make_unique<platform::QtAudioDevice>(), tapped);
    ASSERT_TRUE(stream.Initialised());

    const QString recording = daemon.Folder() + QStringLiteral("/recording.raw");
    QProcess recorder;
    const QStringList parec = QProcess::splitCommand(
        QStringLiteral("parec --server=%1 --device=%2.monitor --format=s16le --rate=44100 --channels=2 --raw "
                       "--latency-msec=20")
            .arg(daemon.Address(), QLatin1String(PulseDaemon::SinkName)));
    recorder.start(parec.front(), parec.mid(1) << recording);
    // The monitor of the null sink gives silence from the moment parec is connected.
    ASSERT_TRUE(WaitFor([&] { return QFileInfo(recording).size() > 0; }));
    stream.Start();
    ASSERT_TRUE(WaitFor([&] { return !stream.IsPlaying(); }, 20s));
    recorder.terminate();
    ASSERT_TRUE(recorder.waitForFinished(5000));

    // The server played what the stream pulled, word for word: nothing dropped, nothing played
    // twice, no silence let in by an underrun.
    const Words pulled = tapped.Pulled();
    const Words recorded = ReadWords(recording);
    const auto firstSound =
        std::find_if(recorded.begin(), recorded.end(), [](std::int16_t w) { return w != 0; });
    const auto lastPulled =
        std::find_if(pulled.rbegin(), pulled.rend(), [](std::int16_t w) { return w != 0; });
    ASSERT_NE(lastPulled, pulled.rend());
    const auto tuneWords = pulled.rend() - lastPulled;
    ASSERT_GE(recorded.end() - firstSound, tuneWords);
    EXPECT_TRUE(std::equal(pulled.begin(), pulled.begin() + tuneWords, firstSound));

    // And it sounds as the export: the same notes in the same order. The lengths differ a little
    // by design: at each pull the mixer works out afresh from the words it has used how much of
    // the note under way is left, in whole ticks, so pulls of other sizes cut notes a few dozen
    // words apart.
    QString problem;
    const QString exported = daemon.Folder() + QStringLiteral("/export.wav");
    ASSERT_EQ(ExportWav(tune.Source, exported, problem), PlayOk) << problem.toStdString();
    const auto heard = NoteRuns(Words(firstSound, recorded.end()));
    const auto written = NoteRuns(ReadWords(exported, 56));
    ASSERT_EQ(heard.size(), 8u);
    ASSERT_EQ(written.size(), 8u);
    for (std::size_t i = 0; i < heard.size(); ++i) {
        EXPECT_EQ(heard[i].first, written[i].first) << "note " << i;
        EXPECT_NEAR(double(heard[i].second), double(written[i].second), 150) << "note " << i;
    }
    EXPECT_TRUE(messages.Texts.isEmpty());

    // The server goes away in the middle of a play.
    stream.Start();
    ASSERT_TRUE(WaitFor([&] { return tapped.Pulled().size() > 30000; }));
    daemon.Stop();
    EXPECT_TRUE(WaitFor([&] { return !messages.Texts.isEmpty(); }));
    EXPECT_FALSE(stream.IsPlaying());
    EXPECT_EQ(messages.Texts, QStringList{kEngineMessage});
}

} // namespace
