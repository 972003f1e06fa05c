#include "EditCommandTestSupport.h"
#include "editor/PropertyDialogs.h"
#include "editor/RepeatCommands.h"
#include "model/AbbreviationArea.h"
#include "model/BarConfig.h"
#include "model/TunePage.h"
#include "notation/GroupCommands.h"
#include "notation/ImageArea.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TextArea.h"
#include "notation/TieEx.h"

#include <gtest/gtest.h>

namespace corrieval::edit_tests {
namespace {

const QString kTieRefused =
    QStringLiteral("You can only tie 2 notes of the same pitch, or any 3 notes as a triple.");
const QString kTiedDelete = QStringLiteral("You cannot delete a selection containing tied notes.");
const QString kPageQuestion = QStringLiteral("Are you sure? All data on the page will be lost.");

TEST(EditCommands, DotAndCutFollowTheHeadNoteAndToggleEachSelectedNote)
{
    EditedTune tune(CrotchetTune());
    CNoteEx& first = tune.Note(0, 0, 0);
    CNoteEx& second = tune.Note(0, 0, 1);
    EXPECT_FALSE(tune.Enabled(Dot));
    tune.Select({&tune.Bar(0, 0)});
    EXPECT_FALSE(tune.Enabled(CutNote));

    tune.Select({&first, &second});
    EXPECT_TRUE(tune.Enabled(Dot));
    EXPECT_FALSE(tune.State(Dot).checked);
    tune.Run(Dot);
    EXPECT_EQ(first.DotCut, CNoteEx::Dotted);
    EXPECT_EQ(second.DotCut, CNoteEx::Dotted);
    EXPECT_TRUE(tune.State(Dot).checked);
    // Cutting a dotted note makes it a cut note; the key does what the button does.
    tune.Key(Qt::Key_C);
    EXPECT_EQ(first.DotCut, CNoteEx::Cut);
    EXPECT_TRUE(tune.State(CutNote).checked);
    EXPECT_FALSE(tune.State(Dot).checked);
    tune.Key(Qt::Key_C);
    EXPECT_EQ(second.DotCut, CNoteEx::Plain);
    tune.Key(Qt::Key_D);
    EXPECT_EQ(first.DotCut, CNoteEx::Dotted);
    EXPECT_EQ(tune.View.History().Stack().count(), 4);
}

TEST(EditCommands, TieTiesLikePitchesOrThreeNotesAndUntiesWhatIsTied)
{
    RecordingMessages messages;
    EditedTune tune(CrotchetTune());
    CNoteEx& a = tune.Note(0, 1, 0); // pitch 7
    CNoteEx& b = tune.Note(0, 1, 1); // pitch 6
    CNoteEx& c = tune.Note(0, 2, 0);

    // One note: the ribbon greys the command, the key says why nothing happens.
    tune.Select({&a});
    EXPECT_FALSE(tune.Enabled(Tie));
    tune.Key(Qt::Key_T);
    EXPECT_EQ(messages.Texts, QStringList{kTieRefused});
    EXPECT_EQ(messages.LastKind, MessageKind::Warning);

    // Two of different pitches are refused; three of any pitch make a triplet.
    tune.Select({&a, &b});
    EXPECT_FALSE(tune.Enabled(Tie));
    tune.Select({&a, &b, &c});
    EXPECT_TRUE(tune.Enabled(Tie));
    tune.Run(Tie);
    ASSERT_NE(a.Tie, nullptr);
    EXPECT_EQ(a.Tie, c.Tie);
    EXPECT_EQ(tune.Doc().Ties.size(), 1u);

    // Tied notes cannot be deleted on their own.
    tune.Key(Qt::Key_Delete);
    EXPECT_EQ(messages.Texts.last(), kTiedDelete);
    EXPECT_EQ(tune.Bar(0, 1).ChildCount(), 2u);

    // T on tied notes unties them and says nothing.
    messages.Texts.clear();
    tune.Key(Qt::Key_T);
    EXPECT_EQ(a.Tie, nullptr);
    EXPECT_TRUE(tune.Doc().Ties.empty());
    EXPECT_TRUE(messages.Texts.isEmpty());

    // Two of one pitch across a bar line tie; on two staves they may not.
    b.Pitch = 5;
    tune.Select({&b, &c});
    EXPECT_TRUE(tune.Enabled(Tie));
    EditedTune twoLines(CrotchetTune(2));
    twoLines.Note(1, 0, 0).Pitch = twoLines.Note(0, 3, 1).Pitch;
    twoLines.Select({&twoLines.Note(0, 3, 1), &twoLines.Note(1, 0, 0)});
    EXPECT_FALSE(twoLines.Enabled(Tie));
}

TEST(EditCommands, GroupAndUngroupByKeyAndButtonClearTheSelection)
{
    EditedTune tune(CrotchetTune());
    CBarEx& bar = tune.Bar(0, 0);
    CNoteEx& a = tune.Note(0, 0, 0);
    CNoteEx& b = tune.Note(0, 0, 1);
    for (CNoteEx* note : {&a, &b}) {
        note->Duration = 8;
        note->UpdateChars();
    }
    tune.Select({&a});
    EXPECT_FALSE(tune.Enabled(Group));
    EXPECT_FALSE(tune.Enabled(Ungroup));
    tune.Select({&a, &b});
    ASSERT_TRUE(tune.Enabled(Group));
    tune.Key(Qt::Key_G);
    ASSERT_EQ(ChildrenOf<CNoteGroupEx>(bar).size(), 1u);
    EXPECT_EQ(a.Duration, 16);
    EXPECT_TRUE(tune.View.Selection().Empty());

    // One note of a group and G: that note gains a beam, no new group.
    tune.Select({&a});
    EXPECT_TRUE(tune.Enabled(Ungroup));
    tune.Key(Qt::Key_G);
    EXPECT_EQ(a.Duration, 32);
    EXPECT_EQ(ChildrenOf<CNoteGroupEx>(bar).size(), 1u);

    // Deleting every note of a group takes the group with them; undo brings all back, as new
    // objects read from the tune's bytes.
    tune.Select({&a, &b});
    tune.Run(Delete);
    EXPECT_EQ(bar.ChildCount(), 0u);
    tune.Run(Undo);
    CBarEx& restored = tune.Bar(0, 0);
    ASSERT_EQ(ChildrenOf<CNoteGroupEx>(restored).size(), 1u);
    CNoteGroupEx* group = ChildrenOf<CNoteGroupEx>(restored).front();

    tune.Select({group});
    tune.Run(Ungroup);
    tune.Select({group});
    tune.Key(Qt::Key_U);
    EXPECT_TRUE(ChildrenOf<CNoteGroupEx>(restored).empty());
    EXPECT_EQ(ChildrenOf<CNoteEx>(restored).size(), 2u);
    EXPECT_TRUE(tune.View.Selection().Empty());
}

TEST(EditCommands, DeleteAndInsertBarColumnsDeleteNotesAndPagesAsAskedKeepingAGroupsLastBar)
{
    RecordingMessages messages;
    EditedTune tune({.Pages = 2, .Groups = 2, .Parts = 2, .Columns = 2, .NotesPerBar = 2});
    CStaveGroup& system = static_cast<CStaveGroup&>(*tune.Music().ChildAt(0));

    // Notes.
    tune.Select({&tune.Note(0, 0, 0)});
    tune.Run(Delete);
    EXPECT_EQ(tune.Bar(0, 0).ChildCount(), 1u);
    EXPECT_TRUE(tune.View.Selection().Empty());

    // A bar takes its column in both staves; the last column stays.
    tune.Select({&tune.Bar(0, 1)});
    tune.Key(Qt::Key_Delete);
    EXPECT_EQ(system.BarConfigs.size(), 1u);
    EXPECT_EQ(static_cast<CStave&>(*system.ChildAt(1)).ChildCount(), 1u);
    tune.Select({&tune.Bar(0, 0)});
    tune.Run(Delete);
    EXPECT_EQ(system.BarConfigs.size(), 1u);
    EXPECT_EQ(tune.Bar(0, 0).ChildCount(), 1u);

    // A page asks first; Cancel keeps it.
    CTunePage* second = tune.Doc().Pages[1].get();
    tune.Select({second});
    messages.Answer = MessageAnswer::Cancel;
    tune.Run(Delete);
    EXPECT_EQ(messages.Texts, QStringList{kPageQuestion});
    EXPECT_EQ(messages.LastKind, MessageKind::OkCancel);
    ASSERT_EQ(tune.Doc().Pages.size(), 2u);
    messages.Answer = MessageAnswer::Ok;
    tune.Run(Delete);
    ASSERT_EQ(tune.Doc().Pages.size(), 1u);

    // The only page: greyed on the ribbon, but the key still reaches the question.
    tune.Select({tune.Doc().Pages.front().get()});
    EXPECT_FALSE(tune.Enabled(Delete));
    messages.Answer = MessageAnswer::Cancel;
    tune.Key(Qt::Key_Delete);
    EXPECT_EQ(messages.Texts.size(), 3);
    EXPECT_EQ(tune.Doc().Pages.size(), 1u);

    // Insert bar puts an empty column before the selected bar, in both staves.
    tune.Select({});
    EXPECT_FALSE(tune.Enabled(InsertBar));
    CBarEx& kept = tune.Bar(0, 0);
    tune.Select({&kept});
    tune.Run(InsertBar);
    ASSERT_EQ(system.BarConfigs.size(), 2u);
    EXPECT_EQ(&tune.Bar(0, 1), &kept);
    EXPECT_EQ(tune.Bar(0, 0).ChildCount(), 0u);
    EXPECT_EQ(static_cast<CStave&>(*system.ChildAt(1)).ChildCount(), 2u);
}

TEST(EditCommands, DeletingABarOrAreaTakesItsTiesAlong)
{
    EditedTune tune({.Groups = 1, .Parts = 1, .Columns = 3, .NotesPerBar = 2, .Repeats = true});
    ASSERT_EQ(tune.Doc().Ties.size(), 1u);
    CBarEx& tied = tune.Bar(0, 1);
    tune.Select({&tied});
    tune.Run(Delete);
    EXPECT_TRUE(tune.Doc().Ties.empty());
    // The file reads back whole: no tie names a note that is gone.
    ReadScore(tune.Bytes(), QStringLiteral("tune.skb"));
}

TEST(EditCommands, RepeatsBracketABarAndTheNextAndComeOffAgain)
{
    EditedTune tune(CrotchetTune(2, 2));
    CBarEx& last = tune.Bar(0, 1);
    CBarEx& next = tune.Bar(1, 0);
    tune.Select({&last});
    // Only after a click on the bar, which lets repeats be inserted.
    EXPECT_FALSE(tune.Enabled(InsertRepeats));
    tune.View.EditState().MayInsertRepeats = true;
    EXPECT_TRUE(tune.Enabled(InsertRepeats));
    EXPECT_FALSE(tune.Enabled(DeleteRepeats));
    tune.Run(InsertRepeats);
    ASSERT_NE(last.RepeatTiming, nullptr);
    EXPECT_EQ(last.RepeatTiming->RepeatId, 1);
    EXPECT_EQ(last.Config->RepeatEnding, CBarConfig::FirstTime);
    EXPECT_EQ(next.Config->RepeatEnding, CBarConfig::SecondTime);
    // The notes under the bracket play on their pass only.
    EXPECT_EQ(tune.Note(0, 1, 0).RepeatKind, 1);
    EXPECT_EQ(tune.Note(1, 0, 0).RepeatKind, 2);
    EXPECT_EQ(tune.Note(0, 0, 0).RepeatKind, 0);
    EXPECT_FALSE(tune.Enabled(InsertRepeats));
    ASSERT_TRUE(tune.Enabled(DeleteRepeats));

    // A note pasted into the first time afterwards plays on the first pass only; a note there
    // without a stamp (as an imported tune may have it) keeps none.
    tune.Note(0, 1, 1).RepeatKind = 0;
    tune.Select({&tune.Note(0, 0, 0)});
    tune.Run(Copy);
    tune.Select({&last});
    tune.Run(Paste);
    ASSERT_EQ(last.ChildCount(), 3u);
    EXPECT_EQ(static_cast<CNoteEx&>(*last.ChildAt(2)).RepeatKind, 1);
    EXPECT_EQ(tune.Note(0, 1, 1).RepeatKind, 0);
    tune.View.EditState().MayInsertRepeats = true;

    tune.Run(DeleteRepeats);
    EXPECT_EQ(last.RepeatTiming, nullptr);
    EXPECT_TRUE(tune.Music().RepeatMarkers.empty());
    EXPECT_EQ(last.Config->RepeatEnding, CBarConfig::NoEnding);
    EXPECT_EQ(next.Config->RepeatEnding, CBarConfig::SecondTime);
    EXPECT_EQ(tune.Note(0, 1, 0).RepeatKind, 0);
    EXPECT_EQ(tune.Note(0, 1, 0).RepeatId, 1);

    // A marker deleted by itself, as a click on its line selects it, leaves its bar as well.
    tune.Run(InsertRepeats);
    DeleteMarker(*last.RepeatTiming, tune.Doc());
    EXPECT_EQ(last.RepeatTiming, nullptr);
    EXPECT_TRUE(tune.Music().RepeatMarkers.empty());
    EXPECT_EQ(tune.Note(0, 1, 0).RepeatKind, 0);

    // The last bar of the area has no bar to bracket as a second time.
    tune.Select({&tune.Bar(1, 1)});
    tune.View.EditState().MayInsertRepeats = true;
    EXPECT_FALSE(tune.Enabled(InsertRepeats));
}

TEST(EditCommands, SelectAllTakesEveryNoteItemOfTheMusicAreaInHand)
{
    EditedTune tune(CrotchetTune(2));
    CTextArea* title = ChildrenOf<CTextArea>(*tune.Doc().Pages.front()).front();
    CNoteEx& first = tune.Note(0, 0, 0);
    CNoteGroupEx* group = GroupNotes({&first, &tune.Note(0, 0, 1)});
    ASSERT_NE(group, nullptr);

    // Nothing selected: the music of the page in view; a group counts as one item.
    tune.Select({});
    tune.Run(SelectAll);
    EXPECT_EQ(tune.View.Selection().Count(), 15u);
    EXPECT_TRUE(tune.View.Selection().Contains(group));
    EXPECT_FALSE(tune.View.Selection().Contains(&first));
    // A bar selected: the music around it.
    tune.Select({&tune.Bar(1, 2)});
    tune.Run(SelectAll);
    EXPECT_EQ(tune.View.Selection().Count(), 15u);
    EXPECT_FALSE(tune.View.Selection().Contains(&tune.Bar(1, 2)));

    // Outside any music, or in a tune without it, there is nothing to take.
    tune.Select({title});
    EXPECT_FALSE(tune.Enabled(SelectAll));
    tune.Select({});
    tune.Doc().Pages.front()->RemoveChild(&tune.Music(), true);
    EXPECT_FALSE(tune.Enabled(SelectAll));
}

// Properties opens by what is selected, with check values and the width-following zoom held
// off while the dialog is open.
class RecordingDialogs : public PropertyDialogs {
public:
    explicit RecordingDialogs(CCorrievalView& view) : m_view(view) {}
    bool EditStaveArea(CStaveArea* area, QWidget*) override { return Note("music", area); }
    bool EditTextArea(CTextArea* area, QWidget*) override
    {
        if (area != nullptr)
            area->Text = QStringLiteral("Changed");
        return Note("text", area);
    }
    bool EditImageArea(CImageArea& area, QWidget*) override { return Note("image", &area); }
    bool EditBar(CBarEx& bar, QWidget*) override { return Note("bar", &bar); }
    bool EditNotes(const std::vector<CScoObj*>& selection, QWidget*) override
    {
        return Note("notes", selection.front());
    }

    QStringList Opened;
    std::vector<const CScoObj*> Given;
    bool Suspended = true;

private:
    bool Note(const char* what, const CScoObj* object)
    {
        Opened << QString::fromLatin1(what);
        Given.push_back(object);
        Suspended = Suspended && m_view.Document()->CheckValues == 0 && !m_view.ZoomsToWidth();
        return true;
    }
    CCorrievalView& m_view;
};

TEST(EditCommands, PropertiesOpenByTheHeadItemWithChecksSuspended)
{
    EditedTune tune(CrotchetTune());
    RecordingDialogs dialogs(tune.View);
    PropertyDialogs* previous = SetPropertyDialogs(&dialogs);
    tune.View.FitToWidth();
    CTextArea* title = ChildrenOf<CTextArea>(*tune.Doc().Pages.front()).front();
    tune.Select({&tune.Music()});
    tune.Run(CheckValues);
    ASSERT_NE(tune.Doc().CheckValues, 0);

    tune.Run(Properties);
    tune.Select({title});
    tune.Run(Properties);
    EXPECT_EQ(title->Text, QStringLiteral("Changed"));
    EXPECT_TRUE(tune.View.History().CanUndo());
    tune.Select({title, &tune.Music()});
    tune.Run(Properties);
    tune.Select({&tune.Bar(0, 0)});
    tune.Run(Properties);
    tune.Select({&tune.Note(0, 0, 0), &tune.Note(0, 0, 1)});
    tune.Run(Properties);
    tune.Select({tune.Doc().Pages.front().get()});
    tune.Run(Properties);
    SetPropertyDialogs(previous);

    EXPECT_EQ(dialogs.Opened, (QStringList{"music", "text", "text", "bar", "notes"}));
    EXPECT_EQ(dialogs.Given[0], &tune.Music());
    EXPECT_EQ(dialogs.Given[2], nullptr); // more than the text area selected
    EXPECT_TRUE(dialogs.Suspended);
    EXPECT_NE(tune.Doc().CheckValues, 0);
    EXPECT_TRUE(tune.View.ZoomsToWidth());
}

TEST(EditCommands, AreasArrangeJustifyCheckValuesAndOrganise)
{
    RecordingMessages messages;
    EditedTune tune(CrotchetTune());
    CTunePage& page = *tune.Doc().Pages.front();
    CTextArea* title = ChildrenOf<CTextArea>(page).front();
    CStaveArea& music = tune.Music();

    tune.Select({title});
    EXPECT_FALSE(tune.Enabled(CheckValues));
    tune.Run(AlignRight);
    EXPECT_EQ(title->Alignment, CTextArea::Right);
    tune.Run(BringToFront);
    EXPECT_EQ(page.ChildAt(page.ChildCount() - 1), title);
    tune.Run(SendToBack);
    EXPECT_EQ(page.ChildAt(0), title);

    // Check values colours the bars: two crotchets leave a bar of this tune's time short.
    tune.Select({&music});
    EXPECT_FALSE(tune.Enabled(AlignLeft));
    tune.Run(CheckValues);
    EXPECT_EQ(tune.View.EditState().CheckValuesArea, &music);
    EXPECT_FALSE(tune.Bar(0, 0).UseBackground);
    EXPECT_EQ(tune.Bar(0, 0).Colour, CBarEx::ShortColour);
    tune.Run(CheckValues);
    EXPECT_EQ(tune.View.EditState().CheckValuesArea, nullptr);
    EXPECT_TRUE(tune.Bar(0, 0).UseBackground);

    // Organising the area asks about the notes; both answers organise it.
    messages.Answer = MessageAnswer::No;
    tune.Bar(0, 0).SetBounds(tune.Bar(0, 0).Bounds().X, tune.Bar(0, 0).Bounds().Y, 0.5f,
                             tune.Bar(0, 0).Bounds().Height);
    ASSERT_TRUE(tune.Enabled(AutoOrganise));
    tune.Run(AutoOrganise);
    EXPECT_EQ(messages.LastKind, MessageKind::YesNo);
    EXPECT_NEAR(tune.Bar(0, 0).Bounds().Width, tune.Bar(0, 1).Bounds().Width, 1e-4);
    tune.Select({&tune.Bar(0, 0)});
    EXPECT_TRUE(tune.Enabled(AutoOrganise));
    tune.Select({&tune.Note(0, 0, 0)});
    EXPECT_FALSE(tune.Enabled(AutoOrganise));
    EXPECT_FALSE(tune.Enabled(BringToFront));
}

TEST(EditCommands, AnAreaKindWaitsForTheNextBandUnlessTheTuneIsLocked)
{
    EditedTune tune(CrotchetTune());
    tune.View.EditState().PaletteEntry = 3;
    tune.Run(InsertMusic);
    EXPECT_EQ(tune.View.EditState().PendingArea, &CStaveArea::Class);
    EXPECT_EQ(tune.View.EditState().PaletteEntry, -1);
    EXPECT_TRUE(tune.State(InsertMusic).checked);
    tune.Run(InsertAbbreviation);
    EXPECT_TRUE(tune.State(InsertAbbreviation).checked);

    tune.View.EditState().PendingArea = nullptr;
    tune.Doc().Locked = 1;
    tune.Run(InsertImage);
    EXPECT_EQ(tune.View.EditState().PendingArea, nullptr);

    // A page is added at the end, as one step.
    tune.Run(InsertPage);
    EXPECT_EQ(tune.Doc().Pages.size(), 2u);
    EXPECT_EQ(tune.View.History().Stack().count(), 1);
}

} // namespace
} // namespace corrieval::edit_tests
