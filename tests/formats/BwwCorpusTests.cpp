#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "model/CorrievalDoc.h"
#include "platform/MovementDefinitions.h"
#include "support/BarOverlaps.h"
#include "support/RecordingMessages.h"
#include "support/TempConfigDir.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::RecordingMessages;

// Real and made-up BWW files kept beside the repository, not in it: CORRIEVAL_BWW_CORPUS names
// the folder, else ../shared/corpus/bww from the repository root.
QString CorpusDir()
{
    if (const QString dir = qEnvironmentVariable("CORRIEVAL_BWW_CORPUS"); !dir.isEmpty())
        return dir;
    return QDir(QStringLiteral(CORRIEVAL_SOURCE_DIR)).filePath(QStringLiteral("../shared/corpus/bww"));
}

bool IsImportMessage(const QString& text)
{
    static const QRegularExpression error(QStringLiteral(
        "^Error on line -?\\d+: (lexer error|title error|token misMatch) \\n tokenval = -?\\d+$"));
    for (const auto code : {bww::ProblemCode::InvalidBmw, bww::ProblemCode::InvalidBww,
                            bww::ProblemCode::BarTooLong, bww::ProblemCode::PartTooLong}) {
        if (text == bww::ProblemText(code))
            return true;
    }
    return error.match(text).hasMatch();
}

QStringList CorpusFiles()
{
    QStringList paths;
    QDirIterator files(CorpusDir(),
                       {QStringLiteral("*.bww"), QStringLiteral("*.bmw"), QStringLiteral("*.BWW")},
                       QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        paths << files.next();
    return paths;
}

// The melody notes a file writes: its note words with a length, outside quoted texts.
int WrittenMelodyNotes(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    QString text = QString::fromLatin1(file.readAll());
    text.remove(QRegularExpression(QStringLiteral("\"[^\"\n]*\"")));
    static const QRegularExpression note(QStringLiteral("(?<![\\w'])(LG|LA|B|C|D|E|F|HG|HA)[rl]?_\\d+"));
    return static_cast<int>(text.count(note));
}

int ImportedMelodyNotes(const CPipeDoc& doc)
{
    int notes = 0;
    for (const auto& bar : doc.Bars)
        for (const auto& note : bar->Notes)
            notes += note->Code < 30 ? 1 : 0;
    for (const auto& tune : doc.FollowingTunes)
        notes += ImportedMelodyNotes(*tune);
    return notes;
}

// Words the full reading lists rather than places: what a score cannot hold (rests, pauses,
// accidentals, the signs of a da capo, texts and the leftovers of marks around them). Every
// gracenote and movement word is placed.
bool MayBePassedOver(const QString& word)
{
    static const QRegularExpression cannotHold(QStringLiteral(
        "^(REST_\\d*|fermat\\w+|(natural|flat|sharp)\\w+|segno|dalsegno|fine|dacapoalfine|bis_|TuneTempo|"
        "ntro|comment|\\d+|[a-z]{1,2}|.*\\s.*)$"));
    return cannotHold.match(word).hasMatch();
}

TEST(BwwCorpus, EveryFileReadsInFullWithItsMelodyNotesAndMovementsAndNoOverlappingItems)
{
    const QStringList paths = CorpusFiles();
    if (paths.isEmpty())
        GTEST_SKIP() << "no BWW corpus at " << CorpusDir().toStdString();
    // Movements take their real widths, as in the app.
    const testing::TempConfigDir config;
    ASSERT_EQ(InstallMovementDefinitions(), "");
    for (const QString& path : paths) {
        RecordingMessages messages;
        bww::ImportLog log;
        const auto doc = LoadBww(path, log);
        ASSERT_NE(doc, nullptr) << path.toStdString();
        // Nothing is cut short, not even the bars of the files that list every word in one: every
        // melody note is there.
        EXPECT_TRUE(log.Problems.empty())
            << path.toStdString() << ": " << log.Problems[0].Message.toStdString();
        EXPECT_EQ(ImportedMelodyNotes(*doc), WrittenMelodyNotes(path)) << path.toStdString();
        for (const bww::PassedWord& passed : log.PassedWords)
            EXPECT_TRUE(MayBePassedOver(passed.Word))
                << path.toStdString() << ":" << passed.Line << ": " << passed.Word.toStdString();
        const auto score = ConvertToNewDocument(*doc, true);
        EXPECT_FALSE(score->Pages.empty()) << path.toStdString();
        const QStringList overlaps = testing::BarOverlaps(*score);
        EXPECT_TRUE(overlaps.isEmpty())
            << path.toStdString() << ": " << overlaps.join(QStringLiteral("; ")).toStdString();
    }
}

TEST(BwwCorpus, EveryFileImportsStrictlyOrIsRefusedWithTheImportsMessages)
{
    const QStringList paths = CorpusFiles();
    if (paths.isEmpty())
        GTEST_SKIP() << "no BWW corpus at " << CorpusDir().toStdString();
    int read = 0;
    int imported = 0;
    for (const QString& path : paths) {
        RecordingMessages messages;
        bww::ImportLog log;
        log.Mode = bww::Reading::Strict;
        const auto doc = LoadBww(path, log);
        ++read;
        imported += doc != nullptr ? 1 : 0;
        for (const QString& text : messages.Texts)
            EXPECT_TRUE(IsImportMessage(text)) << path.toStdString() << ": " << text.toStdString();
        if (doc == nullptr)
            continue;
        EXPECT_FALSE(doc->CentreText.Text.isEmpty()) << path.toStdString();
        // What the parser accepts, the conversion lays out.
        const auto score = ConvertToNewDocument(*doc, true);
        ASSERT_NE(score, nullptr) << path.toStdString();
        EXPECT_FALSE(score->Pages.empty()) << path.toStdString();
    }
    EXPECT_GT(read, 100);
    RecordProperty("imported", imported);
}

} // namespace
} // namespace corrieval
