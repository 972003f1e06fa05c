#include "TuneInMemory.h"
#include "playback/WavExport.h"

#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

using namespace corrieval;

namespace {

std::uint32_t Word32(const QByteArray& bytes, int at)
{
    return qFromLittleEndian<std::uint32_t>(bytes.constData() + at);
}
std::uint16_t Word16(const QByteArray& bytes, int at)
{
    return qFromLittleEndian<std::uint16_t>(bytes.constData() + at);
}

TEST(WavExport, WritesTheFixedStereoHeaderWhateverTheRecordingsAndTheTuneInWholeBlocks)
{
    corrieval::testing::TuneInMemory tune(2);
    // Mono recordings make a file that plays at twice the speed; the header is still stereo.
    tune.Mixer.SetInstrument({.Loaded = true, .Channels = 1, .Problem = {}});
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tune.wav"));
    QString problem;
    ASSERT_EQ(ExportWav(tune.Source, path, problem), PlayOk) << problem.toStdString();

    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    const auto dataBytes = static_cast<std::uint32_t>(bytes.size() - 56);
    EXPECT_EQ(bytes.left(4), "RIFF");
    EXPECT_EQ(Word32(bytes, 4), 48 + dataBytes);
    EXPECT_EQ(bytes.mid(8, 8), "WAVEfmt ");
    EXPECT_EQ(Word32(bytes, 16), 16u);
    EXPECT_EQ(Word16(bytes, 20), 1u);
    EXPECT_EQ(Word16(bytes, 22), 2u);
    EXPECT_EQ(Word32(bytes, 24), 44100u);
    EXPECT_EQ(Word32(bytes, 28), 176400u);
    EXPECT_EQ(Word16(bytes, 32), 4u);
    EXPECT_EQ(Word16(bytes, 34), 16u);
    EXPECT_EQ(bytes.mid(36, 8), QByteArray("fact\4\0\0\0", 8));
    EXPECT_EQ(Word32(bytes, 44), 0u) << "the fact value is set back at close";
    EXPECT_EQ(bytes.mid(48, 4), "data");
    EXPECT_EQ(Word32(bytes, 52), dataBytes);

    // Two bars at 200 bpm are 105,840 words. The mixer's position lags the words, so it sees the
    // end at the pull after the last note, and that pull is written whole: seven blocks, silence
    // trailing the music.
    EXPECT_EQ(dataBytes, 7 * WavExportBlockWords * 2);
    EXPECT_NE(Word16(bytes, 56), 0u);
    EXPECT_NE(Word16(bytes, 56 + 2 * 105800), 0u);
    EXPECT_EQ(bytes.mid(56 + 2 * 106000), QByteArray(bytes.size() - 56 - 2 * 106000, '\0'));
}

TEST(WavExport, AFileThatCannotBeCreatedFailsWithTheReason)
{
    corrieval::testing::TuneInMemory tune(1);
    QTemporaryDir dir;
    QString problem;
    EXPECT_EQ(ExportWav(tune.Source, dir.filePath(QStringLiteral("missing/tune.wav")), problem), PlayFailed);
    EXPECT_FALSE(problem.isEmpty());
}

} // namespace
