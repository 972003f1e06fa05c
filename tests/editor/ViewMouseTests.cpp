#include "ShownView.h"
#include "editor/CorrievalView.h"
#include "editor/UndoHistory.h"
#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/AbbreviationArea.h"
#include "model/CorrievalDoc.h"
#include "notation/FixedNoteGroup.h"
#include "notation/GroupCommands.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TextArea.h"
#include "support/ScoreWalk.h"

#include <QTest>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::BarOf;
using testing::ChildrenOf;
using testing::MusicAreas;

QByteArray Bytes(CCorrievalDoc& doc)
{
    return StoreScore(doc, QStringLiteral("tune.skb"));
}

PointF Centre(const RectF& r)
{
    return {r.X + r.Width / 2, r.Y + r.Height / 2};
}

// A one-page tune of two one-stave systems, four crotchets to a bar, under a title, shown and
// painted, so that notes and handles have their drawn shapes; the mouse works in inches.
class ViewMouseTest : public ::testing::Test {
protected:
    explicit ViewMouseTest(bool repeats = false)
        : shown(fixtures::BuildTune(
              {.Pages = 1, .Groups = 2, .Parts = 1, .Columns = 4, .NotesPerBar = 4, .Repeats = repeats}))
    {
        shown.Show();
        Paint();
    }

    CCorrievalView& View() { return *shown.View; }
    CCorrievalDoc& Doc() { return *shown.Doc; }
    CTunePage& Page() { return *Doc().Pages.front(); }
    CStaveArea& Music() { return *MusicAreas(Doc()).front(); }
    CBarEx& Bar(std::size_t column, std::size_t system = 0) { return BarOf(Music(), system, column); }
    CNoteEx& Note(std::size_t column, std::size_t index)
    {
        return static_cast<CNoteEx&>(*Bar(column).ChildAt(index));
    }
    CScoSelection& Selection() { return View().Selection(); }
    CTextArea& Title() { return *ChildrenOf<CTextArea>(Page()).front(); }

    void Paint() { shown.Grab(); }
    // A doubling just before the bar's first note, drawn so that its heads have their shapes.
    CFixedNoteGroup* AddMovement(CBarEx& bar)
    {
        auto movement = std::make_unique<CFixedNoteGroup>(QStringLiteral("Doubling"));
        for (const NotePitch pitch : {3, 7}) {
            auto grace = std::make_unique<CNoteEx>(256);
            grace->Pitch = pitch;
            grace->GraceHead = true;
            grace->Stemmed = false;
            grace->UpdateChars();
            movement->AddChild(std::move(grace), true);
        }
        const RectF first = bar.ChildAt(0)->Bounds();
        movement->SetBounds(first.X - 0.12f, bar.Bounds().Y, 0.1f, bar.Bounds().Height);
        auto* added = static_cast<CFixedNoteGroup*>(bar.AddNoteSorted(std::move(movement)));
        Paint();
        return added;
    }
    QPoint Device(PointF p) { return View().Transform().DocumentToDevice(p).toPoint(); }
    void Press(PointF p, Qt::KeyboardModifiers mods = {}, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mousePress(View().viewport(), button, mods, Device(p));
    }
    void Move(PointF p) { QTest::mouseMove(View().viewport(), Device(p)); }
    void Release(PointF p) { QTest::mouseRelease(View().viewport(), Qt::LeftButton, {}, Device(p)); }
    void Click(PointF p, Qt::KeyboardModifiers mods = {})
    {
        Press(p, mods);
        Release(p);
    }
    void Drag(PointF from, PointF to)
    {
        Press(from);
        Move(to);
        Release(to);
    }
    void Key(Qt::Key key) { QTest::keyClick(shown.View.get(), key); }
    // The title, chosen by a click and painted, so that its handles can be grabbed.
    CTextArea& SelectedTitle()
    {
        Click(Centre(Title().ContentBox()));
        Paint();
        return Title();
    }
    PointF HeadOf(const CNoteEx& note) { return Centre(note.HeadRect); }
    // A point inside the bar's content box, clear of its notes' heads and stems.
    PointF EmptyPartOf(CBarEx& bar)
    {
        const RectF box = bar.ContentBox();
        for (float x = box.X + 0.05f; x < box.Right(); x += 0.01f) {
            const PointF at{x, box.Y + box.Height / 2};
            if (Page().HitTest(at.X, at.Y) == &bar)
                return at;
        }
        ADD_FAILURE() << "no empty place in the bar";
        return {};
    }
    bool ShowsBlueIn(const RectF& inches)
    {
        const QImage image = shown.Grab().convertToFormat(QImage::Format_RGB32);
        const QRect area = View().Transform().DocumentRectToDevice(inches);
        const qreal ratio = image.devicePixelRatio();
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                if (image.pixel(QPointF(QPointF(x, y) * ratio).toPoint()) == qRgb(0, 0, 255))
                    return true;
        return false;
    }
    // What the mouse did is `steps` undo steps, and undoing them gives back the tune as `saved`.
    void ExpectUndoneTo(const QByteArray& saved, int steps = 1)
    {
        EXPECT_EQ(View().History().Stack().count(), steps);
        for (int i = 0; i < steps; ++i)
            View().History().Undo();
        EXPECT_EQ(Bytes(Doc()), saved);
    }
    // The height in a bar that means `pitch` to a drag or a drop.
    static float PitchY(const CBarEx& bar, NotePitch pitch)
    {
        return bar.Bounds().Y + pitch * bar.Bounds().Height / 19;
    }

    testing::ShownView shown;
};

TEST_F(ViewMouseTest, AClickSelectsWhatLiesUnderIt)
{
    // Empty page space selects the page.
    const RectF page = Page().ContentBox();
    Click({page.X + 0.1f, page.Bottom() - 0.1f});
    EXPECT_EQ(Selection().Single<CTunePage>(), &Page());

    // A note, in place of the page; a press and release without a move changes nothing.
    CNoteEx& note = Note(0, 1);
    const RectF before = note.Bounds();
    const NotePitch pitch = note.Pitch;
    Click(HeadOf(note));
    EXPECT_EQ(Selection().Single<CNoteEx>(), &note);
    EXPECT_EQ(note.Bounds(), before);
    EXPECT_EQ(note.Pitch, pitch);
    EXPECT_FALSE(View().History().CanUndo());

    // A bar alone may take repeats; Ctrl does not add to the selection.
    Click(EmptyPartOf(Bar(1)), Qt::ControlModifier);
    EXPECT_EQ(Selection().Single<CBarEx>(), &Bar(1));
    EXPECT_TRUE(View().EditState().MayInsertRepeats);

    // A click on the desk keeps the selection.
    Click({page.Right() + 1.0f, page.Y + 1.0f});
    EXPECT_EQ(Selection().Single<CBarEx>(), &Bar(1));

    // While the tune plays, choosing a bar plays from it instead.
    shown.Host.Playing = true;
    View().EditState().MayInsertRepeats = false;
    Click(EmptyPartOf(Bar(2)));
    EXPECT_EQ(shown.Host.Restarts, 1);
    EXPECT_FALSE(View().EditState().MayInsertRepeats);

    // A click on the text area selects it; anything else clears the repeat flag.
    Click(Centre(Title().ContentBox()));
    EXPECT_EQ(Selection().Single<CTextArea>(), &Title());
    EXPECT_FALSE(View().EditState().MayInsertRepeats);
}

TEST_F(ViewMouseTest, ABandSelectsNotesAndAMovementStandsForItsGracenotes)
{
    CBarEx& bar = Bar(0);
    CScoObj* group = AddMovement(bar);

    // Around the whole first bar and the first note of the second.
    const RectF area = Music().ContentBox();
    const RectF next = Note(1, 0).HeadRect;
    Drag({bar.Bounds().X - 0.05f, area.Y}, {next.Right() + 0.01f, bar.Bounds().Bottom()});
    EXPECT_TRUE(Selection().Contains(group));
    EXPECT_EQ(Selection().NoteCount(), 5u);
    for (CScoObj* item : Selection().Items())
        EXPECT_NE(item->Parent(), group) << "a gracenote selected on its own";
    EXPECT_FALSE(View().History().CanUndo());
}

TEST_F(ViewMouseTest, AMovementDragsAsOneAndCtrlReachesIntoABeamedGroup)
{
    CFixedNoteGroup& movement = *AddMovement(Bar(0));
    const PointF head = Centre(static_cast<CNoteEx&>(*movement.ChildAt(1)).HeadRect);
    Drag(head, {EmptyPartOf(Bar(2)).X, head.Y});
    EXPECT_EQ(Selection().Single<CFixedNoteGroup>(), &movement);
    EXPECT_EQ(movement.Parent(), &Bar(2));

    CNoteEx& second = Note(1, 1);
    Selection().Clear();
    CNoteGroupEx* beamed = GroupNotes({&Note(1, 0), &second});
    ASSERT_NE(beamed, nullptr);
    Paint();
    Selection().Clear();
    Click(HeadOf(second));
    EXPECT_EQ(Selection().Single<CNoteGroupEx>(), beamed);
    Click(HeadOf(second), Qt::ControlModifier);
    EXPECT_EQ(Selection().Single<CNoteEx>(), &second);
}

TEST_F(ViewMouseTest, ABandOnAPendingAreaCreatesItWithItsContentAsOneStep)
{
    const QByteArray saved = Bytes(Doc());
    // Below the music area, on empty page.
    const RectF page = Page().ContentBox();
    const float top = Music().Bounds().Bottom() + 0.3f;
    View().EditState().PendingArea = &CStaveArea::Class;

    // A click without a band makes nothing, and the area stays pending.
    Click({page.X + 0.5f, top});
    EXPECT_EQ(MusicAreas(Doc()).size(), 1u);
    EXPECT_NE(View().EditState().PendingArea, nullptr);

    Drag({page.X + 0.5f, top}, {page.X + 4.0f, top + 2.2f});
    ASSERT_EQ(MusicAreas(Doc()).size(), 2u);
    CStaveArea& made = *MusicAreas(Doc()).back();
    EXPECT_EQ(Selection().Single<CStaveArea>(), &made);
    EXPECT_EQ(View().EditState().PendingArea, nullptr);
    EXPECT_EQ(made.ChildCount(), 2u); // a system per inch of height
    EXPECT_EQ(static_cast<CStaveGroup&>(*made.ChildAt(0)).BarConfigs.size(), 2u);
    EXPECT_TRUE(Doc().IsModified());

    // A legend gets its columns.
    View().EditState().PendingArea = &CAbbreviationArea::Class;
    Drag({page.X + 0.5f, page.Bottom() - 1.5f}, {page.X + 5.6f, page.Bottom() - 0.1f});
    const auto legends = ChildrenOf<CAbbreviationArea>(Page());
    ASSERT_EQ(legends.size(), 1u);
    EXPECT_FALSE(static_cast<CStaveGroup&>(*legends.front()->ChildAt(0)).BarConfigs.empty());

    ExpectUndoneTo(saved, 2);
}

TEST_F(ViewMouseTest, AreaDragsStayOnThePageAndAboveTheMinimumSize)
{
    Title().SetBounds(Title().Bounds().X + 1.0f, Title().Bounds().Y, 3.0f, Title().Bounds().Height);
    CTextArea& title = SelectedTitle();
    const QByteArray saved = Bytes(Doc());
    const RectF page = Page().ContentBox();

    // By the border, far past the page's top right corner: flush against it, the size kept.
    RectF b = title.Bounds();
    Drag({b.X + b.Width / 3, b.Y + 0.01f}, {page.Right() + 3.0f, page.Y - 3.0f});
    EXPECT_FLOAT_EQ(title.Bounds().Right(), page.Right());
    EXPECT_FLOAT_EQ(title.Bounds().Y, page.Y);
    EXPECT_FLOAT_EQ(title.Bounds().Width, 3.0f);
    Paint();

    // The top left handle pulled right past the minimum width: the right edge stays.
    b = title.Bounds();
    Drag({b.X, b.Y}, {b.Right() - 0.5f, b.Y});
    EXPECT_FLOAT_EQ(title.Bounds().Width, title.MinimumWidth);
    EXPECT_FLOAT_EQ(title.Bounds().Right(), b.Right());

    ExpectUndoneTo(saved, 2);
}

// An area drag holds the keyboard: no shortcut runs and Escape is ignored; another key, or the
// focus going elsewhere, ends the drag where it has got to.
TEST_F(ViewMouseTest, DuringAnAreaDragEscapeAndShortcutsAreIgnoredAndAnotherKeyOrLostFocusEndsIt)
{
    const auto shortcutTaken = [this] {
        QKeyEvent undo(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier);
        undo.ignore();
        QCoreApplication::sendEvent(shown.View.get(), &undo);
        return undo.isAccepted();
    };
    EXPECT_FALSE(shortcutTaken());
    CTextArea& title = SelectedTitle();
    RectF b = title.Bounds();
    PointF grab{b.X + 0.01f, b.Y + b.Height / 3};
    Press(grab);
    Move({grab.X, grab.Y + 0.5f});
    EXPECT_TRUE(shortcutTaken());
    Key(Qt::Key_Escape);
    Move({grab.X, grab.Y + 1.0f});
    EXPECT_NEAR(title.Bounds().Y, b.Y + 1.0f, 0.02f);
    Key(Qt::Key_A);
    Move({grab.X, grab.Y + 2.0f});
    Release({grab.X, grab.Y + 2.0f});
    EXPECT_NEAR(title.Bounds().Y, b.Y + 1.0f, 0.02f) << "the key kept the place reached";

    Paint();
    b = title.Bounds();
    grab = {b.X + b.Width / 3, b.Y + 0.01f};
    Press(grab);
    Move({grab.X, grab.Y + 0.5f});
    QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(shown.View.get(), &out);
    Move({grab.X, grab.Y + 1.5f});
    Release({grab.X, grab.Y + 1.5f});
    EXPECT_NEAR(title.Bounds().Y, b.Y + 0.5f, 0.02f);
    EXPECT_EQ(View().History().Stack().count(), 2);
}

TEST_F(ViewMouseTest, OnlyALaterBarLineOfAStaveDrags)
{
    CBarEx& first = Bar(0);
    CBarEx& second = Bar(1);
    const float middle = first.ContentBox().Y + first.ContentBox().Height / 2;
    const QByteArray saved = Bytes(Doc());

    // The stave's first line is no line to drag: the press selects the bar.
    Drag({first.Bounds().X + 0.005f, middle}, {first.Bounds().X + 0.5f, middle});
    EXPECT_EQ(Selection().Single<CBarEx>(), &first);
    EXPECT_EQ(Bytes(Doc()), saved);

    const float line = second.Bounds().X;
    const float end = second.Bounds().Right();
    Press({line + 0.01f, middle});
    Move({line + 0.3f, middle});
    Key(Qt::Key_A); // keys do nothing while a bar line moves
    Move({line + 0.4f, middle});
    Release({line + 0.4f, middle});
    EXPECT_NEAR(second.Bounds().X, line + 0.39f, 0.02f);
    EXPECT_FLOAT_EQ(second.Bounds().Right(), end);
    EXPECT_FLOAT_EQ(first.Bounds().Right(), second.Bounds().X);
    ExpectUndoneTo(saved);
}

TEST_F(ViewMouseTest, SeveralNotesMoveByTheSameStepsEachKeptOnTheStaveOrNotAtAll)
{
    // High A and the D before it in the second bar, chosen with a band.
    CNoteEx& d = Note(1, 1);
    CNoteEx& highA = Note(1, 2);
    ASSERT_EQ(d.Pitch, 4);
    ASSERT_EQ(highA.Pitch, 3);
    const QByteArray saved = Bytes(Doc());
    const float y = Bar(1).Bounds().Y;
    Drag({d.HeadRect.X - 0.02f, y}, {highA.HeadRect.Right() + 0.02f, Bar(1).Bounds().Bottom()});
    ASSERT_EQ(Selection().NoteCount(), 2u);

    // D dragged up one step: High A can go no higher; then one step down from where they
    // started, and High A regains its distance.
    const PointF grab = HeadOf(d);
    Press(grab);
    Move({grab.X, PitchY(Bar(1), 3)});
    EXPECT_EQ(d.Pitch, 3);
    EXPECT_EQ(highA.Pitch, 3);
    Move({grab.X, PitchY(Bar(1), 5)});
    EXPECT_EQ(d.Pitch, 5);
    EXPECT_EQ(highA.Pitch, 4);
    Release({grab.X, PitchY(Bar(1), 5)});
    ExpectUndoneTo(saved);

    // The last note of the stave and the first, dragged by the first to the right: the last one
    // would go beyond the stave's end, so neither moves.
    Paint();
    CNoteEx& firstNote = Note(0, 0);
    CNoteEx& lastNote = Note(3, 3);
    Click(HeadOf(lastNote));
    Paint();
    const RectF lastBefore = lastNote.Bounds();
    const RectF firstBefore = firstNote.Bounds();
    Selection().Add(&firstNote);
    const PointF head = HeadOf(firstNote);
    Press(head);
    Move({head.X + 1.5f, head.Y});
    Release({head.X + 1.5f, head.Y});
    EXPECT_EQ(lastNote.Bounds(), lastBefore);
    EXPECT_EQ(firstNote.Bounds(), firstBefore);
    EXPECT_EQ(lastNote.Parent(), &Bar(3));
    EXPECT_EQ(lastNote.Colour(), CNoteBase::SelectedColour);
}

TEST_F(ViewMouseTest, PlacingDropsACloneAtThePitchUnderTheMouseAndGoesOn)
{
    shown.Host.Prototypes.push_back(std::make_unique<CNoteEx>(8));
    View().EditState().PaletteEntry = 0;
    CBarEx& bar = Bar(2);
    const std::size_t count = bar.ChildCount();
    const PointF at{bar.ContentBox().X + bar.ContentBox().Width / 2, PitchY(bar, 6)};

    Move(at);
    EXPECT_EQ(View().EditState().GhostTarget, &bar);
    EXPECT_TRUE(ShowsBlueIn(View().EditState().Ghost->Bounds())) << "the ghost is drawn in blue";
    Press(at);
    Release(at);
    ASSERT_EQ(bar.ChildCount(), count + 1);
    EXPECT_TRUE(View().EditState().Placing());
    const auto notes = ChildrenOf<CNoteEx>(bar);
    const auto dropped = std::ranges::find_if(notes, [](const CNoteEx* n) { return n->Duration == 8; });
    ASSERT_NE(dropped, notes.end());
    EXPECT_EQ((*dropped)->Pitch, 6);
    EXPECT_GT((*dropped)->Bounds().Width, 0.05f);
    EXPECT_NEAR(Centre((*dropped)->Bounds()).X, at.X, 0.01f);
    EXPECT_NE(*dropped, shown.Host.Prototypes.front().get());

    // Off the bars the ghost goes; a right click ends placing without a menu.
    Move({Page().ContentBox().Right() + 0.5f, at.Y});
    EXPECT_EQ(View().EditState().Ghost, nullptr);
    Press(at, {}, Qt::RightButton);
    EXPECT_FALSE(View().EditState().Placing());
    // Undo reads the score back into new objects: `bar` is gone, and its successor is as before.
    View().History().Undo();
    EXPECT_EQ(BarOf(Music(), 0, 2).ChildCount(), count);
}

TEST_F(ViewMouseTest, ALockedTuneSelectsButNothingMoves)
{
    Doc().Locked = 1;
    const QByteArray saved = Bytes(Doc());
    CNoteEx& note = Note(0, 1);
    const PointF grab = HeadOf(note);
    Click(grab);
    EXPECT_EQ(Selection().Single<CNoteEx>(), &note);
    Drag(grab, {grab.X + 0.5f, grab.Y - 0.1f}); // a band, here

    CStaveArea& music = Music();
    Selection().Clear();
    Selection().Add(&music);
    Paint();
    const RectF b = music.Bounds();
    Drag({b.X + 0.01f, b.Y + 0.5f}, {b.X + 1.0f, b.Y + 1.0f});
    EXPECT_EQ(music.Bounds(), b);

    // A text area cannot be chosen by a click in a locked tune.
    Click(Centre(Title().ContentBox()));
    EXPECT_EQ(Selection().Single<CTextArea>(), nullptr);
    EXPECT_EQ(Bytes(Doc()), saved);
    EXPECT_FALSE(View().History().CanUndo());
}

TEST_F(ViewMouseTest, ARightClickAsksForTheMenuUnlessItEndsSomething)
{
    const PointF at = EmptyPartOf(Bar(0));
    QContextMenuEvent menu(QContextMenuEvent::Mouse, Device(at), View().viewport()->mapToGlobal(Device(at)));
    Press(at, {}, Qt::RightButton);
    QCoreApplication::sendEvent(View().viewport(), &menu);
    EXPECT_EQ(shown.Host.Menus.size(), 1u);

    // A right press in a band ends it; its menu event shows nothing.
    Press(at);
    Move({at.X + 0.5f, at.Y});
    Press(at, {}, Qt::RightButton);
    QCoreApplication::sendEvent(View().viewport(), &menu);
    EXPECT_EQ(shown.Host.Menus.size(), 1u);
    EXPECT_FALSE(View().viewport()->mouseGrabber() != nullptr);
}

TEST_F(ViewMouseTest, TheCursorShowsWhatAPressWouldDo)
{
    const auto shape = [this] { return View().viewport()->cursor().shape(); };
    const RectF b = SelectedTitle().Bounds();
    Move({b.X, b.Y});
    EXPECT_EQ(shape(), Qt::SizeFDiagCursor);
    Move({b.X + b.Width / 2, b.Bottom()});
    EXPECT_EQ(shape(), Qt::SizeVerCursor);
    Move({b.X + b.Width / 3, b.Y + 0.01f});
    EXPECT_EQ(shape(), Qt::SizeAllCursor);
    Move({Bar(1).Bounds().X + 0.01f, Centre(Bar(1).ContentBox()).Y});
    EXPECT_EQ(shape(), Qt::SizeHorCursor);
    View().EditState().PendingArea = &CTextArea::Class;
    Move(EmptyPartOf(Bar(2)));
    EXPECT_EQ(shape(), Qt::CrossCursor);
}

TEST_F(ViewMouseTest, CheckValuesEndsWithAClickOutsideItsArea)
{
    Doc().CheckValues = 1;
    View().EditState().CheckValuesArea = &Music();
    Bar(0).UpdateValueColour(true, false);
    Click(HeadOf(Note(1, 0)));
    EXPECT_EQ(View().EditState().CheckValuesArea, &Music());

    Click(Centre(Title().ContentBox()));
    EXPECT_EQ(View().EditState().CheckValuesArea, nullptr);
    EXPECT_EQ(Doc().CheckValues, 0);
    EXPECT_TRUE(Bar(0).UseBackground);
}

class RepeatMouseTest : public ViewMouseTest {
protected:
    RepeatMouseTest() : ViewMouseTest(true) {}
};

TEST_F(RepeatMouseTest, ARepeatLegMovesOverTheBarsAndATiedNoteStays)
{
    CRepeatTiming& marker = *Music().RepeatMarkers.front();
    ASSERT_FALSE(marker.MiddleLegPath.isEmpty());
    const QByteArray saved = Bytes(Doc());
    const QPointF leg = marker.MiddleLegPath.boundingRect().center();
    const float middle = marker.MiddlePosition;
    // Along the bracket's height, above the stave.
    const PointF target{Centre(Bar(1).ContentBox()).X, static_cast<float>(leg.y())};
    Drag({static_cast<float>(leg.x()), static_cast<float>(leg.y())}, target);
    EXPECT_LT(marker.MiddlePosition, middle);
    ExpectUndoneTo(saved);

    // The first note of the bracketed bar is tied to the next: it does not move, and the click
    // leaves no step.
    CNoteEx& tied = Note(2, 0);
    ASSERT_NE(tied.Tie, nullptr);
    const RectF before = tied.Bounds();
    const PointF grab = HeadOf(tied);
    Drag(grab, {grab.X + 0.2f, PitchY(Bar(2), 5)});
    EXPECT_EQ(tied.Bounds(), before);
    EXPECT_FALSE(View().History().CanUndo());
}

} // namespace
} // namespace corrieval
