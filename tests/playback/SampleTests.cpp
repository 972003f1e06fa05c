// The instrument samples that make-samples generates, as the player reads them.

#include "playback/SampleBank.h"
#include "playback/SampleMixer.h"
#include "samples/GeneratorOptions.h"
#include "samples/LoopMaker.h"
#include "samples/PitchMeasure.h"
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
// What the player loops of a stereo file, less the blend at its end: what a held note plays.
constexpr std::size_t Steady = SampleBank::FilledBytes / 8 - LoopBlendFrames;

// Slot `slot` of the bank with both channels summed, over the steady stretch.
std::vector<float> Held(std::size_t slot)
{
    std::vector<float> mono(Steady);
    for (std::size_t f = 0; f < Steady; ++f)
        mono[f] = (SampleBank::Slot(slot)[2 * f] + SampleBank::Slot(slot)[2 * f + 1]) / 32768.0f;
    return mono;
}

// The Highland pipes, chanter and drones, loaded as the player loads them, and the practice
// chanter beside a recording of the user's own. One test, since every generation costs a second.
TEST(GeneratedSamples, LoadInTuneLevelledAndLoopingAndLeaveAUsersOwnRecording)
{
    // The measure itself first: a chanter's B, five harmonics, over a bass drone's first three.
    std::vector<float> tone(150000);
    for (std::size_t n = 0; n < tone.size(); ++n) {
        const double t = static_cast<double>(n) / Rate;
        for (int h = 1; h <= 5; ++h)
            tone[n] +=
                static_cast<float>(0.2 / h * std::sin(2 * std::numbers::pi * h * 540.0123 * t + h) +
                                   (h <= 3 ? 0.2 * std::sin(2 * std::numbers::pi * h * 106.75 * t) : 0));
    }
    ASSERT_NEAR(CentsFrom(540.0123, MeasureFrequency(tone, Rate, 540 * std::exp2(-55.0 / 1200))), 0, 0.001);

    QTemporaryDir folder;
    // A recording of the user's own, which generation must keep.
    QFile recording(QDir(folder.path()).filePath(SampleFileName(Instrument::Chanter, 5)));
    ASSERT_TRUE(recording.open(QIODevice::WriteOnly));
    recording.write("a real recording");
    recording.close();
    GeneratorOptions options;
    options.Folder = folder.path();
    options.Instruments = {Instrument::Bagpipes, Instrument::Chanter};
    const GeneratorResult result = GenerateSamples(options, [](const QString&) {});
    ASSERT_TRUE(result.Ok()) << result.File.toStdString() << ": " << result.Problem.toStdString();
    ASSERT_TRUE(recording.open(QIODevice::ReadOnly));
    EXPECT_EQ(recording.readAll(), QByteArray("a real recording"));

    const InstrumentLoad load = LoadInstrument(Instrument::Bagpipes, folder.path() + QLatin1Char('/'));
    ASSERT_TRUE(load.Loaded) << load.Problem.toStdString();
    double sumSquares = 0;
    for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot) {
        const std::int16_t* words = SampleBank::Slot(slot);
        int peak = 0;
        for (std::size_t i = 0; i < SampleBank::FilledWords; ++i) {
            sumSquares += double(words[i]) * words[i];
            peak = std::max(peak, std::abs(int{words[i]}));
        }
        EXPECT_LE(peak, 29205) << "above -1 dBFS in slot " << slot;
        // In each channel the loop's join, from its last frame back to its first, is no larger a
        // step than any other inside it.
        for (std::size_t channel = 0; channel < 2; ++channel) {
            const std::size_t last = CSampleMixer::LoopWords - 2 + channel;
            int largest = 0;
            for (std::size_t i = channel + 2; i <= last; i += 2)
                largest = std::max(largest, std::abs(words[i] - words[i - 2]));
            EXPECT_LE(std::abs(words[channel] - words[last]), largest) << "slot " << slot;
        }

        // The pipes' chanter is tuned alone to 0.1 cent, but its sample beats, and in five notes
        // of the nine a drone harmonic sounds at the same pitch: together they measure less
        // sharply. Tenor and bass drones, one and two octaves below Low A, sound in every note.
        const double target = options.PipeLowA * options.Ratios[slot];
        const std::vector<float> held = Held(slot);
        EXPECT_NEAR(CentsFrom(target, MeasureFrequency(held, Rate, target)), 0, 0.25) << "slot " << slot;
        for (const double drone : {options.PipeLowA / 2, options.PipeLowA / 4})
            EXPECT_NEAR(CentsFrom(drone, MeasureFrequency(held, Rate, drone)), 0, 0.1) << "drone " << drone;
    }
    const double rmsDb = 20 * std::log10(std::sqrt(sumSquares / (9.0 * SampleBank::FilledWords)) / 32768);
    EXPECT_NEAR(rmsDb, -15, 0.5);
    EXPECT_TRUE(QDir(folder.path()).entryList({QStringLiteral("*.part")}).isEmpty());
}

} // namespace
} // namespace corrieval::samples
