#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/SessionState.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/TieEx.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

// A note alone in a one-inch-high music box, as a bar holds it.
std::unique_ptr<CNoteEx> NoteAt(NotePitch pitch, NoteDuration duration = 4)
{
    auto note = std::make_unique<CNoteEx>(duration);
    note->Pitch = pitch;
    note->SetBounds(1, 2, 0.4f, 0.95f);
    return note;
}

float Unit(const CNoteEx& note) { return note.ContentBox().Height / 19; }

TEST(Note, GlyphsFollowDurationAndRole)
{
    EXPECT_EQ(CNoteEx(16).HeadChar.Code, 40);
    EXPECT_EQ(CNoteEx::NoteFromChar(43)->Duration, 64);
    EXPECT_EQ(CNoteEx::NoteFromChar(CNoteEx::GraceHeadGlyph)->Duration, 32); // not a gracenote
    EXPECT_EQ(CNoteEx::NoteFromChar(u'Z')->Duration, 4);

    CNoteEx grouped(8);
    grouped.Stemmed = false;
    grouped.UpdateChars();
    EXPECT_EQ(grouped.HeadChar.Code, CNoteEx::MelodyHeadGlyph);
    CTieEx tie;
    tie.AddNote(&grouped);
    const CNoteEx copy(grouped);
    EXPECT_TRUE(copy.Stemmed);
    EXPECT_EQ(copy.Tie, nullptr);
    EXPECT_EQ(copy.HeadChar.Code, CNoteEx::MelodyHeadGlyph); // until UpdateChars runs

    const auto legend = CNoteEx::ForAbbreviation(0xA3);
    EXPECT_EQ(legend->AbbreviationChar.Code, 0xA3);
    EXPECT_EQ(legend->Duration, 4);
}

TEST(Note, HeadSitsOnItsPositionWithALedgerLineOnlyForHighA)
{
    for (NotePitch pitch = HighestPitch; pitch <= LowestPitch; ++pitch) {
        auto note = NoteAt(pitch);
        testing::RecordingPainter painter;
        note->Draw(painter, OutputMode::Screen);
        const float u = Unit(*note);
        // The head rectangle is one gap high, a quarter gap above the position line, and as wide
        // as the glyph reports, centred in the note's box.
        EXPECT_NEAR(note->HeadRect.Y, note->ContentBox().Y + static_cast<float>(pitch) * u - u / 2, 1e-5);
        EXPECT_NEAR(note->HeadRect.X + note->HeadRect.Width / 2, 1.2f, 1e-5);
        EXPECT_GT(note->HeadRect.Width, 0.05f);
        EXPECT_EQ(note->LedgerPath.isEmpty(), pitch != HighestPitch) << "pitch " << pitch;
        const QPointF headCentre(1.2, note->ContentBox().Y + pitch * u);
        EXPECT_TRUE(note->HitTestNote(static_cast<float>(headCentre.x()), static_cast<float>(headCentre.y())));
    }
}

TEST(Note, SmallNotesHaveALopsidedLedgerLine)
{
    auto plain = NoteAt(HighestPitch, 4);
    auto small = NoteAt(HighestPitch, 64);
    testing::RecordingPainter painter;
    plain->Draw(painter, OutputMode::Screen);
    small->Draw(painter, OutputMode::Screen);
    const QRectF a = plain->LedgerPath.boundingRect();
    const QRectF b = small->LedgerPath.boundingRect();
    EXPECT_NEAR(a.center().x(), 1.2, 1e-4);
    EXPECT_LT(b.center().x(), 1.2 - 0.1 * small->HeadRect.Width);
}

TEST(Note, ADotStandsInTheSpaceAboveALineNoteAndInItsOwnSpaceOtherwise)
{
    for (NotePitch pitch : {7, 8}) {
        auto note = NoteAt(pitch);
        note->DotCut = CNoteEx::Dotted;
        testing::RecordingPainter painter;
        note->Draw(painter, OutputMode::Screen);
        const float u = Unit(*note);
        const float dot = note->HeadRect.Width * 0.25f;
        const float x = note->HeadRect.Right() + dot * 1.5f;
        const float space = pitch % 2 != 0 ? static_cast<float>(pitch - 1) : static_cast<float>(pitch);
        EXPECT_TRUE(note->HeadPath.contains(QPointF(x, note->ContentBox().Y + space * u))) << "pitch " << pitch;
    }
}

TEST(Note, AbbreviationMarksStandAboveOrBelowByCode)
{
    CBarEx bar;
    bar.SetBounds(1, 2, 2, 1);
    bar.BottomMargin = 0.4f;
    for (std::uint32_t code : {0xA0u, 0xA5u}) {
        auto* note = static_cast<CNoteEx*>(bar.AddChild(CNoteEx::ForAbbreviation(code), true));
        note->SetBounds(1.5f, 2, 0.4f, 0.95f);
        testing::RecordingPainter painter;
        note->Draw(painter, OutputMode::Screen);
        ASSERT_GE(painter.Calls.size(), 2u);
        const QRectF mark = painter.Calls.back().Path.boundingRect();
        if (code == 0xA0)
            EXPECT_LT(mark.center().y(), 2.2);
        else
            EXPECT_GT(mark.center().y(), 3.0); // below the bar
        bar.RemoveChild(note, true);
    }
}

TEST(Note, ATiedNoteCannotBeDragged)
{
    CCorrievalDoc doc;
    testing::RecordingView view;
    view.Doc = &doc;
    auto note = NoteAt(9);
    CTieEx tie;
    tie.AddNote(note.get());
    const RectF before = note->Bounds();
    EXPECT_EQ(note->DragTo(3, 3), (PointF{0, 0}));
    EXPECT_EQ(note->Bounds(), before);
}

TEST(Note, DraggingMovesTheNoteToTheBarUnderThePointWithItsPitch)
{
    CCorrievalDoc doc;
    testing::RecordingView view;
    view.Doc = &doc;
    view.Idle = true;
    Session().ImportFileName = QStringLiteral("test");
    doc.OnNewDocument();
    Session().ImportFileName.clear();
    auto* area = static_cast<CStaveArea*>(doc.Pages[0]->AddChild(std::make_unique<CStaveArea>(), true));
    area->SetBounds(0.5f, 0.5f, 6, 1.2f);
    area->FillDefaultContent();
    auto& stave = static_cast<CStave&>(*static_cast<CStaveGroup&>(*area->ChildAt(0)).ChildAt(0));
    auto& first = static_cast<CBarEx&>(*stave.ChildAt(0));
    auto& second = static_cast<CBarEx&>(*stave.ChildAt(1));
    auto* note = static_cast<CNoteEx*>(first.AddNoteSorted(std::make_unique<CNoteEx>(4)));
    first.PlaceItem(*note, first.ContentBox().X + 0.2f, first.Bounds().Y + first.Bounds().Height * 9 / 19);

    const RectF target = second.ContentBox();
    const float y = second.Bounds().Y + second.Bounds().Height * 5 / 19;
    const PointF moved = note->DragTo(target.X + target.Width / 2, y);
    EXPECT_EQ(note->Parent(), &second);
    EXPECT_EQ(note->Pitch, 5);
    EXPECT_GT(moved.X, 0.5f);
}

} // namespace
} // namespace corrieval
