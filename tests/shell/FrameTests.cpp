// The main frame: which commands it offers in each state of the program, opening and closing
// tunes with the save question, and the command route.

#include "ShellTestSupport.h"
#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "editor/TextAreaEditor.h"
#include "formats/score/ScoreFile.h"
#include "model/SessionState.h"
#include "model/TunePage.h"
#include "notation/TextArea.h"
#include "shell/CommandTable.h"
#include "shell/MainFrame.h"
#include "shell/QuickStartChooser.h"
#include "shell/ribbon/Ribbon.h"
#include "shell/Transport.h"
#include "support/RecordingMessages.h"
#include "support/ScoreWalk.h"

#include <QAction>
#include <QEventLoop>
#include <QFile>
#include <QMdiArea>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using namespace corrieval;
using namespace corrieval::testing;

namespace {

class FrameTest : public ::testing::Test {
protected:
    // New tunes take A4 upright without the page set-up dialog, as a template does, so that no
    // modal dialog waits for a click.
    void SetUp() override { Session().TemplateOrientation = 2; }
    void TearDown() override { Session().TemplateOrientation = 0; }

    bool Enabled(int id) { return frame.Commands().State(id).enabled; }
    bool Checked(int id) { return frame.Commands().State(id).checked; }

    // A tune with music saved into the test's folder.
    QString SavedTune(const QString& name = QStringLiteral("tune.skb"))
    {
        const QString path = folder.filePath(name);
        auto doc = SmallTune();
        SaveScore(*doc, path);
        return path;
    }

    QTemporaryDir folder;
    CMainFrame frame{NullDevice, SamplesFolder()};
};

} // namespace

TEST_F(FrameTest, WithNoTuneOpenOnlyTheApplicationsWayInIsOffered)
{
    for (int id : {command::FileSave, command::FileSaveAs, command::FileClose, command::InsertPage,
                   command::InsertMusic, command::NotesGallery, command::Play, command::Stop,
                   command::ExportWav, command::ExportSkp, command::Lock, command::SelectAll, command::Undo})
        EXPECT_FALSE(Enabled(id)) << id;
    EXPECT_TRUE(Enabled(command::ShowMargins));
    EXPECT_TRUE(Enabled(command::AutoZoom));

    // A command whose owner is missing does not run, from a shortcut either, rather than reach a
    // null tune; one the frame owns runs and shows its state.
    EXPECT_FALSE(frame.Commands().Run(command::FileSave) && Enabled(command::FileSave));
    QAction* margins = frame.Commands().Action(command::ShowMargins);
    const bool before = Checked(command::ShowMargins);
    margins->trigger();
    EXPECT_NE(Checked(command::ShowMargins), before);
    EXPECT_EQ(margins->isChecked(), !before);
    margins->trigger();
}

TEST_F(FrameTest, ATuneOpensInATabOnceAndOffersItsCommands)
{
    const QString path = SavedTune();
    ASSERT_TRUE(frame.OpenDocument(path));
    ASSERT_TRUE(frame.OpenDocument(path));
    EXPECT_EQ(frame.Children().size(), 1) << "a tune already open is brought forward, not opened twice";
    CChildFrame* child = frame.ActiveChild();
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(child->windowTitle(), QStringLiteral("tune.skb[*]"));

    EXPECT_TRUE(Enabled(command::FileSave));
    EXPECT_TRUE(Enabled(command::ExportSkp));
    EXPECT_TRUE(Enabled(command::InsertPage));
    EXPECT_EQ(Enabled(command::Play), SamplesPresent());
    EXPECT_EQ(Enabled(command::ExportWav), SamplesPresent());

    // A locked tune offers no editing of what is selected.
    child->View().Selection().Add(child->Document().Pages.front().get());
    EXPECT_TRUE(Enabled(command::Properties));
    ASSERT_EQ(Enabled(command::Lock), SamplesPresent()) << "a tune may be locked once it could be played";
    if (!SamplesPresent())
        return;
    frame.Commands().Run(command::Lock);
    EXPECT_TRUE(Checked(command::Lock));
    EXPECT_FALSE(Enabled(command::Properties));
    EXPECT_TRUE(child->Document().IsModified());
    EXPECT_EQ(child->View().History().UndoLabel(), QStringLiteral("Undo Lock"));
}

TEST_F(FrameTest, EditKeysReachTheViewOnceAndTheUndoShortcutUndoesThem)
{
    ASSERT_TRUE(frame.OpenDocument(SavedTune()));
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    CCorrievalView& view = frame.ActiveChild()->View();
    CCorrievalDoc& doc = frame.ActiveChild()->Document();
    const auto firstBar = [&doc]() -> CBarEx& { return BarOf(*MusicAreas(doc).front(), 0, 0); };
    view.setFocus();
    view.Selection().Add(firstBar().ChildAt(0));
    // No action of the frame has Delete or a bare letter for its shortcut: the view takes them.
    QTest::keyClick(&view, Qt::Key_Delete);
    EXPECT_EQ(firstBar().ChildCount(), 1u);
    EXPECT_EQ(view.History().Stack().count(), 1);
    EXPECT_TRUE(doc.IsModified());
    // The program falls idle: the ribbon and the shortcuts catch up.
    QEventLoop idle;
    QTimer::singleShot(20, &idle, &QEventLoop::quit);
    idle.exec();
    EXPECT_EQ(frame.Commands().Action(command::Undo)->toolTip(), QStringLiteral("Undo Delete"));

    QTest::keyClick(&view, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(firstBar().ChildCount(), 2u);
    EXPECT_FALSE(doc.IsModified());
    QTest::keyClick(&view, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(firstBar().ChildCount(), 1u);
}

TEST_F(FrameTest, SavingWhileATitleIsTypedKeepsTheTypingAndClosingTheBoxChangesNothing)
{
    const QString path = folder.filePath(QStringLiteral("titled.skb"));
    {
        auto doc = SmallTune();
        CTunePage& page = *doc->Pages.front();
        auto title = std::make_unique<CTextArea>();
        title->SetBounds(page.ContentBox().X, page.ContentBox().Bottom() - 1.0f, 3.0f, 0.8f);
        page.AddChild(std::move(title), true);
        SaveScore(*doc, path);
    }
    ASSERT_TRUE(frame.OpenDocument(path));
    frame.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frame));
    CChildFrame& child = *frame.ActiveChild();
    CCorrievalView& view = child.View();
    CTextArea& title = *ChildrenOf<CTextArea>(*child.Document().Pages.front()).front();
    view.AddToSelection(title);
    QTest::keyClicks(&view.TextEditor().Box(), QStringLiteral("Dunvegan"));
    EXPECT_TRUE(child.Document().IsModified());

    frame.Commands().Run(command::FileSave);
    EXPECT_FALSE(child.Document().IsModified());
    EXPECT_EQ(view.History().UndoLabel(), QStringLiteral("Undo Typing"));
    view.RemoveFromSelection(title);
    EXPECT_EQ(view.TextEditor().Area(), nullptr);
    EXPECT_FALSE(child.Document().IsModified()) << "a piper who only closed the box is not asked to save";
    EXPECT_EQ(ChildrenOf<CTextArea>(*LoadScore(path)->Pages.front()).front()->Text,
              QStringLiteral("Dunvegan"));

    // Ctrl+A, with the box closed and the ribbon caught up, takes every note of the music.
    view.setFocus();
    QEventLoop idle;
    QTimer::singleShot(20, &idle, &QEventLoop::quit);
    idle.exec();
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(view.Selection().Count(), 4u);
}

TEST_F(FrameTest, ADamagedOrMissingFileIsRefusedWithItsNameAndOpensNothing)
{
    RecordingMessages messages;
    const QString damaged = folder.filePath(QStringLiteral("damaged.skb"));
    QFile file(damaged);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a tune at all");
    file.close();

    EXPECT_FALSE(frame.OpenDocument(damaged));
    EXPECT_FALSE(frame.OpenDocument(folder.filePath(QStringLiteral("missing.skb"))));
    EXPECT_FALSE(frame.OpenDocument(folder.filePath(QStringLiteral("missing.bww"))));
    EXPECT_TRUE(frame.Children().isEmpty());
    ASSERT_EQ(messages.Texts.size(), 3);
    EXPECT_TRUE(messages.Texts[0].startsWith(QStringLiteral("Could not open ") + damaged));
    EXPECT_TRUE(messages.Texts[1].contains(QStringLiteral("missing.skb")));
    EXPECT_TRUE(messages.Texts[2].contains(QStringLiteral("missing.bww")));
}

TEST_F(FrameTest, ClosingOrQuittingAsksForEachModifiedTuneAndCancelKeepsIt)
{
    RecordingMessages messages;
    ASSERT_TRUE(frame.OpenDocument(SavedTune(QStringLiteral("b.skb"))));
    ASSERT_TRUE(frame.OpenDocument(SavedTune(QStringLiteral("c.skb"))));
    const QString path = SavedTune(QStringLiteral("a.skb"));
    ASSERT_TRUE(frame.OpenDocument(path));
    for (CChildFrame* child : frame.Children())
        child->Document().SetModifiedFlag();
    CChildFrame* child = frame.ActiveChild();
    child->Document().Tempo = 100;

    messages.Answer = MessageAnswer::Cancel;
    EXPECT_FALSE(child->close());
    ASSERT_EQ(messages.Texts, QStringList{QStringLiteral("Save changes to a.skb?")});
    EXPECT_EQ(messages.LastKind, MessageKind::YesNoCancel);
    // Yes saves to the tune's own file and closes.
    messages.Answer = MessageAnswer::Yes;
    EXPECT_TRUE(child->close());
    QCoreApplication::processEvents();
    EXPECT_EQ(frame.Children().size(), 2);
    EXPECT_EQ(LoadScore(path)->Tempo, 100);

    // Quitting asks for each tune left, and stops at the first Cancel.
    messages.Texts.clear();
    messages.Answer = MessageAnswer::Cancel;
    EXPECT_FALSE(frame.close());
    EXPECT_EQ(frame.Children().size(), 2);
    messages.Answer = MessageAnswer::No;
    EXPECT_TRUE(frame.close());
    EXPECT_EQ(messages.Texts.size(), 3);
}

TEST_F(FrameTest, PlayEndsWhenAnotherTuneBecomesActive)
{
    if (!SamplesPresent())
        GTEST_SKIP() << "needs the instrument recordings";
    ASSERT_TRUE(frame.OpenDocument(SavedTune(QStringLiteral("a.skb"))));
    ASSERT_TRUE(frame.OpenDocument(SavedTune(QStringLiteral("b.skb"))));
    frame.Commands().Run(command::Play);
    ASSERT_TRUE(frame.Transport().IsPlaying());

    frame.findChild<QMdiArea*>()->activatePreviousSubWindow();
    EXPECT_FALSE(frame.Transport().IsPlaying());
    EXPECT_EQ(frame.ActiveChild()->Document().PathName(), folder.filePath(QStringLiteral("a.skb")));
}

TEST_F(FrameTest, TheQuickStartComesOnceWhenNoTuneIsOpenAndAgainAfterATuneCloses)
{
    const auto choosers = [this] { return frame.findChildren<CQuickStartChooser*>().size(); };
    frame.show();
    frame.RestartQuickStartTimer();
    ASSERT_TRUE(SpinUntil([&] { return choosers() == 1; }, 3000));
    // Close keeps it away, however long no tune is open.
    frame.findChild<CQuickStartChooser*>()->reject();
    SpinUntil([] { return false; }, 1200);
    EXPECT_EQ(choosers(), 0);

    // A tune made since brings it back once that tune has closed.
    frame.NewDocument();
    ASSERT_NE(frame.ActiveChild(), nullptr);
    frame.ActiveChild()->close();
    EXPECT_TRUE(SpinUntil([&] { return choosers() == 1; }, 3000));
}

TEST_F(FrameTest, AChosenLookReachesTheRibbonAndIsCheckedInTheStyleMenu)
{
    auto* ribbon = frame.findChild<ribbon::Ribbon*>();
    ASSERT_NE(ribbon, nullptr);
    frame.Commands().Run(command::StyleBlack);
    QCoreApplication::processEvents();
    EXPECT_LT(ribbon->palette().color(QPalette::Window).lightness(), 100);
    EXPECT_TRUE(Checked(command::StyleBlack));
    EXPECT_FALSE(Checked(command::StyleBlue));
    frame.Commands().Run(command::StyleBlue);
    QCoreApplication::processEvents();
    EXPECT_GT(ribbon->palette().color(QPalette::Window).lightness(), 150);
}
