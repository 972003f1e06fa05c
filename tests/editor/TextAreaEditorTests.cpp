// The text area's editor as a piper meets it: over the area at every zoom and scroll, in the
// area's font, colour and alignment, keeping the keys to itself, and giving the text back as one
// undo step.

#include "ShownView.h"
#include "editor/CorrievalView.h"
#include "editor/TextAreaEditor.h"
#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "model/TunePage.h"
#include "notation/TextArea.h"

#include <QAction>
#include <QDir>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTest>
#include <cmath>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

CTextArea& TitleOf(CCorrievalDoc& doc)
{
    return dynamic_cast<CTextArea&>(*doc.Pages[0]->ChildAt(0));
}

class KeyCounter : public QObject {
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        Keys += event->type() == QEvent::KeyPress ? 1 : 0;
        return false;
    }
    int Keys = 0;
};

// A one-page tune whose title a piper is about to edit.
struct TitleEditing : testing::ShownView {
    TitleEditing() : ShownView(fixtures::BuildTune({.Pages = 1, .Groups = 1, .Parts = 1, .Columns = 2}))
    {
        Show();
        View->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(View.get()));
        View->setFocus();
    }

    CTextArea& Title() const { return TitleOf(*Doc); }
    QPlainTextEdit& Box() const { return View->TextEditor().Box(); }
    void SelectTitle() const { View->Selection().Add(&Title()); }

    // Where the box belongs: the title's content box in the viewport's pixels.
    QRect ContentBoxPixels() const
    {
        const ViewTransform t = View->Transform();
        const RectF box = Title().ContentBox();
        return QRectF(t.DocumentToDevice({box.X, box.Y}), t.DocumentToDevice({box.Right(), box.Bottom()}))
            .toRect();
    }
    // Pixels of the painted page under the title's content box darker than mid grey.
    int PaintedInk()
    {
        const QRect box = ContentBoxPixels();
        const QImage& buffer = View->PaintBackBuffer(box);
        int ink = 0;
        for (int y = 0; y < box.height(); ++y) {
            for (int x = 0; x < box.width(); ++x)
                ink += qGray(buffer.pixel(x, y)) < 128 ? 1 : 0;
        }
        return ink;
    }
};

// Set CORRIEVAL_VIEW_SHOTS to a folder to keep what a piper sees at twice the size.
TEST(TextAreaEditor, LiesOverTheContentBoxInTheZoomedFontAndFollowsZoomAndScroll)
{
    TitleEditing shown;
    EXPECT_GT(shown.PaintedInk(), 0);
    shown.SelectTitle();
    QPlainTextEdit& box = shown.Box();
    ASSERT_TRUE(box.isVisible());
    EXPECT_TRUE(box.hasFocus());
    EXPECT_EQ(box.toPlainText(), shown.Title().Text);
    EXPECT_EQ(box.geometry(), shown.ContentBoxPixels());
    // The text is the box's alone while it is open: the page under it leaves it out.
    EXPECT_EQ(shown.PaintedInk(), 0);
    const int height = box.font().pixelSize();
    EXPECT_EQ(height, std::lround(shown.Title().DrawingFont().Height * shown.View->logicalDpiX()));

    shown.View->SetZoom(200);
    EXPECT_TRUE(shown.Title().Selected());
    ASSERT_TRUE(box.isVisible());
    EXPECT_EQ(box.geometry(), shown.ContentBoxPixels());
    EXPECT_NEAR(box.font().pixelSize(), 2 * height, 1);
    if (const QString folder = qEnvironmentVariable("CORRIEVAL_VIEW_SHOTS"); !folder.isEmpty())
        shown.Grab().save(QDir(folder).filePath(QStringLiteral("text-editor.png")));

    // Moved by the mouse or a command, the area takes the box along.
    const RectF at = shown.Title().Bounds();
    shown.Title().SetBounds(at.X + 0.5f, at.Y + 0.25f, at.Width - 1, at.Height);
    EXPECT_EQ(box.geometry(), shown.ContentBoxPixels());

    const QRect before = box.geometry();
    shown.View->verticalScrollBar()->setValue(shown.View->verticalScrollBar()->value() + 40);
    EXPECT_EQ(box.geometry(), before.translated(0, -40));
    EXPECT_EQ(box.geometry(), shown.ContentBoxPixels());

    shown.View->Selection().Clear();
    EXPECT_FALSE(box.isVisible());
    EXPECT_TRUE(shown.View->hasFocus());
    EXPECT_GT(shown.PaintedInk(), 0);
}

TEST(TextAreaEditor, KeepsTheKeysFromTheViewAndTheFramesShortcuts)
{
    TitleEditing shown;
    // A frame's single-letter shortcut, as the editing commands have.
    QAction letter(QStringLiteral("Dot"));
    letter.setShortcuts({QKeySequence(Qt::Key_D), QKeySequence(Qt::Key_Delete)});
    letter.setShortcutContext(Qt::ApplicationShortcut);
    shown.View->addAction(&letter);
    int fired = 0;
    QObject::connect(&letter, &QAction::triggered, [&fired] { ++fired; });

    // And whatever the box has no use for stays with it too.
    KeyCounter reaching;
    shown.View->installEventFilter(&reaching);
    shown.View->viewport()->installEventFilter(&reaching);

    shown.SelectTitle();
    shown.Box().selectAll();
    QTest::keyClicks(&shown.Box(), QStringLiteral("Dunvegan"));
    QTest::keyClick(&shown.Box(), Qt::Key_Delete);
    QTest::keyClick(&shown.Box(), Qt::Key_Escape);
    QTest::keyClick(&shown.Box(), Qt::Key_F5);
    EXPECT_EQ(fired, 0);
    EXPECT_EQ(reaching.Keys, 0);
    EXPECT_EQ(shown.Box().toPlainText(), QStringLiteral("Dunvegan"));
    EXPECT_EQ(shown.Title().Text, QStringLiteral("Dunvegan"));
    EXPECT_TRUE(shown.Title().Selected());
}

TEST(TextAreaEditor, GivesTheTextBackOnDeselectionAsOneUndoStepAndAnUndoClosesIt)
{
    TitleEditing shown;
    const QString original = shown.Title().Text;
    const QByteArray before = StoreScore(*shown.Doc, {});
    shown.SelectTitle();
    shown.Box().selectAll();
    QTest::keyClicks(&shown.Box(), QStringLiteral("Lochaber No More"));
    EXPECT_TRUE(shown.Doc->IsModified());
    EXPECT_FALSE(shown.View->History().CanUndo());

    shown.View->Selection().Clear();
    EXPECT_EQ(TitleOf(*ReadScore(StoreScore(*shown.Doc, {}), {})).Text, QStringLiteral("Lochaber No More"));
    // Selecting and leaving again without typing makes no step.
    shown.SelectTitle();
    shown.View->Selection().Clear();
    ASSERT_TRUE(shown.View->History().CanUndo());
    shown.View->History().Undo();
    EXPECT_FALSE(shown.View->History().CanUndo());
    EXPECT_EQ(shown.Title().Text, original);
    EXPECT_EQ(StoreScore(*shown.Doc, {}), before);
    shown.View->History().Redo();
    EXPECT_EQ(shown.Title().Text, QStringLiteral("Lochaber No More"));

    // An undo while the editor is open takes the editor away with the text it showed.
    shown.SelectTitle();
    QTest::keyClicks(&shown.Box(), QStringLiteral(" reel"));
    shown.View->TextEditor().Commit();
    shown.View->History().Undo();
    EXPECT_FALSE(shown.Box().isVisible());
    EXPECT_EQ(shown.View->TextEditor().Area(), nullptr);
    EXPECT_FALSE(shown.Title().EditorShown);
}

TEST(TextAreaEditor, ShowsTheAreasAlignmentAndColour)
{
    TitleEditing shown;
    shown.Title().Alignment = CTextArea::Right;
    shown.Title().Colour = 0x000000FF; // red, as the file stores it
    shown.Title().Text = QStringLiteral("Air");
    shown.SelectTitle();
    EXPECT_FALSE(shown.Doc->IsModified()) << "showing is no change";
    QPlainTextEdit& box = shown.Box();
    EXPECT_EQ(box.document()->defaultTextOption().alignment(), Qt::AlignRight);
    EXPECT_EQ(box.palette().color(QPalette::Text), QColor(Qt::red));
    box.moveCursor(QTextCursor::End);
    EXPECT_GT(box.cursorRect().right(), box.width() - 4);
    box.moveCursor(QTextCursor::Start);
    EXPECT_GT(box.cursorRect().left(), box.width() / 2);
}

TEST(TextAreaEditor, ALockedTuneShowsNone)
{
    TitleEditing shown;
    shown.Doc->Locked = 1;
    shown.SelectTitle();
    EXPECT_FALSE(shown.Box().isVisible());
    shown.View->Selection().Clear();

    shown.Doc->Locked = 0;
    shown.SelectTitle();
    ASSERT_TRUE(shown.Box().isVisible());
    QTest::keyClicks(&shown.Box(), QStringLiteral("!"));
    // Locking closes it, keeping what was typed.
    shown.Doc->Locked = 1;
    shown.View->OnUpdate();
    EXPECT_FALSE(shown.Box().isVisible());
    EXPECT_TRUE(shown.Title().Text.endsWith(QLatin1Char('!')));
    EXPECT_TRUE(shown.View->History().CanUndo());
}

} // namespace
} // namespace corrieval
