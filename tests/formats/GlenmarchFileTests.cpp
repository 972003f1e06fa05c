#include "formats/GlenmarchTune.h"
#include "formats/archive/ArchiveError.h"
#include "formats/glenmarch/GlenmarchFile.h"
#include "formats/glenmarch/PipeDoc.h"
#include "support/RecordingMessages.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::GlenmarchTune;
using testing::RecordingMessages;

// A tune that uses every record: two lines, notes of both record versions, a beam, a tie and
// two parts.
GlenmarchTune SmallTune()
{
    GlenmarchTune tune;
    tune.Doc.TimeSigText = QStringLiteral("$");
    tune.Doc.CentreText.Text = QStringLiteral("The Ale is Dear");
    CBar& first = tune.AddBar(1, 1);
    const CNote& a = tune.AddNote(first, 3, 20, 200);
    const CNote& b = tune.AddNote(first, 3, 23, 400, 1);
    tune.Beam(first, {&a, &b});
    CBar& second = tune.AddBar(1, 2);
    second.Version = 1;
    CNote& c = tune.AddNote(second, 2, 23, 300);
    c.Version = 1;
    tune.Tie(b, c);
    tune.AddPart(1, 2);
    tune.AddPart(2, 0).Version = 1;
    return tune;
}

TEST(GlenmarchFile, RecordsComeBackAsTheyWereWritten)
{
    GlenmarchTune tune = SmallTune();
    const auto read = tune.Reread();

    ASSERT_EQ(read->Bars.size(), 2u);
    const CBar& bar = *read->Bars[0];
    EXPECT_EQ(bar.Line, 1);
    EXPECT_EQ(bar.Column, 1);
    EXPECT_EQ(bar.Left, 500);
    ASSERT_EQ(bar.Notes.size(), 2u);
    EXPECT_EQ(bar.Notes[1]->Pitch, 23);
    EXPECT_EQ(bar.Notes[1]->Code, 3);
    EXPECT_EQ(bar.Notes[1]->X, 400);
    EXPECT_EQ(bar.Notes[1]->Dot, 1);
    ASSERT_EQ(bar.Groups.size(), 1u);
    EXPECT_EQ(bar.Groups[0]->NoteIds, (std::vector<std::int32_t>{1, 2}));
    EXPECT_EQ(bar.Groups[0]->LeftmostX, 200);
    EXPECT_EQ(bar.Groups[0]->RightmostX, 400);
    ASSERT_EQ(read->Ties.size(), 1u);
    EXPECT_EQ(read->Ties[0]->First, 2);
    EXPECT_EQ(read->Ties[0]->Second, 3);
    EXPECT_EQ(read->CentreText.Text, QStringLiteral("The Ale is Dear"));
    EXPECT_EQ(read->TimeSigText, QStringLiteral("$"));
    EXPECT_EQ(read->NextNoteId, 4);
}

TEST(GlenmarchFile, VersionOneRecordsHaveNoScaleAndKeepTheirFlagsElsewhere)
{
    GlenmarchTune tune = SmallTune();
    tune.Doc.Bars[1]->Scale = 3.0;
    tune.Doc.Bars[1]->Notes[0]->Scale = 3.0;
    CPart& old = *tune.Doc.Parts[1];
    old.FirstReserved = 1;
    old.ThirdField = 7;
    old.AnacrusisState = 2;

    // The scales of the version 1 records are not even written: 16 bytes fewer.
    GlenmarchTune current = SmallTune();
    current.Doc.Bars[1]->Version = 2;
    current.Doc.Bars[1]->Notes[0]->Version = 2;
    EXPECT_EQ(current.Bytes().size() - tune.Bytes().size(), 16);

    const auto read = tune.Reread();
    EXPECT_EQ(read->Bars[1]->Scale, 1.0);
    EXPECT_EQ(read->Bars[1]->Notes[0]->Scale, 1.0);
    EXPECT_EQ(read->Parts[1]->AnacrusisState, CPart::Upbeat);
    EXPECT_EQ(read->Parts[1]->EndingKind, CPart::FirstTime);
    // A current part keeps what it says.
    EXPECT_EQ(read->Parts[0]->AnacrusisState, CPart::NoUpbeat);
    EXPECT_EQ(read->Parts[0]->EndingKind, CPart::NoEnding);
}

TEST(GlenmarchFile, LoadingSettlesThePageAndTheSchema)
{
    GlenmarchTune tune = SmallTune();
    tune.Doc.PageMargins = {0.7, 0.8, 0.9, 1.0};
    tune.Doc.Scale = 2.0;
    tune.Doc.BarLimit = 40;
    tune.Doc.BeatDoubling = 0;
    tune.Doc.Bars[0]->Height = 600;

    tune.Doc.Schema = 4;
    auto read = tune.Reread();
    EXPECT_EQ(read->PrintMargins.Left, 0.7);
    EXPECT_EQ(read->PrintMargins.Bottom, 1.0);
    EXPECT_EQ(read->PageMargins.Left, CPipeDoc::DefaultMargin);
    EXPECT_EQ(read->Scale, -1.0);
    EXPECT_EQ(read->Schema, CPipeDoc::LoadedSchema);
    EXPECT_EQ(read->BarLimit, 40);
    EXPECT_EQ(read->BeatDoubling, 0);
    // The stave gap is worked out afresh: a sixth of the height, by the file's scale.
    EXPECT_EQ(read->Bars[0]->StaveGap, 200.0);

    tune.Doc.Schema = 3;
    read = tune.Reread();
    EXPECT_EQ(read->BeatDoubling, 1);
    EXPECT_EQ(read->BarLimit, 40);

    tune.Doc.Schema = 2;
    read = tune.Reread();
    EXPECT_EQ(read->BarLimit, 110);

    // The first files left the totals out; they come from the parts, bars and lines crossed.
    tune.Doc.Schema = 1;
    tune.Doc.Parts[0]->BarCount = 8;
    tune.Doc.Parts[0]->SecondReserved = 2;
    tune.Doc.Parts[1]->SecondReserved = 3;
    tune.Doc.TotalBarCount = 5;
    read = tune.Reread();
    EXPECT_EQ(read->TotalLineCount, 16);
    EXPECT_EQ(read->TotalBarCount, 10);
}

TEST(GlenmarchFile, PartsFindTheBarOfTheirFirstTimeNote)
{
    GlenmarchTune tune = SmallTune();
    tune.Doc.Parts[0]->FirstTimeBar = 3; // the note in the bar at line 1, column 2
    tune.Doc.Parts[1]->FirstTimeBar = 3; // version 1: not looked up
    const auto read = tune.Reread();
    EXPECT_EQ(read->Parts[0]->FirstTimeLine, 1);
    EXPECT_EQ(read->Parts[0]->FirstTimeColumn, 2);
    EXPECT_EQ(read->Parts[1]->FirstTimeLine, 0);
    EXPECT_EQ(read->PartByNumber(2), read->Parts[1].get());
    EXPECT_EQ(read->BarAt(1, 2), read->Bars[1].get());
    EXPECT_EQ(read->BarByNumber(1), read->Bars[0].get());
    EXPECT_EQ(read->BarAt(2, 1), nullptr);
}

// Every prefix of a good file is a damaged file: each must be refused with the file's name and
// a place within it, never read past or crashed on.
TEST(GlenmarchFile, EveryTruncationIsRefusedCleanly)
{
    GlenmarchTune tune = SmallTune();
    const QByteArray whole = tune.Bytes();
    ASSERT_NO_THROW(ReadGlenmarch(whole, QStringLiteral("tune.glm")));
    for (qsizetype size = 0; size < whole.size(); ++size) {
        try {
            ReadGlenmarch(whole.left(size), QStringLiteral("tune.glm"));
            ADD_FAILURE() << "a file cut to " << size << " bytes was read";
        } catch (const ArchiveError& e) {
            EXPECT_EQ(e.Cause(), ArchiveCause::EndOfFile) << size;
            EXPECT_EQ(e.FileName(), QStringLiteral("tune.glm"));
            EXPECT_LE(e.Offset(), static_cast<std::uint64_t>(size));
        }
    }
}

TEST(GlenmarchFile, DamagedListsAreRefused)
{
    GlenmarchTune tune = SmallTune();
    const QByteArray whole = tune.Bytes();

    // A class of the score file where a bar belongs.
    QByteArray wrongClass = whole;
    wrongClass.replace("CBar", "CTie");
    EXPECT_THROW(
        {
            try {
                ReadGlenmarch(wrongClass, QStringLiteral("x.glm"));
            } catch (const ArchiveError& e) {
                EXPECT_EQ(e.Cause(), ArchiveCause::BadClass);
                throw;
            }
        },
        ArchiveError);

    // A beam that claims two thousand million notes runs into the end of the file at once.
    QByteArray huge = whole;
    const qsizetype group = huge.indexOf("CNoteGroup") + 10;
    huge.replace(group, 4, QByteArray("\xff\xff\xff\x7f", 4));
    EXPECT_THROW(ReadGlenmarch(huge, QStringLiteral("x.glm")), ArchiveError);
}

TEST(GlenmarchFile, ImportReportsWhatWentWrong)
{
    RecordingMessages messages;
    QTemporaryDir dir;
    EXPECT_FALSE(ImportGlenmarch(dir.filePath(QStringLiteral("missing.glm"))));
    ASSERT_EQ(messages.Texts.size(), 1);
    EXPECT_EQ(messages.Texts[0], QStringLiteral("Error opening the file"));
    EXPECT_EQ(messages.LastKind, MessageKind::OkCancel);

    GlenmarchTune tune = SmallTune();
    const QString path = dir.filePath(QStringLiteral("cut.glm"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(tune.Bytes().left(60));
    file.close();
    EXPECT_FALSE(ImportGlenmarch(path));
    ASSERT_EQ(messages.Texts.size(), 2);
    EXPECT_TRUE(messages.Texts[1].startsWith(path + QStringLiteral(": end of file at byte ")))
        << messages.Texts[1].toStdString();
}

TEST(GlenmarchImport, BarsPlaceNotesOnTheNearestPosition)
{
    RecordingMessages messages;
    CPipeDoc doc;
    CBar bar;
    bar.Top = 2000;
    bar.Left = 100;
    const double h = bar.StaveGap; // 83 for the standard height of 500
    // Position 16 lies at trunc(2.5 h) below the middle, each position half a gap higher.
    CNote* low = bar.AddNote(2, 300, 2000 + 207, doc);
    CNote* d = bar.AddNote(2, 400, static_cast<std::int32_t>(2000 + 207 - 7 * h / 2 + 10), doc);
    ASSERT_NE(low, nullptr);
    EXPECT_EQ(low->Pitch, 16);
    EXPECT_EQ(low->X, 200);
    EXPECT_EQ(d->Pitch, 23);
    EXPECT_EQ(d->Index, 2);
    EXPECT_NE(low->Id, d->Id);
    // Far above the stave the highest position is the nearest.
    EXPECT_EQ(bar.AddNote(2, 500, 0, doc)->Pitch, 27);
    // A movement is written where it belongs, wherever it was put.
    EXPECT_EQ(bar.AddNote(52, 600, 2207, doc)->Pitch, 23);
    EXPECT_EQ(bar.AddNote(31, 700, 2207, doc)->Pitch, 27);

    bar.HasNotes = 0;
    EXPECT_EQ(bar.AddNote(2, 300, 2000, doc), nullptr);
    EXPECT_EQ(messages.Texts, QStringList{QStringLiteral("Can't Add a new note to this bar!")});
}

TEST(GlenmarchImport, BeamsTakeNotesWithinTheBarUpToThirty)
{
    CPipeDoc doc;
    CBar bar;
    bar.Left = 1000;
    bar.Top = 3000;
    CNoteGroup* beam = bar.NewGroup(doc);
    CNote* note = bar.AddNote(3, 1200, 3000, doc);
    EXPECT_FALSE(bar.AddToGroup(*beam, *note, 900, 3000));  // left of the bar
    EXPECT_FALSE(bar.AddToGroup(*beam, *note, 1200, 3251)); // below it
    for (int i = 0; i < CNoteGroup::MaxNotes; ++i)
        EXPECT_TRUE(bar.AddToGroup(*beam, *note, 1200, 2750));
    EXPECT_FALSE(bar.AddToGroup(*beam, *note, 1500, 3000));
    EXPECT_EQ(beam->LeftmostX, 200);
    EXPECT_EQ(bar.GroupOf(note->Id), beam);

    // A second-time bar folds into the first, behind its notes.
    CBar second;
    second.AddNote(2, 100, 0, doc);
    bar.MergeNotesFrom(second);
    EXPECT_TRUE(second.Notes.empty());
    EXPECT_EQ(bar.Notes.at(1)->Index, 2);
}

TEST(GlenmarchImport, PartsAreLaidOutFourBarsToALine)
{
    CPipeDoc doc;
    for (const auto& [bars, anacrusis] : {std::pair{9, CPart::Upbeat}, std::pair{4, CPart::NoUpbeat}}) {
        CPart& part = *doc.Parts.emplace_back(std::make_unique<CPart>());
        part.Number = static_cast<std::int32_t>(doc.Parts.size());
        part.BarCount = bars;
        part.AnacrusisState = anacrusis;
        doc.LayOutPart(part.Number);
    }
    // The upbeat and four bars on the first line, then columns 2 to 5 under the four; the next
    // part on a line of its own, in columns 1 to 4.
    const auto columnsOf = [&doc](std::int32_t line) {
        QString columns;
        for (const auto& bar : doc.Bars)
            columns += bar->Line == line ? QString::number(bar->Column) : QString();
        return columns;
    };
    EXPECT_EQ(columnsOf(1), QStringLiteral("12345"));
    EXPECT_EQ(columnsOf(2), QStringLiteral("2345"));
    EXPECT_EQ(columnsOf(3), QStringLiteral("1234"));
    EXPECT_LT(doc.BarAt(1, 1)->Width, doc.BarAt(1, 2)->Width);
    EXPECT_EQ(doc.BarAt(1, 3)->Left, doc.BarAt(2, 3)->Left);
    EXPECT_LT(doc.BarAt(1, 1)->Top, doc.BarAt(2, 2)->Top);
    EXPECT_EQ(doc.TotalBarCount, 13);
}

} // namespace
} // namespace corrieval
