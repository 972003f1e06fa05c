#include "playback/SampleBank.h"
#include "playback/WaveFile.h"
#include "samples/GeneratorOptions.h"
#include "samples/LoopMaker.h"
#include "samples/PitchMeasure.h"
#include "samples/Resampler.h"
#include "samples/SampleGenerator.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace corrieval::samples {
namespace {

constexpr double Rate = 44100;
// What the player loops of a stereo file: half the 524,288 bytes it reads.
constexpr std::size_t LoopFrames = SampleBank::FilledBytes / 8;

// A tone of five harmonics at `hz`, and another of three at `otherHz` when that is given.
std::vector<float> Tone(double hz, std::size_t frames, double otherHz = 0)
{
    std::vector<float> tone(frames);
    for (std::size_t n = 0; n < frames; ++n) {
        const double t = static_cast<double>(n) / Rate;
        double value = 0;
        for (int h = 1; h <= 5; ++h)
            value += 0.2 / h * std::sin(2 * std::numbers::pi * h * hz * t + h);
        for (int h = 1; h <= 3 && otherHz > 0; ++h)
            value += 0.2 * std::sin(2 * std::numbers::pi * h * otherHz * t);
        tone[n] = static_cast<float>(value);
    }
    return tone;
}

TEST(PitchMeasure, FindsATonesPitchBesideAnother)
{
    // A chanter's B over a bass drone's fourth and fifth harmonics, 13 Hz and 47 Hz away.
    const std::vector<float> tone = Tone(540.0123, 150000, 106.75);
    EXPECT_NEAR(CentsFrom(540.0123, MeasureFrequency(tone, Rate, 540)), 0, 0.001);
    // Found from anywhere within 60 cents.
    EXPECT_NEAR(CentsFrom(540.0123, MeasureFrequency(tone, Rate, 540 * std::exp2(-55.0 / 1200))), 0, 0.001);
    EXPECT_EQ(MeasureFrequency(std::vector<float>(1000), Rate, 540), 0) << "too short to tell";
}

TEST(Resampler, RaisesThePitchByItsRatioAndKeepsTheLevel)
{
    const double ratio = std::exp2(3.7 / 1200);
    StereoSound sound{Tone(431.3, 120000), Tone(431.3, 120000)};
    const StereoSound faster = Resampler().Resample(sound, Resampler::Margin, ratio, 100000);
    ASSERT_EQ(faster.Frames(), 100000u);
    EXPECT_NEAR(CentsFrom(431.3, MeasureFrequency(faster.Left, Rate, 431.3)), 3.7, 0.001);
    double before = 0;
    double after = 0;
    for (std::size_t n = 1000; n < 99000; ++n) {
        before += double(sound.Left[n]) * sound.Left[n];
        after += double(faster.Right[n]) * faster.Right[n];
    }
    EXPECT_NEAR(10 * std::log10(after / before), 0, 0.01);
}

double LargestStep(const std::vector<float>& sound, std::size_t frames)
{
    double largest = 0;
    for (std::size_t n = 1; n < frames; ++n)
        largest = std::max(largest, double(std::abs(sound[n] - sound[n - 1])));
    return largest;
}

TEST(LoopMaker, JoinsALoopThatHoldsNoWholeNumberOfPeriods)
{
    // 441.3 Hz repeats every 99.93 frames; a swell of 0.6 Hz makes the level matter too.
    StereoSound steady{Tone(441.3, 160000), Tone(441.3, 160000)};
    for (std::size_t n = 0; n < steady.Frames(); ++n)
        steady.Right[n] *= static_cast<float>(1 + 0.3 * std::sin(2 * std::numbers::pi * 0.6 * n / Rate));
    const std::size_t start = ChooseLoopStart(steady, LoopFrames);
    ASSERT_GE(start, LoopBlendFrames);
    ASSERT_LE(start, steady.Frames() - LoopFrames);
    const auto from = static_cast<std::ptrdiff_t>(start - LoopBlendFrames);
    const auto to = static_cast<std::ptrdiff_t>(start + LoopFrames);
    const StereoSound leadAndLoop{{steady.Left.begin() + from, steady.Left.begin() + to},
                                  {steady.Right.begin() + from, steady.Right.begin() + to}};
    const StereoSound loop = CloseLoop(leadAndLoop, LoopFrames);
    ASSERT_EQ(loop.Frames(), LoopFrames);
    EXPECT_EQ(loop.Left.front(), steady.Left[start]);
    for (const std::vector<float>* channel : {&loop.Left, &loop.Right}) {
        const double join = std::abs(channel->front() - channel->back());
        EXPECT_LE(join, LargestStep(*channel, LoopFrames));
    }
    // The level before the end matches that before the start, within a quarter of a decibel.
    double beforeEnd = 0;
    double beforeStart = 0;
    for (std::size_t n = 0; n < 2048; ++n) {
        beforeEnd +=
            double(steady.Right[start + LoopFrames - 1 - n]) * steady.Right[start + LoopFrames - 1 - n];
        beforeStart += double(steady.Right[start - 1 - n]) * steady.Right[start - 1 - n];
    }
    EXPECT_NEAR(10 * std::log10(beforeEnd / beforeStart), 0, 0.25);
}

TEST(GeneratorOptions, ReadsTheCommandLine)
{
    GeneratorOptions options;
    ASSERT_EQ(ParseGeneratorArguments(
                  {QStringLiteral("out"), QStringLiteral("--instrument"), QStringLiteral("spc"),
                   QStringLiteral("--instrument=ch"), QStringLiteral("--pipe-low-a"), QStringLiteral("470"),
                   QStringLiteral("--ratios"), QStringLiteral("8/9, 1,1.125,5/4,4/3,3/2,27/16,7/4,2")},
                  options),
              QString());
    EXPECT_EQ(options.Folder, QStringLiteral("out"));
    EXPECT_EQ(options.Instruments, (std::vector{Instrument::SmallpipesC, Instrument::Chanter}));
    EXPECT_EQ(options.PipeLowA, 470);
    EXPECT_EQ(options.ConcertA, 440);
    EXPECT_DOUBLE_EQ(options.Ratios[6], 27.0 / 16);

    EXPECT_EQ(ParseGeneratorArguments({QStringLiteral("--instrument"), QStringLiteral("bag")}, options),
              QStringLiteral("unknown instrument 'bag' (bp, ch, sp, spa, spc or spd)"));
    EXPECT_EQ(ParseGeneratorArguments({QStringLiteral("--ratios"), QStringLiteral("1,2")}, options),
              QStringLiteral("--ratios takes nine ratios, Low G to High A, not 2"));
    EXPECT_EQ(
        ParseGeneratorArguments({QStringLiteral("--ratios"), QStringLiteral("1,1,1,1,1,1,1,1,x/2")}, options),
        QStringLiteral("--ratios: 'x/2' is not a ratio from 1/4 to 4"));
    EXPECT_EQ(ParseGeneratorArguments({QStringLiteral("--concert-a"), QStringLiteral("44")}, options),
              QStringLiteral("--concert-a takes a frequency from 100 to 1000 Hz, not '44'"));
    EXPECT_FALSE(ParseGeneratorArguments({QStringLiteral("a"), QStringLiteral("b")}, options).isEmpty());
    EXPECT_FALSE(ParseGeneratorArguments({QStringLiteral("--louder")}, options).isEmpty());
}

// One file as the player would see it: its format and the words it holds.
struct SampleFile {
    WaveFormat Format;
    std::uint32_t DataBytes = 0;
    std::vector<std::int16_t> Words;

    std::vector<float> Channel(int channel, std::size_t frames) const
    {
        std::vector<float> samples(frames);
        for (std::size_t f = 0; f < frames; ++f)
            samples[f] = Words[2 * f + static_cast<std::size_t>(channel)] / 32768.0f;
        return samples;
    }
    std::vector<float> Mono(std::size_t frames) const
    {
        std::vector<float> mono = Channel(0, frames);
        const std::vector<float> right = Channel(1, frames);
        for (std::size_t f = 0; f < frames; ++f)
            mono[f] += right[f];
        return mono;
    }
};

SampleFile ReadSample(const QString& path)
{
    SampleFile sample;
    CWaveFile file;
    std::uint32_t read = 0;
    sample.Words.resize(SampleBank::FilledWords);
    EXPECT_TRUE(Succeeded(file.Open(path)) && Succeeded(file.ReadHeader()) && Succeeded(file.ResetToData()) &&
                Succeeded(file.Read(sample.Words.data(), SampleBank::FilledBytes, read)))
        << path.toStdString() << ": " << file.ErrorString().toStdString();
    sample.Format = file.Format();
    sample.DataBytes = file.DataSize();
    return sample;
}

QString PathOf(const QTemporaryDir& folder, Instrument instrument, int number)
{
    return QDir(folder.path()).filePath(SampleFileName(instrument, number));
}

void ExpectPlayable(const QTemporaryDir& folder, Instrument instrument)
{
    for (int number = 1; number <= 9; ++number) {
        const SampleFile sample = ReadSample(PathOf(folder, instrument, number));
        EXPECT_EQ(sample.Format.FormatTag, WaveFormat::PcmTag);
        EXPECT_EQ(sample.Format.Channels, 2);
        EXPECT_EQ(sample.Format.SamplesPerSecond, 44100u);
        EXPECT_EQ(sample.Format.BitsPerSample, 16);
        EXPECT_GE(sample.DataBytes, SampleBank::FilledBytes);
    }
    const InstrumentLoad load = LoadInstrument(instrument, folder.path() + QLatin1Char('/'));
    EXPECT_TRUE(load.Loaded) << load.Problem.toStdString();
    EXPECT_EQ(load.Channels, 2u);
}

// Measured over the stretch the player loops, less the blend at its end: what a held note plays.
void ExpectInTune(const QTemporaryDir& folder)
{
    const GeneratorOptions defaults;
    constexpr std::size_t Steady = LoopFrames - LoopBlendFrames;
    for (int number = 1; number <= 9; ++number) {
        const double target = defaults.PipeLowA * defaults.Ratios[static_cast<std::size_t>(number - 1)];
        const SampleFile chanter = ReadSample(PathOf(folder, Instrument::Chanter, number));
        EXPECT_NEAR(CentsFrom(target, MeasureFrequency(chanter.Mono(Steady), Rate, target)), 0, 0.1)
            << "ch" << number;
        // The pipes' chanter is tuned alone to 0.1 cent, but its sample beats, and in five notes
        // of the nine a drone harmonic sounds at the same pitch: together they measure less sharply.
        const SampleFile pipes = ReadSample(PathOf(folder, Instrument::Bagpipes, number));
        EXPECT_NEAR(CentsFrom(target, MeasureFrequency(pipes.Mono(Steady), Rate, target)), 0, 0.25)
            << "bp" << number;
        // Tenor and bass drones, one and two octaves below Low A, in every note.
        for (const double drone : {defaults.PipeLowA / 2, defaults.PipeLowA / 4})
            EXPECT_NEAR(CentsFrom(drone, MeasureFrequency(pipes.Mono(Steady), Rate, drone)), 0, 0.1)
                << "bp" << number << " drone " << drone;
    }
}

void ExpectLevelledAndLooping(const QTemporaryDir& folder, Instrument instrument)
{
    double sumSquares = 0;
    for (int number = 1; number <= 9; ++number) {
        const SampleFile sample = ReadSample(PathOf(folder, instrument, number));
        int peak = 0;
        for (const std::int16_t word : sample.Words) {
            sumSquares += double(word) * word;
            peak = std::max(peak, std::abs(int{word}));
        }
        EXPECT_LE(peak, 29205) << "above -1 dBFS in " << number;
        for (int channel = 0; channel < 2; ++channel) {
            const std::vector<float> loop = sample.Channel(channel, LoopFrames);
            EXPECT_LE(std::abs(loop.front() - loop.back()), LargestStep(loop, LoopFrames)) << number;
        }
    }
    const double rmsDb = 20 * std::log10(std::sqrt(sumSquares / (9.0 * SampleBank::FilledWords)) / 32768);
    EXPECT_NEAR(rmsDb, -15, 0.5) << static_cast<int>(instrument);
}

// The Highland pipes (chanter and drones) and the practice chanter (no drones), and the practice
// chanter once more. One test, since every generation costs a second or two.
TEST(GeneratedSamples, ArePlayableInTuneLevelledLoopingAndTheSameEveryRun)
{
    QTemporaryDir folder;
    GeneratorOptions options;
    options.Folder = folder.path();
    options.Instruments = {Instrument::Bagpipes, Instrument::Chanter};
    const GeneratorResult result = GenerateSamples(options, [](const QString&) {});
    ASSERT_TRUE(result.Ok()) << result.File.toStdString() << ": " << result.Problem.toStdString();
    EXPECT_TRUE(QFile::exists(QDir(folder.path()).filePath(QStringLiteral("SOUNDFONT-NOTICE.txt"))));
    for (const Instrument instrument : {Instrument::Bagpipes, Instrument::Chanter}) {
        ExpectPlayable(folder, instrument);
        ExpectLevelledAndLooping(folder, instrument);
    }
    ExpectInTune(folder);

    // Again into a folder where the user has put a recording of their own.
    QTemporaryDir again;
    QFile recording(PathOf(again, Instrument::Chanter, 5));
    ASSERT_TRUE(recording.open(QIODevice::WriteOnly));
    recording.write("a real recording");
    recording.close();
    options.Folder = again.path();
    options.Instruments = {Instrument::Chanter};
    QStringList lines;
    ASSERT_TRUE(GenerateSamples(options, [&](const QString& line) { lines << line; }).Ok());
    EXPECT_TRUE(lines.filter(QStringLiteral("ch5.wav")).front().endsWith(QStringLiteral("kept")));
    ASSERT_TRUE(recording.open(QIODevice::ReadOnly));
    EXPECT_EQ(recording.readAll(), QByteArray("a real recording"));
    for (int number = 1; number <= 9; ++number) {
        if (number == 5)
            continue;
        QFile first(PathOf(folder, Instrument::Chanter, number));
        QFile second(PathOf(again, Instrument::Chanter, number));
        ASSERT_TRUE(first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly));
        EXPECT_TRUE(first.readAll() == second.readAll()) << "ch" << number << " differs from run to run";
    }
    EXPECT_TRUE(QDir(again.path()).entryList({QStringLiteral("*.part")}).isEmpty());
}

} // namespace
} // namespace corrieval::samples
