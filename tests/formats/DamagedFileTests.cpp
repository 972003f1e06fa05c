#include "fixtures/ScoreFixtures.h"
#include "formats/GlenmarchTune.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/GlenmarchFile.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "support/ArchiveRefusal.h"

#include <gtest/gtest.h>
#include <random>

namespace corrieval {
namespace {

using testing::GlenmarchTune;

const QString kScoreName = QStringLiteral("damaged.skb");
const QString kGlenmarchName = QStringLiteral("damaged.glm");

QByteArray SmallScore()
{
    return StoreScore(*fixtures::BuildTune({.Groups = 1, .Columns = 2, .NotesPerBar = 2, .Repeats = true}),
                      {});
}

// Reads a damaged file in the format its name says and returns why it was refused.
ArchiveError LoadFailure(const QByteArray& bytes, const QString& name = kScoreName)
{
    return testing::RefusalOf([&] {
        if (name == kGlenmarchName)
            ReadGlenmarch(bytes, name);
        else
            ReadScore(bytes, name);
    });
}

// Every prefix of a good file is a damaged file: each must be refused with the file's name and
// a place within it, never read past or crashed on.
TEST(DamagedFiles, TruncationAtEveryByteIsRefusedAsEndOfFile)
{
    for (const auto& [bytes, name] : {std::pair{SmallScore(), kScoreName},
                                      std::pair{GlenmarchTune::EveryRecord().Bytes(), kGlenmarchName}}) {
        for (qsizetype length = 0; length < bytes.size(); ++length) {
            const ArchiveError e = LoadFailure(bytes.left(length), name);
            EXPECT_EQ(e.Cause(), ArchiveCause::EndOfFile) << name.toStdString() << " cut at " << length;
            EXPECT_LE(e.Offset(), static_cast<std::uint64_t>(length));
            EXPECT_EQ(e.FileName(), name);
        }
    }
}

// A class record is refused when its name is unknown, its schema is another, or it names a known
// class where the list holds another.
TEST(DamagedFiles, AWrongClassIsRefusedAndNamedWithItsOffset)
{
    const QByteArray bytes = SmallScore();
    QByteArray unknown = bytes;
    const qsizetype at = unknown.indexOf("CStaveGroup");
    unknown.replace(at, 11, "CStaveGroop");
    const ArchiveError e = LoadFailure(unknown);
    EXPECT_EQ(e.Cause(), ArchiveCause::BadClass);
    EXPECT_EQ(e.Describe(), QStringLiteral("bad class 'CStaveGroop' at byte %1").arg(at - 6));

    QByteArray otherSchema = bytes; // schema 2 in the stave's class record
    otherSchema[otherSchema.indexOf(QByteArray::fromHex("0600") + "CStave") - 2] = 2;
    EXPECT_EQ(LoadFailure(otherSchema).Cause(), ArchiveCause::BadSchema);

    QByteArray misplaced = bytes;
    misplaced.replace(misplaced.indexOf("CTunePage"), 9, "CTextArea");
    EXPECT_EQ(LoadFailure(misplaced).Cause(), ArchiveCause::BadClass);
    // In an older tune, a class of the score file where a bar belongs.
    QByteArray glenmarch = GlenmarchTune::EveryRecord().Bytes();
    glenmarch.replace("CBar", "CTie");
    EXPECT_EQ(LoadFailure(glenmarch, kGlenmarchName).Cause(), ArchiveCause::BadClass);
}

TEST(DamagedFiles, ReferencesMustNameWhatWasReadAndCountsWhatTheFileHolds)
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

    // A beam that claims two thousand million notes runs into the end of the file at once.
    QByteArray huge = GlenmarchTune::EveryRecord().Bytes();
    huge.replace(huge.indexOf("CNoteGroup") + 10, 4, QByteArray("\xff\xff\xff\x7f", 4));
    EXPECT_EQ(LoadFailure(huge, kGlenmarchName).Cause(), ArchiveCause::EndOfFile);
}

// Random damage that survives loading gives field values no program wrote: a score loaded so
// must save again, and a Glenmarch tune must convert, without a crash or an endless layout.
TEST(DamagedFiles, RandomDamageNeverCrashesAndWhatLoadsIsUsable)
{
    for (const auto& [original, name] : {std::pair{SmallScore(), kScoreName},
                                         std::pair{GlenmarchTune::EveryRecord().Bytes(), kGlenmarchName}}) {
        SCOPED_TRACE(name.toStdString());
        std::mt19937 random(20261122);
        std::uniform_int_distribution<qsizetype> position(0, original.size() - 1);
        std::uniform_int_distribution<int> value(0, 255);
        int loaded = 0;
        for (int round = 0; round < 3000; ++round) {
            QByteArray bytes = original;
            for (int hits = 1 + round % 4; hits > 0; --hits)
                bytes[position(random)] = static_cast<char>(value(random));
            try {
                if (name == kGlenmarchName) {
                    auto tune = ReadGlenmarch(bytes, name);
                    ConvertToNewDocument(*tune, false);
                } else {
                    auto doc = ReadScore(bytes, name);
                    StoreScore(*doc, {});
                }
                ++loaded;
            } catch (const ArchiveError&) {
            }
        }
        EXPECT_GT(loaded, 0);
    }
}

} // namespace
} // namespace corrieval
