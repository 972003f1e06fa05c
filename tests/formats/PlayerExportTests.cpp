#include "fixtures/ScoreFixtures.h"
#include "formats/score/PlayerExport.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "support/RecordingMessages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

QByteArray ReadAll(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

TEST(PlayerExport, ATypedNameGetsTheExtension)
{
    EXPECT_EQ(PlayerFilePath(QStringLiteral("/tunes/reel")), QStringLiteral("/tunes/reel.skp"));
    EXPECT_EQ(PlayerFilePath(QStringLiteral("/tunes/reel.skp")), QStringLiteral("/tunes/reel.skp"));
    EXPECT_EQ(PlayerFilePath(QStringLiteral("/tunes/reel.SKP")), QStringLiteral("/tunes/reel.SKP.skp"));
}

TEST(PlayerExport, WritesThePlayerFormAndLeavesTheScoreAsItWas)
{
    QTemporaryDir dir;
    const auto doc = fixtures::BuildTune({});
    doc->SetPathName(dir.filePath(QStringLiteral("reel.skb")));
    doc->SetModifiedFlag(true);
    const QByteArray score = StoreScore(*doc, QStringLiteral("reel.skb"));

    EXPECT_TRUE(ExportPlayerFile(*doc, dir.filePath(QStringLiteral("reel"))));
    const QByteArray player = ReadAll(dir.filePath(QStringLiteral("reel.skp")));
    // The marker "k_T-r" stands behind the version.
    EXPECT_EQ(player.mid(4, 4), QByteArray("\xff\xfe\xff\x05", 4));
    EXPECT_NE(player, score);
    EXPECT_EQ(doc->PlayerExport, 0);
    EXPECT_TRUE(doc->IsModified());
    EXPECT_EQ(doc->PathName(), dir.filePath(QStringLiteral("reel.skb")));
    // Saving afterwards writes the normal order again.
    EXPECT_EQ(StoreScore(*doc, QStringLiteral("reel.skb")), score);
}

TEST(PlayerExport, AFileThatCannotBeCreatedIsReported)
{
    testing::RecordingMessages messages;
    QTemporaryDir dir;
    const auto doc = fixtures::BuildTune({});
    const QString path = dir.filePath(QStringLiteral("no such folder/reel"));
    EXPECT_FALSE(ExportPlayerFile(*doc, path));
    EXPECT_EQ(messages.Texts, QStringList{QStringLiteral("Error creating the file")});
    EXPECT_EQ(messages.LastKind, MessageKind::OkCancel);
    EXPECT_EQ(doc->PlayerExport, 0);
    EXPECT_FALSE(QFile::exists(path + QStringLiteral(".skp")));
}

} // namespace
} // namespace corrieval
