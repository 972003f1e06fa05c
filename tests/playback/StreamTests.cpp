#include "PulseDaemon.h"
#include "TuneInMemory.h"
#include "platform/QtAudioDevice.h"
#include "playback/AudioStream.h"
#include "playback/NullAudioDevice.h"
#include "playback/PullSource.h"
#include "playback/WavExport.h"
#include "support/RecordingMessages.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

using namespace corrieval;
using namespace std::chrono_literals;

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

// The word at `index` of RampSource's tune: never 0, so that silence stands out.
std::int16_t RampWord(std::uint32_t index)
{
    return static_cast<std::int16_t>(index % 30000 + 1);
}

// A tune of `length` words counting up, pulled as from the mixer: the pull that reaches the end
// fails with a full count, later ones give silence and a count of 0. Every reset starts it again.
// Can hold a pull until released, to catch the worker inside a fill.
class RampSource final : public PullSource {
public:
    explicit RampSource(std::uint32_t length, std::uint32_t channels = 2)
        : m_length(length), m_channels(channels)
    {
    }

    PlayResult Pull(std::int16_t* destination, std::uint32_t& count) override
    {
        std::unique_lock lock(m_lock);
        ++m_pulls;
        m_holding = m_hold;
        m_changed.notify_all();
        m_changed.wait(lock, [&] { return !m_hold; });
        m_holding = false;
        if (m_finished) {
            std::fill_n(destination, count, std::int16_t{0});
            count = 0;
            return PlayFailed;
        }
        for (std::uint32_t i = 0; i < count; ++i, ++m_next)
            destination[i] = m_next < m_length ? RampWord(m_next) : 0;
        if (m_next >= m_length) {
            m_finished = true;
            m_failingPull = m_pulls;
        }
        return m_finished ? PlayFailed : PlayOk;
    }
    void Reset(bool stopping) override
    {
        std::lock_guard lock(m_lock);
        ++(stopping ? m_stoppingResets : m_startingResets);
        m_next = 0;
        m_finished = false;
    }
    std::uint32_t Channels() const override { return m_channels; }

    int Pulls() const { return Locked(m_pulls); }
    int FailingPull() const { return Locked(m_failingPull); }
    int StartingResets() const { return Locked(m_startingResets); }
    int StoppingResets() const { return Locked(m_stoppingResets); }

    // Holds the next pull (and every one after) until Release; waits until one is held.
    void HoldAndWait()
    {
        std::unique_lock lock(m_lock);
        m_hold = true;
        m_changed.wait(lock, [&] { return m_holding; });
    }
    void Release()
    {
        std::lock_guard lock(m_lock);
        m_hold = false;
        m_changed.notify_all();
    }

private:
    int Locked(const int& value) const
    {
        std::lock_guard lock(m_lock);
        return value;
    }

    const std::uint32_t m_length;
    const std::uint32_t m_channels;
    mutable std::mutex m_lock;
    std::condition_variable m_changed;
    std::uint32_t m_next = 0;
    bool m_finished = false;
    bool m_hold = false;
    bool m_holding = false;
    int m_pulls = 0;
    int m_failingPull = 0;
    int m_startingResets = 0;
    int m_stoppingResets = 0;
};

// Everything written to a null device, write by write.
class Recorder {
public:
    NullAudioDevice::Tap Tap()
    {
        return [this](const std::int16_t* words, std::uint32_t count) {
            std::lock_guard lock(m_lock);
            m_writes.emplace_back(words, words + count);
        };
    }
    std::vector<std::vector<std::int16_t>> Writes() const
    {
        std::lock_guard lock(m_lock);
        return m_writes;
    }
    std::vector<std::int16_t> Words() const
    {
        std::vector<std::int16_t> all;
        for (const auto& write : Writes())
            all.insert(all.end(), write.begin(), write.end());
        return all;
    }
    std::size_t WriteCount() const { return Writes().size(); }

private:
    mutable std::mutex m_lock;
    std::vector<std::vector<std::int16_t>> m_writes;
};

// A stream over a ramp and a null device, recording what reaches the device.
struct NullStream {
    explicit NullStream(std::uint32_t tuneWords, std::uint32_t channels = 2)
        : Source(tuneWords, channels), Stream(std::make_unique<NullAudioDevice>(Written.Tap()), Source)
    {
    }
    bool WaitForStop()
    {
        return WaitFor([&] { return !Stream.IsPlaying(); });
    }
    bool WaitForWrites(std::size_t count)
    {
        return WaitFor([&] { return Written.WriteCount() >= count; });
    }

    Recorder Written;
    RampSource Source;
    CAudioStream Stream;
};

// The words of the ramp from `first`, `count` of them.
std::vector<std::int16_t> Ramp(std::uint32_t first, std::uint32_t count)
{
    std::vector<std::int16_t> words(count);
    for (std::uint32_t i = 0; i < count; ++i)
        words[i] = RampWord(first + i);
    return words;
}

constexpr std::uint32_t kStereoBufferWords = 44100 / 2;

class StreamFills : public ::testing::TestWithParam<std::uint32_t> {};

TEST_P(StreamFills, PrimeTheWholeQuarterSecondThenRefillAboutAnEighthOfIt)
{
    const std::uint32_t channels = GetParam();
    const std::uint32_t bufferWords = channels * 44100 / 4;
    NullStream play(10 * 44100 * channels, channels);
    ASSERT_TRUE(play.Stream.Initialised());
    play.Stream.Start();
    ASSERT_TRUE(play.WaitForWrites(12));
    play.Stream.Stop();

    const auto writes = play.Written.Writes();
    EXPECT_EQ(writes.front().size(), bufferWords) << "the priming fill";
    std::vector<std::size_t> later;
    for (std::size_t i = 1; i < writes.size(); ++i)
        later.push_back(writes[i].size());
    std::nth_element(later.begin(), later.begin() + later.size() / 2, later.end());
    const std::size_t median = later[later.size() / 2];
    // An eighth when the notifications come on time; a busy machine makes some late, and larger.
    EXPECT_GT(median, bufferWords / 16);
    EXPECT_LT(median, bufferWords / 2);
    // Whatever the sizes, the words follow on without a gap or a repeat.
    EXPECT_EQ(play.Written.Words(), Ramp(0, static_cast<std::uint32_t>(play.Written.Words().size())));
}

INSTANTIATE_TEST_SUITE_P(MonoAndStereo, StreamFills, ::testing::Values(1u, 2u));

TEST(StreamDrain, TheFailingPullIsFollowedByOneWholeTripOfSilenceThenTheStop)
{
    const std::uint32_t tune = 30000;
    NullStream play(tune);
    play.Stream.Start();
    EXPECT_TRUE(play.Stream.IsPlaying());
    ASSERT_TRUE(play.WaitForStop());

    EXPECT_EQ(play.Source.Pulls(), play.Source.FailingPull() + 8);
    EXPECT_EQ(play.Source.StoppingResets(), 1);
    EXPECT_FALSE(play.Stream.IsPaused());
    // The tune is written whole, then the drain writes the silence that the finished source gives.
    const std::vector<std::int16_t> words = play.Written.Words();
    ASSERT_GT(words.size(), tune + kStereoBufferWords / 2);
    EXPECT_EQ(std::vector<std::int16_t>(words.begin(), words.begin() + tune), Ramp(0, tune));
    EXPECT_TRUE(std::all_of(words.begin() + tune, words.end(), [](std::int16_t w) { return w == 0; }));
    EXPECT_EQ(play.Stream.ShortFills(), 8u);

    // What the transport does when Loop is on: the next start plays the tune again from the top.
    play.Stream.Start();
    ASSERT_TRUE(play.WaitForStop());
    EXPECT_EQ(play.Source.StartingResets(), 2);
    const std::vector<std::int16_t> all = play.Written.Words();
    ASSERT_GE(all.size(), words.size() + tune);
    const auto again = all.begin() + static_cast<std::ptrdiff_t>(words.size());
    EXPECT_EQ(std::vector<std::int16_t>(again, again + tune), Ramp(0, tune));
}

TEST(StreamTransport, PauseKeepsThePlaceAndResumingGoesOnWithoutPrimingAgain)
{
    NullStream play(20 * 44100);
    play.Stream.Start();
    ASSERT_TRUE(play.WaitForWrites(4));
    play.Stream.TogglePause();
    EXPECT_TRUE(play.Stream.IsPaused());
    EXPECT_FALSE(play.Stream.IsPlaying());
    const int pullsWhenPaused = play.Source.Pulls();
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(play.Source.Pulls(), pullsWhenPaused);

    // A start while paused resumes, as does a second toggle.
    const std::size_t writesBefore = play.Written.WriteCount();
    play.Stream.Start();
    EXPECT_FALSE(play.Stream.IsPaused());
    EXPECT_TRUE(play.Stream.IsPlaying());
    ASSERT_TRUE(play.WaitForWrites(writesBefore + 4));
    play.Stream.TogglePause();
    play.Stream.TogglePause();
    ASSERT_TRUE(play.WaitForWrites(writesBefore + 8));
    play.Stream.Stop();

    EXPECT_EQ(play.Source.StartingResets(), 1);
    const auto writes = play.Written.Writes();
    for (std::size_t i = writesBefore; i < writes.size(); ++i)
        EXPECT_LT(writes[i].size(), kStereoBufferWords) << "write " << i << " primed again";
    EXPECT_EQ(play.Written.Words(), Ramp(0, static_cast<std::uint32_t>(play.Written.Words().size())));
}

TEST(StreamTransport, StopHaltsTheDeviceAndResetsTheSource)
{
    NullStream play(20 * 44100);
    play.Stream.Start();
    ASSERT_TRUE(play.WaitForWrites(3));
    play.Stream.Stop();
    EXPECT_FALSE(play.Stream.IsPlaying());
    EXPECT_EQ(play.Source.StoppingResets(), 1);
    const std::size_t writesAtStop = play.Written.WriteCount();
    std::this_thread::sleep_for(100ms);
    EXPECT_EQ(play.Written.WriteCount(), writesAtStop);
}

TEST(StreamInterlock, AFillThatFindsAnotherUnderWayFailsAtOnceWithoutPulling)
{
    NullStream play(20 * 44100);
    play.Stream.Start();
    ASSERT_TRUE(play.WaitForWrites(2));
    play.Source.HoldAndWait();
    const int pulls = play.Source.Pulls();
    EXPECT_EQ(play.Stream.Fill(), PlayFailed);
    EXPECT_STREQ(play.Stream.LastProblem(), "No interlock");
    EXPECT_EQ(play.Source.Pulls(), pulls);
    play.Source.Release();
    play.Stream.Stop();
}

// A device that opens with a given result and can be made to go away.
class ScriptedDevice final : public AudioDevice {
public:
    explicit ScriptedDevice(PlayResult openResult) : m_openResult(openResult) {}
    PlayResult Open(const StreamFormat&, Client& client) override
    {
        m_client = &client;
        return m_openResult;
    }
    std::uint32_t BufferBytes() const override { return 44100; }
    void Play() override { m_playing = true; }
    void Pause() override { m_playing = false; }
    void Resume() override {}
    void Stop() override { m_playing = false; }
    bool IsPlaying() const override { return m_playing; }
    std::uint32_t BytesFree() override { return 0; }
    std::uint32_t Write(const std::int16_t*, std::uint32_t) override { return 0; }

    // What the real device does when the server goes: stop, and tell the client.
    void Lose()
    {
        m_playing = false;
        m_client->OnDeviceLost(PlayFailed);
    }

private:
    PlayResult m_openResult;
    Client* m_client = nullptr;
    bool m_playing = false;
};

const QString kEngineMessage =
    QStringLiteral("The audio engine could not be initialised.\n\nError code: 0x-2147467259");

TEST(StreamWithoutSound, ADeviceThatCannotOpenIsReportedOnceAndLeavesPlayOff)
{
    corrieval::testing::RecordingMessages messages;
    RampSource source(1000);
    CAudioStream stream(std::make_unique<ScriptedDevice>(PlayFailed), source);
    EXPECT_FALSE(stream.Initialised());
    stream.Start();
    stream.TogglePause();
    EXPECT_FALSE(stream.IsPlaying());
    EXPECT_EQ(source.StartingResets(), 0);
    EXPECT_EQ(messages.Texts, QStringList{kEngineMessage});
    EXPECT_EQ(messages.LastKind, MessageKind::Warning);
}

TEST(StreamWithoutSound, NoSamplesOpenNothingAndSayNothing)
{
    corrieval::testing::RecordingMessages messages;
    RampSource source(1000, 0);
    CAudioStream stream(std::make_unique<NullAudioDevice>(), source);
    EXPECT_FALSE(stream.Initialised());
    EXPECT_TRUE(messages.Texts.isEmpty());
}

TEST(StreamWithoutSound, ADeviceLostDuringPlayEndsThePlayAndSaysSoAndPlayStaysOff)
{
    corrieval::testing::RecordingMessages messages;
    RampSource source(1000);
    auto owned = std::make_unique<ScriptedDevice>(PlayOk);
    ScriptedDevice& device = *owned;
    CAudioStream stream(std::move(owned), source);
    stream.Start();
    ASSERT_TRUE(stream.IsPlaying());
    device.Lose();
    EXPECT_FALSE(stream.IsPlaying());
    EXPECT_EQ(source.StoppingResets(), 1);
    EXPECT_EQ(messages.Texts, QStringList{kEngineMessage});
    // Play stays off: the stream has no device any more.
    EXPECT_FALSE(stream.Initialised());
    stream.Start();
    EXPECT_FALSE(device.IsPlaying());
}

// Passes the pulls of a play on, keeping every word pulled since the last start.
class TappedSource final : public PullSource {
public:
    explicit TappedSource(PullSource& inner) : m_inner(inner) {}
    PlayResult Pull(std::int16_t* destination, std::uint32_t& count) override
    {
        const PlayResult result = m_inner.Pull(destination, count);
        std::lock_guard lock(m_lock);
        m_pulled.insert(m_pulled.end(), destination, destination + count);
        return result;
    }
    void Reset(bool stopping) override
    {
        m_inner.Reset(stopping);
        std::lock_guard lock(m_lock);
        if (!stopping)
            m_pulled.clear();
    }
    std::uint32_t Channels() const override { return m_inner.Channels(); }
    std::vector<std::int16_t> Pulled() const
    {
        std::lock_guard lock(m_lock);
        return m_pulled;
    }

private:
    PullSource& m_inner;
    mutable std::mutex m_lock;
    std::vector<std::int16_t> m_pulled;
};

std::vector<std::int16_t> ReadWords(const QString& path, qint64 skip = 0)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll().mid(skip);
    std::vector<std::int16_t> words(static_cast<std::size_t>(bytes.size()) / 2);
    std::memcpy(words.data(), bytes.constData(), words.size() * 2);
    return words;
}

// The notes of a signal made from the in-memory recordings: each run of words read in order from
// one recording, as its slot and length, up to the first silence. A new note of the same pitch,
// and a recording played from its start again, begin a new run.
struct NoteRun {
    int Slot;
    std::size_t Length;
};
std::vector<NoteRun> NoteRuns(const std::vector<std::int16_t>& words)
{
    std::vector<NoteRun> runs;
    for (std::size_t i = 0; i < words.size() && words[i] != 0; ++i) {
        const bool follows =
            i > 0 &&
            corrieval::testing::SlotOfWord(words[i]) == corrieval::testing::SlotOfWord(words[i - 1]) &&
            corrieval::testing::PlaceOfWord(words[i]) ==
                (corrieval::testing::PlaceOfWord(words[i - 1]) + 1) % 997;
        if (follows)
            ++runs.back().Length;
        else
            runs.push_back({corrieval::testing::SlotOfWord(words[i]), 1});
    }
    return runs;
}

TEST(StreamThroughSoundServer, SoundsAsTheExportAndTellsWhenTheServerGoes)
{
    using corrieval::testing::PulseDaemon;
    if (!PulseDaemon::Installed())
        GTEST_SKIP() << "needs pulseaudio, parec and pactl";
    PulseDaemon daemon;
    ASSERT_TRUE(daemon.Ready());
    // Before anything of Qt Multimedia runs: it connects once, to the server named here.
    qputenv("PULSE_SERVER", daemon.Address().toLocal8Bit());

    corrieval::testing::TuneInMemory tune(2);
    TappedSource tapped(tune.Source);
    corrieval::testing::RecordingMessages messages;
    CAudioStream stream(std::make_unique<platform::QtAudioDevice>(), tapped);
    ASSERT_TRUE(stream.Initialised());

    const QString recording = daemon.Folder() + QStringLiteral("/recording.raw");
    QProcess recorder;
    recorder.start(QStringLiteral("parec"),
                   {QStringLiteral("--server=") + daemon.Address(),
                    QStringLiteral("--device=%1.monitor").arg(QLatin1String(PulseDaemon::SinkName)),
                    QStringLiteral("--format=s16le"), QStringLiteral("--rate=44100"),
                    QStringLiteral("--channels=2"), QStringLiteral("--raw"),
                    QStringLiteral("--latency-msec=20"), recording});
    ASSERT_TRUE(WaitFor([&] {
        const auto outputs =
            daemon.Pactl({QStringLiteral("list"), QStringLiteral("short"), QStringLiteral("source-outputs")});
        return outputs && !outputs->trimmed().isEmpty();
    }));
    stream.Start();
    ASSERT_TRUE(WaitFor([&] { return !stream.IsPlaying(); }, 20s));
    recorder.terminate();
    ASSERT_TRUE(recorder.waitForFinished(5000));

    // The server played what the stream pulled, word for word: nothing dropped, nothing played
    // twice, no silence let in by an underrun.
    const std::vector<std::int16_t> pulled = tapped.Pulled();
    const std::vector<std::int16_t> recorded = ReadWords(recording);
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
    const std::vector<NoteRun> heard = NoteRuns(std::vector<std::int16_t>(firstSound, recorded.end()));
    const std::vector<NoteRun> written = NoteRuns(ReadWords(exported, 56));
    ASSERT_EQ(heard.size(), written.size());
    ASSERT_EQ(heard.size(), 8u);
    for (std::size_t i = 0; i < heard.size(); ++i) {
        EXPECT_EQ(heard[i].Slot, written[i].Slot) << "note " << i;
        EXPECT_NEAR(static_cast<double>(heard[i].Length), static_cast<double>(written[i].Length), 150)
            << "note " << i;
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
