#include "playback/WaveFile.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

QByteArray Word32(std::uint32_t value)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

QByteArray Word16(std::uint16_t value)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(value, bytes.data());
    return bytes;
}

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

// The extensible format's extra bytes, with the given sub-format tag in its GUID.
QByteArray Extensible(std::uint16_t subFormat)
{
    const QByteArray guidTail = QByteArray::fromHex("000000001000800000aa00389b71");
    return Word16(22) + Word16(16) + Word32(3) + Word16(subFormat) + guidTail;
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
    QString Put(const QByteArray& bytes)
    {
        const QString path = m_folder.filePath(QStringLiteral("test.wav"));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
        return path;
    }

    // Opens, reads the header, finds the data and reads all of it; gives what was read, or the
    // failure in `problem`.
    QByteArray ReadAll(const QByteArray& bytes, QString& problem, WaveFormat* format = nullptr)
    {
        CWaveFile file;
        if (!Succeeded(file.Open(Put(bytes))) || !Succeeded(file.ReadHeader()) ||
            !Succeeded(file.ResetToData())) {
            problem = file.ErrorString();
            return {};
        }
        QByteArray data(static_cast<qsizetype>(file.DataSize()), '\0');
        std::uint32_t read = 0;
        if (!Succeeded(file.Read(data.data(), file.DataSize(), read))) {
            problem = file.ErrorString();
            return {};
        }
        if (format != nullptr)
            *format = file.Format();
        return data;
    }

    QString Refusal(const QByteArray& bytes)
    {
        QString problem;
        const QByteArray data = ReadAll(bytes, problem);
        EXPECT_FALSE(problem.isEmpty()) << "read " << data.size() << " bytes";
        return problem;
    }

    QTemporaryDir m_folder;
};

TEST_F(WaveFileTest, WritesTheExportHeaderAndReadsItBack)
{
    const QString path = m_folder.filePath(QStringLiteral("out.wav"));
    const QByteArray sound = Sound(10);
    CWaveFile writer;
    std::uint32_t written = 0;
    ASSERT_EQ(writer.Create(path), PlayOk);
    ASSERT_EQ(writer.WriteHeader(WaveFormat::Pcm(2, 44100, 16)), PlayOk);
    ASSERT_EQ(writer.StartData(), PlayOk);
    ASSERT_EQ(writer.Write(sound.constData(), 4, written), PlayOk);
    ASSERT_EQ(writer.Write(sound.constData() + 4, 6, written), PlayOk);
    EXPECT_EQ(written, 6u);
    ASSERT_EQ(writer.Close(), PlayOk);
    EXPECT_EQ(writer.Close(), PlayFileNotOpen);

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray expected = "RIFF" + Word32(58) + "WAVE" + "fmt " + Word32(16) + Word16(1) + Word16(2) +
                                Word32(44100) + Word32(176400) + Word16(4) + Word16(16) + "fact" + Word32(4) +
                                Word32(0) + "data" + Word32(10) + sound;
    EXPECT_EQ(file.readAll().toHex(), expected.toHex());

    QString problem;
    WaveFormat format;
    EXPECT_EQ(ReadAll(expected, problem, &format), sound) << problem.toStdString();
    EXPECT_EQ(format.FormatTag, 1);
    EXPECT_EQ(format.Channels, 2);
    EXPECT_EQ(format.BitsPerSample, 16);
}

TEST_F(WaveFileTest, AnOddLengthOfSoundGetsItsPadByte)
{
    const QString path = m_folder.filePath(QStringLiteral("odd.wav"));
    CWaveFile writer;
    std::uint32_t written = 0;
    ASSERT_EQ(writer.Create(path), PlayOk);
    ASSERT_EQ(writer.WriteHeader(WaveFormat::Pcm(1, 8000, 8)), PlayOk);
    ASSERT_EQ(writer.StartData(), PlayOk);
    ASSERT_EQ(writer.Write("abc", 3, written), PlayOk);
    ASSERT_EQ(writer.Close(), PlayOk);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_EQ(bytes.size(), 60);
    EXPECT_EQ(qFromLittleEndian<std::uint32_t>(bytes.constData() + 4), 52u);
    EXPECT_EQ(qFromLittleEndian<std::uint32_t>(bytes.constData() + 52), 3u);
}

TEST_F(WaveFileTest, FindsItsChunksAmongOthersOfAnySizeAndOrder)
{
    const QByteArray sound = Sound(100);
    QString problem;
    // Odd-sized chunks before and between, each with its pad byte; the data before the format.
    const QByteArray file = Riff(Chunk("LIST", "abc") + Chunk("data", sound) + Chunk("junk", "12345") +
                                 Chunk("fmt ", Format(1)) + Chunk("cue ", {}));
    EXPECT_EQ(ReadAll(file, problem), sound) << problem.toStdString();

    // A longer format chunk than PCM needs is read past, and bytes after the RIFF chunk ignored.
    const QByteArray longFormat = Riff(Chunk("fmt ", Format(1) + "xy") + Chunk("data", sound)) + "trailing";
    EXPECT_EQ(ReadAll(longFormat, problem), sound) << problem.toStdString();
}

TEST_F(WaveFileTest, ReadsStopAtTheEndOfTheDataChunk)
{
    const QString path =
        Put(Riff(Chunk("fmt ", Format(1)) + Chunk("data", Sound(100)) + Chunk("junk", Sound(50))));
    CWaveFile file;
    ASSERT_EQ(file.Open(path), PlayOk);
    std::uint32_t read = 0;
    char buffer[200];
    EXPECT_EQ(file.Read(buffer, 10, read), PlayFileNotOpen) << "read before the data was found";
    ASSERT_EQ(file.ReadHeader(), PlayOk);
    ASSERT_EQ(file.ResetToData(), PlayOk);
    EXPECT_EQ(file.Read(nullptr, 10, read), PlayBadArgument);
    ASSERT_EQ(file.Read(buffer, 60, read), PlayOk);
    EXPECT_EQ(read, 60u);
    ASSERT_EQ(file.Read(buffer, 200, read), PlayOk);
    EXPECT_EQ(read, 40u);
    EXPECT_EQ(QByteArray(buffer, 40), Sound(100).mid(60));
    ASSERT_EQ(file.Read(buffer, 200, read), PlayOk);
    EXPECT_EQ(read, 0u);
    // Going back to the data starts it again.
    ASSERT_EQ(file.ResetToData(), PlayOk);
    ASSERT_EQ(file.Read(buffer, 200, read), PlayOk);
    EXPECT_EQ(read, 100u);
    ASSERT_EQ(file.Close(), PlayOk);
    EXPECT_EQ(file.Read(buffer, 10, read), PlayFileNotOpen);
}

TEST_F(WaveFileTest, RefusesSoundThatIsNotPcm)
{
    const QByteArray sound = Sound(64);
    const auto withFormat = [&](const QByteArray& format) {
        return Riff(Chunk("fmt ", format) + Chunk("data", sound));
    };
    EXPECT_EQ(Refusal(withFormat(Format(3, 2, 32) + Word16(0))),
              QStringLiteral("the sound is not PCM (format tag 0x0003)"));
    EXPECT_EQ(Refusal(withFormat(Format(0xFFFE) + Extensible(3))),
              QStringLiteral("the sound is not PCM (format tag 0xfffe)"));
    QString problem;
    EXPECT_EQ(ReadAll(withFormat(Format(0xFFFE) + Extensible(1)), problem), sound) << "extensible PCM";
    // An extra size running past the format chunk.
    EXPECT_EQ(Refusal(withFormat(Format(0xFFFE) + Word16(30) + Extensible(1).mid(2))),
              QStringLiteral("the \"fmt \" chunk is too short for its extra format bytes"));
}

TEST_F(WaveFileTest, RefusesDamagedAndAbsurdFilesWithTheReason)
{
    const QByteArray sound = Sound(100);
    const QByteArray format = Chunk("fmt ", Format(1));
    EXPECT_EQ(Refusal("RIFX" + Riff(format).mid(4)), QStringLiteral("not a RIFF file"));
    EXPECT_EQ(Refusal(Riff(format).replace(8, 4, "AVI ")), QStringLiteral("a RIFF file, but not WAVE sound"));
    EXPECT_EQ(Refusal(Riff(Chunk("data", sound))), QStringLiteral("there is no \"fmt \" chunk"));
    EXPECT_EQ(Refusal(Riff(format)), QStringLiteral("there is no \"data\" chunk"));
    EXPECT_EQ(Refusal(Riff(Chunk("fmt ", Format(1).left(14)) + Chunk("data", sound))),
              QStringLiteral("the \"fmt \" chunk is too short (14 bytes)"));
    EXPECT_EQ(Refusal(Riff(Chunk("fmt ", Format(1, 0)) + Chunk("data", sound))),
              QStringLiteral("the format has no channels"));

    QByteArray hugeData = Riff(format + Chunk("data", sound));
    hugeData.replace(40, 4, Word32(0xFFFFFFFFu));
    EXPECT_EQ(Refusal(hugeData),
              QStringLiteral("the \"data\" chunk is truncated: it claims 4294967295 bytes, 100 remain"));
    QByteArray hugeRiff = Riff(format + Chunk("data", sound));
    hugeRiff.replace(4, 4, Word32(0x7FFFFFF0u));
    EXPECT_TRUE(
        Refusal(hugeRiff).startsWith(QStringLiteral("truncated: the RIFF chunk claims 2147483632 bytes")));
    QByteArray tinyRiff = Riff(format + Chunk("data", sound));
    tinyRiff.replace(4, 4, Word32(2));
    EXPECT_TRUE(Refusal(tinyRiff).startsWith(QStringLiteral("truncated")));
}

// Every cut of a small file fails cleanly: as it is (the RIFF size then claims more than there
// is) and with the RIFF size mended to the cut, so that the chunks inside are what give out.
TEST_F(WaveFileTest, RefusesTheFileCutAtEveryByte)
{
    const QByteArray whole = Riff(Chunk("fmt ", Format(0xFFFE) + Extensible(1)) + Chunk("LIST", "abc") +
                                  Chunk("data", Sound(100)));
    for (qsizetype length = 0; length < whole.size(); ++length) {
        QByteArray cut = whole.left(length);
        EXPECT_FALSE(Refusal(cut).isEmpty()) << "cut at " << length;
        if (length >= 8) {
            cut.replace(4, 4, Word32(static_cast<std::uint32_t>(length - 8)));
            EXPECT_FALSE(Refusal(cut).isEmpty()) << "cut at " << length << ", RIFF size mended";
        }
    }
}

TEST_F(WaveFileTest, AMissingFileOrFolderIsReportedByTheSystemsWords)
{
    CWaveFile file;
    EXPECT_EQ(file.Open(m_folder.filePath(QStringLiteral("none.wav"))), PlayFailed);
    EXPECT_EQ(file.ErrorString(), QStringLiteral("No such file or directory"));
    EXPECT_EQ(file.ReadHeader(), PlayFileNotOpen);
    EXPECT_EQ(file.Create(m_folder.filePath(QStringLiteral("no/such/folder.wav"))), PlayFailed);
    EXPECT_FALSE(file.ErrorString().isEmpty());
}

} // namespace
} // namespace corrieval
