#include "fixtures/ScoreFixtures.h"
#include "formats/archive/ArchiveError.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"

#include <gtest/gtest.h>

#include <random>

namespace corrieval {
namespace {

QByteArray SmallScore()
{
    fixtures::TuneShape shape;
    shape.Groups = 1;
    shape.Columns = 2;
    shape.NotesPerBar = 2;
    shape.Repeats = true;
    return StoreScore(*fixtures::BuildTune(shape), {});
}

ArchiveError LoadFailure(const QByteArray& bytes)
{
    try {
        ReadScore(bytes, QStringLiteral("damaged.skb"));
    } catch (const ArchiveError& e) {
        return e;
    }
    ADD_FAILURE() << "the damaged file loaded";
    return ArchiveError(ArchiveCause::EndOfFile, {}, 0);
}

TEST(DamagedFiles, TruncationAtEveryByteIsRefusedAsEndOfFile)
{
    const QByteArray bytes = SmallScore();
    for (qsizetype length = 0; length < bytes.size(); ++length) {
        const ArchiveError e = LoadFailure(bytes.left(length));
        EXPECT_EQ(e.Cause(), ArchiveCause::EndOfFile) << "cut at " << length;
        EXPECT_LE(e.Offset(), static_cast<std::uint64_t>(length));
    }
}

TEST(DamagedFiles, AnUnknownClassNameIsNamedWithItsOffset)
{
    QByteArray bytes = SmallScore();
    const qsizetype at = bytes.indexOf("CStaveGroup");
    bytes.replace(at, 11, "CStaveGroop");
    const ArchiveError e = LoadFailure(bytes);
    EXPECT_EQ(e.Cause(), ArchiveCause::BadClass);
    EXPECT_EQ(e.Describe(), QStringLiteral("bad class 'CStaveGroop' at byte %1").arg(at - 6));
    EXPECT_EQ(e.FileName(), QStringLiteral("damaged.skb"));
}

TEST(DamagedFiles, AnotherSchemaIsRefused)
{
    QByteArray bytes = SmallScore();
    const qsizetype at = bytes.indexOf(QByteArray("\x06\x00" "CStave", 8));
    bytes[at - 2] = 2; // the schema of the stave class record
    EXPECT_EQ(LoadFailure(bytes).Cause(), ArchiveCause::BadSchema);
}

TEST(DamagedFiles, AKnownClassWhereTheListWantsAnotherIsRefused)
{
    QByteArray bytes = SmallScore();
    bytes.replace(bytes.indexOf("CTunePage"), 9, "CTextArea");
    EXPECT_EQ(LoadFailure(bytes).Cause(), ArchiveCause::BadClass);
}

TEST(DamagedFiles, ReferencesMustNameWhatWasReadBefore)
{
    // The first pointer of the file is the first tie, at byte 6, a new class record.
    QByteArray bytes = SmallScore();
    ASSERT_EQ(bytes.mid(6, 2), QByteArray::fromHex("ffff"));
    bytes[6] = 5;
    bytes[7] = 0;
    ArchiveError e = LoadFailure(bytes);
    EXPECT_EQ(e.Cause(), ArchiveCause::BadIndex);
    EXPECT_EQ(e.Offset(), 6u);

    bytes[7] = static_cast<char>(0x80); // a class number that nothing has taken
    EXPECT_EQ(LoadFailure(bytes).Cause(), ArchiveCause::BadIndex);
}

TEST(DamagedFiles, RandomDamageNeverCrashesAndWhatLoadsSavesAgain)
{
    const QByteArray original = SmallScore();
    std::mt19937 random(20261122);
    std::uniform_int_distribution<qsizetype> position(0, original.size() - 1);
    std::uniform_int_distribution<int> value(0, 255);
    int loaded = 0;
    for (int round = 0; round < 3000; ++round) {
        QByteArray bytes = original;
        for (int hits = 1 + round % 4; hits > 0; --hits)
            bytes[position(random)] = static_cast<char>(value(random));
        try {
            auto doc = ReadScore(bytes, QStringLiteral("fuzz.skb"));
            StoreScore(*doc, {});
            ++loaded;
        } catch (const ArchiveError&) {
        }
    }
    EXPECT_GT(loaded, 0);
}

} // namespace
} // namespace corrieval
