// RIFF WAVE files: the header that export writes, byte for byte; the reader on well-formed,
// unusual, damaged, truncated and hostile files; and the instrument's nine files into the bank.

#include "TuneInMemory.h"
#include "playback/SampleBank.h"
#include "playback/WavExport.h"
#include "playback/WaveFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

// The little-endian bytes of a field.
template <class Word> QByteArray Field(Word value)
{
    QByteArray bytes(sizeof(Word), '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}
const auto Word32 = &Field<std::uint32_t>;
const auto Word16 = &Field<std::uint16_t>;

// A chunk with its header and, after an odd size, its pad byte.
QByteArray Chunk(const char* id, const QByteArray& data)
{
    QByteArray chunk = QByteArray(id, 4) + Word32(static_cast<std::uint32_t>(data.size())) + data;
    return data.size() % 2 ? chunk + '\0' : chunk;
}

QByteArray Riff(const QByteArray& body)
{
    return "RIFF" + Word32(static_cast<std::uint32_t>(body.size() + 4)) + "WAVE" + body;
}

QByteArray Format(std::uint16_t tag, std::uint16_t channels = 2, std::uint16_t bits = 16)
{
    const std::uint16_t align = channels * bits / 8;
    return Word16(tag) + Word16(channels) + Word32(44100) + Word32(44100u * align) + Word16(align) +
           Word16(bits);
}

// What export writes before the sound: 16-bit stereo PCM at 44,100 Hz and a fact chunk of 0.
QByteArray ExportHeader(std::uint32_t dataBytes)
{
    return "RIFF" + Word32(48 + dataBytes + dataBytes % 2) + "WAVE" + Chunk("fmt ", Format(1)) +
           Chunk("fact", Word32(0)) + "data" + Word32(dataBytes);
}

// The extensible format's extra bytes, with the given sub-format tag in its GUID.
QByteArray Extensible(std::uint16_t subFormat)
{
    return Word16(22) + Word16(16) + Word32(3) + Word16(subFormat) +
           QByteArray::fromHex("000000001000800000aa00389b71");
}

QByteArray Sound(int bytes)
{
    QByteArray sound(bytes, '\0');
    for (int i = 0; i < bytes; ++i)
        sound[i] = static_cast<char>(i * 7 + 3);
    return sound;
}

class WaveFileTest : public ::testing::Test {
protected:
    QString Path(const QString& name) const { return m_folder.filePath(name); }

    QString Put(const QByteArray& bytes)
    {
        QFile file(Path(QStringLiteral("test.wav")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
        return file.fileName();
    }

    QByteArray Contents(const QString& name) const
    {
        QFile file(Path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    // Opens, reads the header, finds the data and reads all of it: the sound, or the reason it
    // could not be read.
    std::pair<QByteArray, QString> Read(const QByteArray& bytes)
    {
        CWaveFile file;
        std::uint32_t read = 0;
        if (!Succeeded(file.Open(Put(bytes))) || !Succeeded(file.ReadHeader()) ||
            !Succeeded(file.ResetToData()))
            return {{}, file.ErrorString()};
        QByteArray data(static_cast<qsizetype>(file.DataSize()), '\0');
        if (!Succeeded(file.Read(data.data(), file.DataSize(), read)))
            return {{}, file.ErrorString()};
        return {data, {}};
    }

    QTemporaryDir m_folder;
};

TEST_F(WaveFileTest, WritesTheHeaderByteForByteAndExportsTheTuneInWholeBlocks)
{
    const QByteArray sound = Sound(9);
    CWaveFile writer;
    std::uint32_t written = 0;
    ASSERT_EQ(writer.Create(Path(QStringLiteral("out.wav"))), PlayOk);
    ASSERT_EQ(writer.WriteHeader(WaveFormat::Pcm(2, 44100, 16)), PlayOk);
    ASSERT_EQ(writer.StartData(), PlayOk);
    ASSERT_EQ(writer.Write(sound.constData(), 4, written), PlayOk);
    ASSERT_EQ(writer.Write(sound.constData() + 4, 5, written), PlayOk);
    EXPECT_EQ(written, 5u);
    ASSERT_EQ(writer.Close(), PlayOk);
    EXPECT_EQ(writer.Close(), PlayFileNotOpen);

    const QByteArray expected = ExportHeader(9) + sound + '\0';
    EXPECT_EQ(Contents(QStringLiteral("out.wav")).toHex(), expected.toHex());
    EXPECT_EQ(Read(expected), std::pair(sound, QString()));

    testing::TuneInMemory tune(2);
    // Mono recordings make a file that plays at twice the speed; the header is still stereo.
    tune.Mixer.SetInstrument({.Loaded = true, .Channels = 1, .Problem = {}});
    QString problem;
    ASSERT_EQ(ExportWav(tune.Source, Path(QStringLiteral("tune.wav")), problem), PlayOk)
        << problem.toStdString();

    // Two bars at 200 bpm are 105,840 words. The mixer's position lags the words, so it sees the
    // end at the pull after the last note, and that pull is written whole: seven blocks, silence
    // trailing the music.
    const QByteArray bytes = Contents(QStringLiteral("tune.wav"));
    const std::uint32_t dataBytes = 7 * WavExportBlockWords * 2;
    ASSERT_EQ(bytes.size(), 56 + dataBytes);
    EXPECT_EQ(bytes.left(56).toHex(), ExportHeader(dataBytes).toHex());
    EXPECT_NE(bytes.mid(56, 2), QByteArray(2, '\0'));
    EXPECT_NE(bytes.mid(56 + 2 * 105800, 2), QByteArray(2, '\0'));
    EXPECT_EQ(bytes.mid(56 + 2 * 106000), QByteArray(bytes.size() - 56 - 2 * 106000, '\0'));

    EXPECT_EQ(ExportWav(tune.Source, Path(QStringLiteral("missing/tune.wav")), problem), PlayFailed);
    EXPECT_FALSE(problem.isEmpty());
}

TEST_F(WaveFileTest, ReadsItsChunksInAnyOrderAndRefusesDamagedAbsurdAndNonPcmFilesWithTheReason)
{
    const QByteArray sound = Sound(100);
    // Odd-sized chunks before and between, each with its pad byte; the data before the format.
    EXPECT_EQ(Read(Riff(Chunk("LIST", "abc") + Chunk("data", sound) + Chunk("junk", "12345") +
                        Chunk("fmt ", Format(1)) + Chunk("cue ", {}))),
              std::pair(sound, QString()));
    // A longer format chunk than PCM needs is read past, and bytes after the RIFF chunk ignored.
    EXPECT_EQ(Read(Riff(Chunk("fmt ", Format(1) + "xy") + Chunk("data", sound)) + "trailing"),
              std::pair(sound, QString()));
    // Extensible PCM is PCM.
    EXPECT_EQ(Read(Riff(Chunk("fmt ", Format(0xFFFE) + Extensible(1)) + Chunk("data", sound))),
              std::pair(sound, QString()));

    CWaveFile file;
    EXPECT_EQ(file.ReadHeader(), PlayFileNotOpen);
    ASSERT_EQ(
        file.Open(Put(Riff(Chunk("fmt ", Format(1)) + Chunk("data", sound) + Chunk("junk", Sound(50))))),
        PlayOk);
    std::uint32_t read = 0;
    char buffer[200];
    EXPECT_EQ(file.Read(buffer, 10, read), PlayFileNotOpen) << "read before the data was found";
    ASSERT_EQ(file.ReadHeader(), PlayOk);
    ASSERT_EQ(file.ResetToData(), PlayOk);
    EXPECT_EQ(file.Read(nullptr, 10, read), PlayBadArgument);
    // A read past the end of the data gives what is left: here the last 40 bytes.
    ASSERT_EQ(file.Read(buffer, 60, read), PlayOk);
    ASSERT_EQ(file.Read(buffer, 200, read), PlayOk);
    ASSERT_EQ(read, 40u);
    EXPECT_EQ(QByteArray(buffer, 40), sound.mid(60));
    ASSERT_EQ(file.Read(buffer, 200, read), PlayOk);
    EXPECT_EQ(read, 0u);
    // Going back to the data starts it again.
    ASSERT_EQ(file.ResetToData(), PlayOk);
    ASSERT_EQ(file.Read(buffer, 200, read), PlayOk);
    EXPECT_EQ(read, 100u);

    // What it refuses, and why.
    const QByteArray format = Chunk("fmt ", Format(1));
    const QByteArray good = Riff(format + Chunk("data", sound));
    const auto withFormat = [&](const QByteArray& bytes) {
        return Riff(Chunk("fmt ", bytes) + Chunk("data", sound));
    };
    const auto patched = [&](int at, std::uint32_t value) {
        return QByteArray(good).replace(at, 4, Word32(value));
    };

    const std::vector<std::pair<QByteArray, QString>> cases{
        {"RIFX" + good.mid(4), "not a RIFF file"},
        {QByteArray(good).replace(8, 4, "AVI "), "a RIFF file, but not WAVE sound"},
        {Riff(Chunk("data", sound)), "there is no \"fmt \" chunk"},
        {Riff(format), "there is no \"data\" chunk"},
        {withFormat(Format(1).left(14)), "the \"fmt \" chunk is too short (14 bytes)"},
        {withFormat(Format(1, 0)), "the format has no channels"},
        {withFormat(Format(3, 2, 32) + Word16(0)), "the sound is not PCM (format tag 0x0003)"},
        {withFormat(Format(0xFFFE) + Extensible(3)), "the sound is not PCM (format tag 0xfffe)"},
        // An extra size running past the format chunk.
        {withFormat(Format(0xFFFE) + Word16(30) + Extensible(1).mid(2)),
         "the \"fmt \" chunk is too short for its extra format bytes"},
        {patched(40, 0xFFFFFFFFu), "the \"data\" chunk is truncated: it claims 4294967295 bytes, 100 remain"},
        {patched(4, 0x7FFFFFF0u), "truncated: the RIFF chunk claims 2147483632 bytes"},
        {patched(4, 2), "truncated"},
    };
    for (const auto& [bytes, reason] : cases)
        EXPECT_TRUE(Read(bytes).second.startsWith(reason)) << reason.toStdString();

    // Every cut of a small file fails cleanly: as it is (the RIFF size then claims more than
    // there is) and with the RIFF size mended to the cut, so that the chunks inside give out.
    const QByteArray whole =
        Riff(Chunk("fmt ", Format(0xFFFE) + Extensible(1)) + Chunk("LIST", "abc") + Chunk("data", sound));
    for (qsizetype length = 0; length < whole.size(); ++length) {
        QByteArray cut = whole.left(length);
        EXPECT_FALSE(Read(cut).second.isEmpty()) << "cut at " << length;
        if (length >= 8) {
            EXPECT_FALSE(Read(cut.replace(4, 4, Word32(std::uint32_t(length - 8)))).second.isEmpty())
                << "mended " << length;
        }
    }
}

// The words of instrument file `number`: each tells its file and place, so a slot shows what it
// holds.
std::int16_t WordOf(int number, std::size_t index)
{
    return static_cast<std::int16_t>(number * 1000 + static_cast<int>(index % 997));
}

TEST_F(WaveFileTest, LoadsTheNineInstrumentFilesIntoTheirSlotsOrStopsAtOneItCannotPlayKeepingThoseBefore)
{
    // The file names that pipers know: the Smallpipes in Bb have no key letter, the others one.
    for (const auto& [instrument, name] : {std::pair{Instrument::Bagpipes, "bp3.wav"},
                                           {Instrument::Chanter, "ch3.wav"},
                                           {Instrument::SmallpipesBb, "sp3.wav"},
                                           {Instrument::SmallpipesD, "spd3.wav"}})
        EXPECT_EQ(SampleFileName(instrument, 3), QLatin1String(name));

    const QString folder = m_folder.path() + QLatin1Char('/');
    const auto putSample = [&](int number, std::size_t bytes, std::uint16_t bits = 16) {
        QByteArray data(static_cast<qsizetype>(bytes), '\0');
        for (std::size_t i = 0; i < bytes / 2; ++i)
            qToLittleEndian(WordOf(number, i), data.data() + 2 * i);
        QFile file(folder + SampleFileName(Instrument::Chanter, number));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(Riff(Chunk("fmt ", Format(1, 2, bits)) + Chunk("data", data)));
    };
    // Whether slot `slot` holds the first 524,288 bytes of its file or, `loaded` false, the mark
    // that an earlier load left.
    const auto holds = [](std::size_t slot, bool loaded) {
        for (std::size_t i = 0; i < SampleBank::FilledWords; ++i) {
            if (SampleBank::Slot(slot)[i] != (loaded ? WordOf(static_cast<int>(slot) + 1, i) : -1))
                return false;
        }
        return true;
    };

    enum class Fault { None, Short, Missing, EightBit, Truncated };
    for (const auto& [number, fault, problem] :
         {std::tuple{10, Fault::None, ""},
          {4, Fault::Short, "the sound is 524286 bytes long; the player needs at least 524288"},
          {5, Fault::Missing, "No such file or directory"},
          {5, Fault::EightBit, "the sound has 8-bit samples; the player needs 16-bit"},
          {1, Fault::Truncated, "truncated"}}) {
        // The mark of an earlier load, which a new load must replace.
        for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot)
            std::fill_n(SampleBank::Slot(slot), SampleBank::FilledWords, std::int16_t{-1});
        // Only the first 524,288 bytes are taken from a longer file.
        for (int file = 1; file <= 9; ++file)
            putSample(file, SampleBank::FilledBytes + (file == 7 ? 1000 : 0));
        const QString path = folder + SampleFileName(Instrument::Chanter, number);
        if (fault == Fault::Short)
            putSample(number, SampleBank::FilledBytes - 2);
        else if (fault == Fault::Missing)
            QFile::remove(path);
        else if (fault == Fault::EightBit)
            putSample(number, SampleBank::FilledBytes, 8);
        else if (fault == Fault::Truncated)
            QFile::resize(path, 1000);

        const InstrumentLoad load = LoadInstrument(Instrument::Chanter, folder);

        EXPECT_EQ(load.Loaded, fault == Fault::None) << load.Problem.toStdString();
        if (fault != Fault::None) {
            EXPECT_TRUE(load.Problem.startsWith(path + QStringLiteral(": ") + QLatin1String(problem)))
                << load.Problem.toStdString();
        }
        for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot)
            EXPECT_TRUE(holds(slot, static_cast<int>(slot) + 1 < number))
                << "file " << number << ", slot " << slot;
    }
    EXPECT_FALSE(LoadInstrument(Instrument::Bagpipes, folder).Loaded) << "another instrument's files";
}

} // namespace
} // namespace corrieval
