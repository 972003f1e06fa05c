#include "EditCommandTestSupport.h"
#include "editor/ScoreClipboard.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TextArea.h"

#include <QScrollBar>
#include <functional>
#include <gtest/gtest.h>

namespace corrieval::edit_tests {
namespace {

const QString kTooFewBars = QStringLiteral("Some music has not been pasted due to lack of sufficient bars.");

TEST(EditKeys, UpAndDownMoveTheSelectedNotesOneStepEachClampedToTheChanter)
{
    EditedTune tune(CrotchetTune(2));
    CNoteEx& high = tune.Note(0, 3, 0); // High A, 3
    CNoteEx& low = tune.Note(0, 1, 1);  // 6
    tune.Select({&high, &low});
    tune.Key(Qt::Key_Up);
    EXPECT_EQ(high.Pitch, 3);
    EXPECT_EQ(low.Pitch, 5);
    EXPECT_EQ(tune.View.History().Stack().count(), 1);
    for (int i = 0; i < 8; ++i)
        tune.Key(Qt::Key_Down);
    EXPECT_EQ(high.Pitch, 11);
    EXPECT_EQ(low.Pitch, 11);
    // Each press is one step; a press that moves nothing makes none.
    EXPECT_EQ(tune.View.History().Stack().count(), 9);
    tune.View.History().Undo();
    EXPECT_EQ(tune.View.Selection().Count(), 0u);

    // Without notes selected the arrows scroll the page as ever.
    const int before = tune.View.verticalScrollBar()->value();
    tune.Key(Qt::Key_Down);
    EXPECT_GT(tune.View.verticalScrollBar()->value(), before);
}

TEST(EditKeys, LeftAndRightWalkTheStaveAcrossBarsAndSystems)
{
    EditedTune tune(CrotchetTune(2, 2));
    CNoteEx& a = tune.Note(0, 0, 0);
    tune.Bar(0, 1).RemoveChild(tune.Bar(0, 1).ChildAt(1), true);
    tune.Bar(0, 1).RemoveChild(tune.Bar(0, 1).ChildAt(0), true);
    tune.Select({&a});
    tune.Key(Qt::Key_Left);
    EXPECT_EQ(tune.View.Selection().Head(), &a); // the start of the area
    tune.Key(Qt::Key_Right);
    EXPECT_EQ(tune.View.Selection().Head(), &tune.Note(0, 0, 1));
    // The empty bar is passed over, on into the next system.
    tune.Key(Qt::Key_Right);
    EXPECT_EQ(tune.View.Selection().Head(), &tune.Note(1, 0, 0));
    EXPECT_EQ(tune.View.Selection().Count(), 1u);
    tune.Key(Qt::Key_Left);
    EXPECT_EQ(tune.View.Selection().Head(), &tune.Note(0, 0, 1));

    // The notes of a beamed group one by one; from a bar, its first item.
    tune.Select({&tune.Bar(1, 1)});
    tune.Key(Qt::Key_Right);
    EXPECT_EQ(tune.View.Selection().Head(), &tune.Note(1, 1, 0));
    tune.Select({&tune.Bar(1, 1)});
    tune.Key(Qt::Key_Left);
    EXPECT_EQ(tune.View.Selection().Head(), &tune.Note(1, 0, 1));
}

// Every kind of change undoes to the very bytes the tune had, and redoes to those it had after.
TEST(EditUndo, EachCommandIsOneStepBackToTheSameBytes)
{
    RecordingMessages messages;
    messages.Answer = MessageAnswer::Yes;
    EditedTune tune(CrotchetTune(2));
    using Items = std::vector<CScoObj*>;
    struct Change {
        std::function<Items()> Selected;
        int Command = 0;
        Qt::Key Key = Qt::Key_unknown;
    };
    const std::vector<Change> changes = {
        {[&] { return Items{&tune.Note(0, 0, 0)}; }, Dot},
        {[&] { return Items{&tune.Note(0, 0, 0)}; }, 0, Qt::Key_C},
        {[&] {
             return Items{&tune.Note(0, 0, 0), &tune.Note(0, 0, 1)};
         },
         0, Qt::Key_G},
        {[&] { return Items{tune.Bar(0, 0).ChildAt(0)}; }, 0, Qt::Key_U},
        {[&] {
             return Items{&tune.Note(0, 1, 0), &tune.Note(0, 1, 1), &tune.Note(0, 2, 0)};
         },
         0, Qt::Key_T},
        {[&] { return Items{&tune.Bar(0, 2)}; }, InsertBar},
        {[&] { return Items{&tune.Bar(1, 1)}; }, Delete},
        {[&] { return Items{&tune.Note(1, 0, 0)}; }, 0, Qt::Key_Up},
        {[&] { return Items{&tune.Note(1, 0, 1)}; }, 0, Qt::Key_Delete},
        {[&] { return Items{&tune.Music()}; }, AutoOrganise},
        {[&] { return Items{ChildrenOf<CTextArea>(*tune.Doc().Pages.front()).front()}; }, AlignLeft},
        {[&] { return Items{&tune.Music()}; }, SendToBack},
        {[] { return Items{}; }, InsertPage},
    };
    std::vector<QByteArray> states{tune.Bytes()};
    for (const Change& change : changes) {
        tune.Select(change.Selected());
        if (change.Command != 0) {
            ASSERT_TRUE(tune.Enabled(change.Command)) << change.Command;
            tune.View.RunCommand(change.Command);
        } else {
            tune.Key(change.Key);
        }
        states.push_back(tune.Bytes());
        ASSERT_NE(states.back(), states[states.size() - 2]) << states.size();
    }
    UndoHistory& history = tune.View.History();
    ASSERT_EQ(history.Stack().count(), static_cast<int>(changes.size()));

    // The ribbon's buttons: undo all the way back, then redo all the way forward.
    for (std::size_t i = states.size() - 1; i > 0; --i) {
        ASSERT_TRUE(tune.Enabled(Undo));
        tune.Run(Undo);
        EXPECT_EQ(tune.Bytes(), states[i - 1]) << i;
    }
    EXPECT_FALSE(tune.Enabled(Undo));
    EXPECT_FALSE(tune.Doc().IsModified());
    for (std::size_t i = 1; i < states.size(); ++i) {
        ASSERT_TRUE(tune.Enabled(Redo));
        tune.Run(Redo);
        EXPECT_EQ(tune.Bytes(), states[i]) << i;
    }
    EXPECT_FALSE(tune.Enabled(Redo));

    // Saved half way: undoing back to that state leaves the tune unmodified.
    tune.Run(Undo);
    history.MarkSaved();
    EXPECT_FALSE(tune.Doc().IsModified());
    tune.Run(Undo);
    EXPECT_TRUE(tune.Doc().IsModified());
    tune.Run(Redo);
    EXPECT_FALSE(tune.Doc().IsModified());
}

TEST(EditClipboard, NotesOfBarsOneAndThreePasteIntoSevenAndEightAndTheRestIsReported)
{
    RecordingMessages messages;
    EditedTune source(CrotchetTune(2));
    EditedTune target({.Groups = 2, .Parts = 1, .Columns = 4, .NotesPerBar = 0});
    ScoreClipboard::Instance().Clear();
    EXPECT_FALSE(target.Enabled(Paste));
    source.Activate();
    EXPECT_FALSE(source.Enabled(Copy));
    source.Select({&source.Note(0, 0, 0), &source.Note(0, 0, 1), &source.Note(0, 2, 0)});
    ASSERT_TRUE(source.Enabled(Copy));
    source.Run(Copy);
    EXPECT_EQ(source.View.History().Stack().count(), 0);

    // Another tune of the same program: bar 7 is the third of the second system.
    target.Activate();
    target.Select({&target.Bar(1, 2)});
    ASSERT_TRUE(target.Enabled(Paste));
    target.Run(Paste);
    EXPECT_EQ(target.Bar(1, 2).ChildCount(), 2u);
    EXPECT_EQ(target.Bar(1, 3).ChildCount(), 1u);
    EXPECT_EQ(static_cast<CNoteEx&>(*target.Bar(1, 3).ChildAt(0)).Pitch, source.Note(0, 2, 0).Pitch);
    EXPECT_TRUE(messages.Texts.isEmpty());

    // From the last bar there is no bar for the second lot.
    target.Select({&target.Bar(1, 3)});
    target.Run(Paste);
    EXPECT_EQ(target.Bar(1, 3).ChildCount(), 3u);
    EXPECT_EQ(messages.Texts, QStringList{kTooFewBars});

    // A page takes no notes.
    target.Select({target.Doc().Pages.front().get()});
    EXPECT_FALSE(target.Enabled(Paste));
}

TEST(EditClipboard, AnAreaPastesOntoThePageInViewOffsetAndCutTakesIt)
{
    EditedTune tune(CrotchetTune(2));
    const auto page = [&tune]() -> CTunePage& { return *tune.Doc().Pages.front(); };
    tune.Select({ChildrenOf<CTextArea>(page()).front()});
    tune.Run(Cut);
    EXPECT_TRUE(ChildrenOf<CTextArea>(page()).empty());
    tune.Run(Undo);
    const RectF was = ChildrenOf<CTextArea>(page()).front()->Bounds();

    // Nothing selected: the paste goes to the page in view.
    tune.View.Selection().Clear();
    EXPECT_TRUE(tune.View.RunCommand(Paste));
    const auto titles = ChildrenOf<CTextArea>(page());
    ASSERT_EQ(titles.size(), 2u);
    EXPECT_NEAR(titles[1]->Bounds().X, was.X + ScoreClipboard::PasteOffset, 1e-5);
    EXPECT_NEAR(titles[1]->Bounds().Y, was.Y + ScoreClipboard::PasteOffset, 1e-5);
}

TEST(EditClipboard, DamagedClipboardBytesPasteNothingAndSaySo)
{
    RecordingMessages messages;
    EditedTune tune(CrotchetTune(2));
    tune.Select({&tune.Note(0, 0, 0)});
    tune.Run(Copy);
    QByteArray bytes = EncodeClipboard(ScoreClipboard::Instance().List());
    bytes.truncate(bytes.size() / 2);
    ScoreClipboard::WriteSystemClipboard(bytes);
    const QByteArray before = tune.Bytes();
    tune.Select({&tune.Bar(0, 1)});
    tune.Run(Paste);
    EXPECT_EQ(tune.Bytes(), before);
    ASSERT_EQ(messages.Texts.size(), 1);
    EXPECT_TRUE(messages.Texts.front().startsWith(QStringLiteral("The clipboard holds damaged music")));
    EXPECT_FALSE(tune.Enabled(Undo));
}

} // namespace
} // namespace corrieval::edit_tests
