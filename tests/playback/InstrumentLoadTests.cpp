#include "playback/SampleBank.h"
#include "playback/WaveFile.h"

#include <QDir>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <vector>

namespace corrieval {
namespace {

constexpr std::size_t Enough = SampleBank::FilledBytes;

// The words of file `number`: each tells its file and place, so a slot shows what it holds.
std::int16_t WordOf(int number, std::size_t index)
{
    return static_cast<std::int16_t>(number * 1000 + static_cast<int>(index % 997));
}

class InstrumentLoadTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        // Whatever an earlier load left: a mark that a new load must replace.
        for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot)
            std::fill_n(SampleBank::Slot(slot), SampleBank::FilledWords, std::int16_t{-1});
    }

    void Put(Instrument instrument, int number, std::size_t bytes, std::uint16_t channels = 2,
             std::uint16_t bits = 16)
    {
        std::vector<std::int16_t> words(bytes / 2);
        for (std::size_t i = 0; i < words.size(); ++i)
            words[i] = WordOf(number, i);
        CWaveFile file;
        std::uint32_t written = 0;
        ASSERT_EQ(file.Create(Folder() + SampleFileName(instrument, number)), PlayOk);
        ASSERT_EQ(file.WriteHeader(WaveFormat::Pcm(channels, 44100, bits)), PlayOk);
        ASSERT_EQ(file.StartData(), PlayOk);
        ASSERT_EQ(file.Write(words.data(), static_cast<std::uint32_t>(bytes), written), PlayOk);
        ASSERT_EQ(file.Close(), PlayOk);
    }

    void PutAll(Instrument instrument)
    {
        for (int number = 1; number <= 9; ++number)
            Put(instrument, number, Enough);
    }

    // Whether the slot holds the first 524,288 bytes of file `number`.
    static bool Holds(std::size_t slot, int number)
    {
        const std::int16_t* words = SampleBank::Slot(slot);
        for (std::size_t i = 0; i < SampleBank::FilledWords; ++i)
            if (words[i] != WordOf(number, i))
                return false;
        return true;
    }

    static bool Untouched(std::size_t slot) { return SampleBank::Slot(slot)[0] == -1; }

    QString Folder() const { return m_folder.path() + QLatin1Char('/'); }

    QTemporaryDir m_folder;
};

TEST_F(InstrumentLoadTest, LoadsTheNineFilesIntoTheirSlots)
{
    PutAll(Instrument::Bagpipes);
    // Only the first 524,288 bytes are taken from a longer file.
    Put(Instrument::Bagpipes, 7, Enough + 1000);
    const InstrumentLoad load = LoadInstrument(Instrument::Bagpipes, Folder());
    EXPECT_TRUE(load.Loaded);
    EXPECT_EQ(load.Channels, 2u);
    EXPECT_TRUE(load.Problem.isEmpty()) << load.Problem.toStdString();
    for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot)
        EXPECT_TRUE(Holds(slot, static_cast<int>(slot) + 1)) << "slot " << slot;
}

TEST_F(InstrumentLoadTest, EachInstrumentReadsItsOwnFiles)
{
    // The Smallpipes in Bb have no key letter; the others a lower-case one.
    for (const Instrument instrument :
         {Instrument::Chanter, Instrument::SmallpipesBb, Instrument::SmallpipesA, Instrument::SmallpipesC,
          Instrument::SmallpipesD})
        PutAll(instrument);
    EXPECT_EQ(QDir(Folder()).entryList({QStringLiteral("*3.wav")}),
              QStringList({QStringLiteral("ch3.wav"), QStringLiteral("sp3.wav"), QStringLiteral("spa3.wav"),
                           QStringLiteral("spc3.wav"), QStringLiteral("spd3.wav")}));
    EXPECT_FALSE(LoadInstrument(Instrument::Bagpipes, Folder()).Loaded) << "no bp files here";
    for (const Instrument instrument :
         {Instrument::Chanter, Instrument::SmallpipesBb, Instrument::SmallpipesA, Instrument::SmallpipesC,
          Instrument::SmallpipesD})
        EXPECT_TRUE(LoadInstrument(instrument, Folder()).Loaded) << static_cast<int>(instrument);
}

TEST_F(InstrumentLoadTest, StopsAtAShortFileKeepingTheSlotsBefore)
{
    PutAll(Instrument::Bagpipes);
    Put(Instrument::Bagpipes, 4, Enough - 2, 1);
    Put(Instrument::Bagpipes, 3, Enough, 1);
    const InstrumentLoad load = LoadInstrument(Instrument::Bagpipes, Folder());
    EXPECT_FALSE(load.Loaded);
    EXPECT_EQ(load.Channels, 1u) << "the channel count of the last file read";
    EXPECT_EQ(load.Problem, Folder() + QStringLiteral("bp4.wav: the sound is 524286 bytes long; the player "
                                                      "needs at least 524288"));
    for (std::size_t slot = 0; slot < 3; ++slot)
        EXPECT_TRUE(Holds(slot, static_cast<int>(slot) + 1)) << "slot " << slot;
    for (std::size_t slot = 3; slot < SampleBank::SlotCount; ++slot)
        EXPECT_TRUE(Untouched(slot)) << "slot " << slot;
}

TEST_F(InstrumentLoadTest, StopsAtAMissingOrUnplayableFile)
{
    PutAll(Instrument::Chanter);
    QFile::remove(Folder() + QStringLiteral("ch5.wav"));
    InstrumentLoad load = LoadInstrument(Instrument::Chanter, Folder());
    EXPECT_FALSE(load.Loaded);
    EXPECT_EQ(load.Problem, Folder() + QStringLiteral("ch5.wav: No such file or directory"));
    EXPECT_TRUE(Holds(3, 4));
    EXPECT_TRUE(Untouched(4));

    SetUp();
    Put(Instrument::Chanter, 5, Enough, 2, 8);
    load = LoadInstrument(Instrument::Chanter, Folder());
    EXPECT_FALSE(load.Loaded);
    EXPECT_TRUE(load.Problem.endsWith(
        QStringLiteral("ch5.wav: the sound has 8-bit samples; the player needs 16-bit")))
        << load.Problem.toStdString();
    EXPECT_TRUE(Untouched(4));

    SetUp();
    QFile damaged(Folder() + QStringLiteral("ch1.wav"));
    ASSERT_TRUE(damaged.open(QIODevice::ReadWrite));
    damaged.resize(1000);
    load = LoadInstrument(Instrument::Chanter, Folder());
    EXPECT_FALSE(load.Loaded);
    EXPECT_EQ(load.Channels, 0u);
    EXPECT_TRUE(load.Problem.contains(QStringLiteral("ch1.wav: truncated"))) << load.Problem.toStdString();
    EXPECT_TRUE(Untouched(0));
}

} // namespace
} // namespace corrieval
