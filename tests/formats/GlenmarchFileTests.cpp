#include "formats/GlenmarchTune.h"
#include "formats/glenmarch/GlenmarchFile.h"
#include "formats/glenmarch/PipeDoc.h"
#include "support/RecordingMessages.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::GlenmarchTune;
using testing::RecordingMessages;

TEST(GlenmarchFile, RecordsOfBothVersionsComeBackAsTheyWereWritten)
{
    GlenmarchTune tune = GlenmarchTune::EveryRecord();
    tune.Doc.Parts[0]->FirstTimeBar = 3; // the note in the bar at line 1, column 2
    // The second bar, its note and the second part are version 1 records: they have no scale and
    // keep the part's flags in other fields, and their first time bar is not looked up.
    tune.Doc.Bars[1]->Scale = 3.0;
    tune.Doc.Bars[1]->Notes[0]->Scale = 3.0;
    CPart& old = *tune.Doc.Parts[1];
    old.FirstTimeBar = 3;
    old.FirstReserved = 1;
    old.ThirdField = 7;
    old.AnacrusisState = 2;
    const auto read = tune.Reread();

    ASSERT_EQ(read->Bars.size(), 2u);
    const CBar& bar = *read->Bars[0];
    EXPECT_EQ(std::tuple(bar.Line, bar.Column, bar.Left), std::tuple(1, 1, 500));
    ASSERT_EQ(bar.Notes.size(), 2u);
    const CNote& note = *bar.Notes[1];
    EXPECT_EQ(std::tuple(note.Code, note.Pitch, note.X, note.Dot), std::tuple(3, 23, 400, 1));
    ASSERT_EQ(bar.Groups.size(), 1u);
    EXPECT_EQ(bar.Groups[0]->NoteIds, (std::vector<std::int32_t>{1, 2}));
    EXPECT_EQ(std::pair(bar.Groups[0]->LeftmostX, bar.Groups[0]->RightmostX), std::pair(200, 400));
    ASSERT_EQ(read->Ties.size(), 1u);
    EXPECT_EQ(std::pair(read->Ties[0]->First, read->Ties[0]->Second), std::pair(2, 3));
    EXPECT_EQ(read->CentreText.Text, QStringLiteral("The Ale is Dear"));
    EXPECT_EQ(read->TimeSigText, QStringLiteral("$"));
    EXPECT_EQ(read->NextNoteId, 4);
    const CPart& first = *read->Parts[0];
    EXPECT_EQ(std::tuple(first.FirstTimeLine, first.FirstTimeColumn, first.AnacrusisState, first.EndingKind),
              std::tuple(1, 2, CPart::NoUpbeat, CPart::NoEnding));

    EXPECT_EQ(read->Bars[1]->Scale, 1.0);
    EXPECT_EQ(read->Bars[1]->Notes[0]->Scale, 1.0);
    const CPart& second = *read->Parts[1];
    EXPECT_EQ(std::tuple(second.FirstTimeLine, second.AnacrusisState, second.EndingKind),
              std::tuple(0, CPart::Upbeat, CPart::FirstTime));
    // The scales of the version 1 records are not even written: 16 bytes fewer.
    GlenmarchTune current = GlenmarchTune::EveryRecord();
    current.Doc.Bars[1]->Version = 2;
    current.Doc.Bars[1]->Notes[0]->Version = 2;
    EXPECT_EQ(current.Bytes().size() - tune.Bytes().size(), 16);
}

TEST(GlenmarchFile, LoadingSettlesThePageAndTheSchema)
{
    GlenmarchTune tune = GlenmarchTune::EveryRecord();
    tune.Doc.PageMargins = {0.7, 0.8, 0.9, 1.0};
    tune.Doc.Scale = 2.0;
    tune.Doc.BarLimit = 40;
    tune.Doc.BeatDoubling = 0;
    tune.Doc.Bars[0]->Height = 600;

    tune.Doc.Schema = 4;
    auto read = tune.Reread();
    // The margins in the file become the printer's; the page takes the default ones.
    EXPECT_EQ(std::pair(read->PrintMargins.Left, read->PrintMargins.Bottom), std::pair(0.7, 1.0));
    EXPECT_EQ(std::pair(read->PageMargins.Left, read->Scale), std::pair(CPipeDoc::DefaultMargin, -1.0));
    EXPECT_EQ(std::tuple(read->Schema, read->BarLimit, read->BeatDoubling),
              std::tuple(CPipeDoc::LoadedSchema, 40, 0));
    // The stave gap is worked out afresh: a sixth of the height, by the file's scale.
    EXPECT_EQ(read->Bars[0]->StaveGap, 200.0);

    // Before schema 4 every tune doubled its beamed notes; the bar limit of schema 2 meant nothing.
    tune.Doc.Schema = 3;
    EXPECT_EQ(tune.Reread()->BeatDoubling, 1);
    tune.Doc.Schema = 2;
    EXPECT_EQ(tune.Reread()->BarLimit, 110);

    // The first files left the totals out; they come from the parts, bars and lines crossed.
    tune.Doc.Schema = 1;
    tune.Doc.Parts[0]->BarCount = 8;
    tune.Doc.Parts[0]->SecondReserved = 2;
    tune.Doc.Parts[1]->SecondReserved = 3;
    tune.Doc.TotalBarCount = 5;
    read = tune.Reread();
    EXPECT_EQ(std::pair(read->TotalLineCount, read->TotalBarCount), std::pair(16, 10));
}

TEST(GlenmarchFile, ImportReportsWhatWentWrong)
{
    RecordingMessages messages;
    QTemporaryDir dir;
    EXPECT_FALSE(ImportGlenmarch(dir.filePath(QStringLiteral("missing.glm"))));
    EXPECT_EQ(messages.Texts, QStringList{QStringLiteral("Error opening the file")});
    EXPECT_EQ(messages.LastKind, MessageKind::OkCancel);

    const QString path = dir.filePath(QStringLiteral("cut.glm"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(GlenmarchTune::EveryRecord().Bytes().left(60));
    file.close();
    EXPECT_FALSE(ImportGlenmarch(path));
    ASSERT_EQ(messages.Texts.size(), 2);
    EXPECT_TRUE(messages.Texts[1].startsWith(path + QStringLiteral(": end of file at byte ")))
        << messages.Texts[1].toStdString();
}

// The imports of text files place notes and beams by where they would be drawn.
TEST(GlenmarchImport, BarsPlaceNotesAndBeamsWithinTheirBounds)
{
    RecordingMessages messages;
    CPipeDoc doc;
    CBar bar;
    bar.Left = 100;
    bar.Top = 2000;
    // Position 16 lies at trunc(2.5 h) below the middle, h the stave gap of 83; far above the stave
    // the highest position is the nearest; a movement goes where it belongs, wherever it was put.
    CNote* low = bar.AddNote(3, 300, 2000 + 207, doc);
    ASSERT_NE(low, nullptr);
    EXPECT_EQ(std::tuple(low->Pitch, low->X, low->Index), std::tuple(16, 200, 1));
    EXPECT_EQ(bar.AddNote(2, 500, 0, doc)->Pitch, 27);
    EXPECT_EQ(bar.AddNote(52, 600, 2207, doc)->Pitch, 23);
    EXPECT_EQ(bar.AddNote(31, 700, 2207, doc)->Pitch, 27);

    CNoteGroup* beam = bar.NewGroup(doc);
    EXPECT_FALSE(bar.AddToGroup(*beam, *low, 50, 2000));  // left of the bar
    EXPECT_FALSE(bar.AddToGroup(*beam, *low, 400, 2251)); // below it
    for (int i = 0; i < CNoteGroup::MaxNotes; ++i)
        EXPECT_TRUE(bar.AddToGroup(*beam, *low, 400, 1750));
    EXPECT_FALSE(bar.AddToGroup(*beam, *low, 400, 2000));
    EXPECT_EQ(beam->LeftmostX, low->X);
    EXPECT_EQ(bar.GroupOf(low->Id), beam);

    // A second-time bar folds into the first, behind its notes.
    CBar second;
    second.AddNote(2, 100, 0, doc);
    bar.MergeNotesFrom(second);
    EXPECT_TRUE(second.Notes.empty());
    EXPECT_EQ(bar.Notes.at(4)->Index, 5);

    bar.HasNotes = 0;
    EXPECT_EQ(bar.AddNote(2, 300, 2000, doc), nullptr);
    EXPECT_EQ(messages.Texts, QStringList{QStringLiteral("Can't Add a new note to this bar!")});
}

} // namespace
} // namespace corrieval
