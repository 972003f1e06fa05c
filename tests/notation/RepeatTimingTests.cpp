// First-and-second-time markers: how they are made, drawn, hit, dragged, and how they stamp the
// notes they bracket.

#include "fixtures/ScoreFixtures.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/RepeatTiming.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

namespace corrieval {
namespace {

using testing::PaintCall;
using testing::RecordingPainter;

// The notes of an area in written order, part by part, as the tune sequence will offer them.
class AreaNotes : public WrittenNotes {
public:
    explicit AreaNotes(const CStaveArea& area)
    {
        for (const auto& group : area.Children()) {
            const auto& staves = static_cast<const CStaveGroup&>(*group);
            for (std::size_t part = 0; part < staves.ChildCount() && part < m_parts.size(); ++part) {
                for (const auto& bar : static_cast<const CStave&>(*staves.ChildAt(part)).Children()) {
                    for (const auto& item : static_cast<const CBarEx&>(*bar).Children())
                        m_parts[part].push_back(
                            {static_cast<CNoteEx*>(item.get()), static_cast<const CBarEx*>(bar.get())});
                }
            }
        }
    }

    void VisitPart(int part, const std::function<bool(const PlayedNote&)>& visit) const override
    {
        for (const PlayedNote& note : m_parts.at(static_cast<std::size_t>(part))) {
            if (!visit(note))
                return;
        }
    }

private:
    std::array<std::vector<PlayedNote>, PartCount> m_parts;
};

// Three systems of one stave, four empty bars each.
class RepeatMarkers : public ::testing::Test {
protected:
    RepeatMarkers()
    {
        fixtures::TuneShape shape;
        shape.Groups = 3;
        shape.Parts = 1;
        shape.Columns = 4;
        shape.Title = false;
        Doc = fixtures::BuildTune(shape);
    }

    CStaveArea& Area() const { return static_cast<CStaveArea&>(*Doc->Pages[0]->ChildAt(0)); }
    CStave& Stave(std::size_t row) const
    {
        return static_cast<CStave&>(*static_cast<CStaveGroup&>(*Area().ChildAt(row)).ChildAt(0));
    }
    CBarEx& Bar(std::size_t row, std::size_t column) const
    {
        return static_cast<CBarEx&>(*Stave(row).ChildAt(column));
    }
    RectF Row(std::size_t row) const { return Stave(row).ContentBox(); }
    // The x of a fraction of a row, computed as the marker computes it.
    float X(std::size_t row, float fraction) const { return Row(row).X + fraction * Row(row).Width; }
    float LegTop(std::size_t row) const { return Stave(row).Bounds().Y - 4 * Stave(row).Positions()[1]; }

    CRepeatTiming& AddMarker(std::unique_ptr<CRepeatTiming> marker)
    {
        return *Area().AddRepeatMarker(std::move(marker));
    }
    CRepeatTiming& AddMarker(std::int32_t start, float startAt, std::int32_t middle, float middleAt,
                             std::int32_t end, float endAt)
    {
        auto marker = std::make_unique<CRepeatTiming>();
        marker->StartStave = start;
        marker->StartPosition = startAt;
        marker->MiddleStave = middle;
        marker->MiddlePosition = middleAt;
        marker->EndStave = end;
        marker->EndPosition = endAt;
        return AddMarker(std::move(marker));
    }
    CRepeatTiming& Drawn(CRepeatTiming& marker)
    {
        Painter.Clear();
        marker.Draw(Painter, OutputMode::Screen);
        return marker;
    }

    // A note whose left edge stands at a fraction of the row, in the bar there.
    CNoteEx* NoteAt(std::size_t row, float fraction)
    {
        const float x = X(row, fraction);
        for (const auto& child : Stave(row).Children()) {
            auto& bar = static_cast<CBarEx&>(*child);
            if (bar.Bounds().X <= x && x < bar.Bounds().Right()) {
                auto note = std::make_unique<CNoteEx>(4);
                note->SetBounds(x, bar.Bounds().Y, 0.1f, bar.Bounds().Height);
                return static_cast<CNoteEx*>(bar.AppendNote(std::move(note)));
            }
        }
        return nullptr;
    }

    std::unique_ptr<CCorrievalDoc> Doc;
    RecordingPainter Painter;
};

TEST_F(RepeatMarkers, AMarkerFromABarBracketsThatBarAndTheNext)
{
    CRepeatTiming marker(&Area(), Bar(1, 1), false, 0, 0);
    const RectF row = Row(1);
    EXPECT_FLOAT_EQ(marker.StartPosition, (Bar(1, 1).ContentBox().X - row.X) / row.Width);
    EXPECT_FLOAT_EQ(marker.MiddlePosition, (Bar(1, 2).ContentBox().X - row.X) / row.Width);
    EXPECT_FLOAT_EQ(marker.EndPosition, (Bar(1, 2).ContentBox().Right() - row.X) / row.Width);
    EXPECT_EQ(marker.StartStave, 1);
    EXPECT_EQ(marker.MiddleStave, 1);
    EXPECT_EQ(marker.EndStave, 1);
    EXPECT_EQ(CRepeatTiming(&Area(), Bar(2, 0), false, 1, 0).StartStave, 1); // counted from an offset

    // On the last bar of a row the second time is the first bar of the next system, and the
    // line is drawn in two pieces, each at the height of its own row.
    CRepeatTiming& last = AddMarker(std::make_unique<CRepeatTiming>(&Area(), Bar(0, 3), false, 0, 0));
    EXPECT_EQ(last.StartStave, 0);
    EXPECT_EQ(last.MiddleStave, 1);
    EXPECT_EQ(last.EndStave, 1);
    Drawn(last);
    const QPainterPath& line = last.LinePath;
    ASSERT_EQ(line.elementCount(), 4);
    EXPECT_TRUE(line.elementAt(2).isMoveTo());
    EXPECT_NEAR(line.elementAt(1).x, Row(0).Right(), 1e-5);
    EXPECT_NEAR(line.elementAt(1).y, LegTop(0), 1e-5);
    EXPECT_NEAR(line.elementAt(2).x, Row(1).X, 1e-5);
    EXPECT_NEAR(line.elementAt(3).y, LegTop(1), 1e-5);
}

TEST_F(RepeatMarkers, AMarkerForWholeLinesTakesTheNextLineOrTheOneAfter)
{
    CRepeatTiming whole(&Area(), Bar(0, 2), true, 0, 0);
    EXPECT_EQ(whole.StartStave, 0);
    EXPECT_EQ(whole.EndStave, 1);
    EXPECT_FLOAT_EQ(whole.StartPosition, 0);
    EXPECT_FLOAT_EQ(whole.MiddlePosition, 0);
    EXPECT_FLOAT_EQ(whole.EndPosition, 1);

    CRepeatTiming part(&Area(), Bar(0, 2), true, 0, X(0, 0.5f));
    EXPECT_FLOAT_EQ(part.StartPosition, 0.5f);
    EXPECT_EQ(part.MiddleStave, 2);
    EXPECT_EQ(part.EndStave, 2);
}

TEST_F(RepeatMarkers, ADrawnMarkerIsFoundByItsLegsLineAndTexts)
{
    CRepeatTiming& marker = Drawn(AddMarker(0, 0.25f, 0, 0.5f, 0, 0.75f));
    // Legs stand four units high on the top of the stave's rectangle.
    const float top = LegTop(0);
    const float within = top + 0.01f;
    const float below = Stave(0).Bounds().Y + 0.01f;
    EXPECT_EQ(marker.LegAt(X(0, 0.25f) - 0.02f, within), 1);
    EXPECT_EQ(marker.LegAt(X(0, 0.5f) + 0.02f, within), 2);
    EXPECT_EQ(marker.LegAt(X(0, 0.75f), within), 3);
    EXPECT_EQ(marker.LegAt(X(0, 0.75f) + 0.04f, within), 0);
    EXPECT_EQ(marker.LegAt(X(0, 0.75f), below), 0);
    EXPECT_TRUE(marker.LineAt(X(0, 0.4f), top + 0.02f));
    EXPECT_FALSE(marker.LineAt(X(0, 0.4f), top - 0.04f));
    EXPECT_FALSE(marker.LineAt(X(0, 0.8f), top));

    // Each text hangs from the line just right of its leg.
    const QRectF first = marker.FirstTextPath.boundingRect();
    const QRectF second = marker.SecondTextPath.boundingRect();
    EXPECT_GT(first.left(), X(0, 0.25f));
    EXPECT_LT(first.right(), X(0, 0.5f));
    EXPECT_GE(first.top(), top);
    EXPECT_GT(second.left(), X(0, 0.5f));
    EXPECT_EQ(marker.TextAt(first.center().x(), first.center().y()), 1);
    EXPECT_EQ(marker.TextAt(second.center().x(), second.center().y()), 2);
    EXPECT_EQ(marker.TextAt(first.right(), first.center().y()), 0);

    EXPECT_EQ(Area().RepeatMarkerAt(X(0, 0.4f), top), &marker);
    EXPECT_EQ(Area().RepeatMarkerAt(first.center().x(), first.center().y()), &marker);
    EXPECT_EQ(Area().RepeatMarkerAt(X(0, 0.4f), below), nullptr);

    // Black, blue when selected: two texts filled, line and legs stroked.
    EXPECT_EQ(Painter.Count(PaintCall::Kind::FillPath), 2u);
    EXPECT_EQ(Painter.Count(PaintCall::Kind::StrokePath), 4u);
    EXPECT_EQ(Painter.Of(PaintCall::Kind::StrokePath)[0].Stroke.Argb, 0xFF000000u);
    marker.SetSelected(true);
    Drawn(marker);
    EXPECT_EQ(Painter.Of(PaintCall::Kind::StrokePath)[0].Stroke.Argb, 0xFF0000FFu);
    EXPECT_EQ(Painter.Of(PaintCall::Kind::FillPath)[0].Fill.Fore, 0xFF0000FFu);

    // A marker whose system is gone draws nothing and is no longer found.
    marker.EndStave = 3;
    Drawn(marker);
    EXPECT_TRUE(Painter.Calls.empty());
    EXPECT_EQ(Area().RepeatMarkerAt(X(0, 0.4f), top), nullptr);
}

TEST_F(RepeatMarkers, DraggedLegsKeepTheirOrderAndTheirDistanceOnARow)
{
    testing::RecordingView view;
    CRepeatTiming& marker = AddMarker(0, 0.25f, 1, 0.5f, 2, 0.5f);

    // The middle leg dragged onto the start's row, left of the start, stops 0.2 right of it.
    marker.MoveLeg(CRepeatTiming::MiddleLeg, Bar(0, 0), X(0, 0.1f));
    EXPECT_EQ(marker.MiddleStave, 0);
    EXPECT_NEAR(X(0, marker.MiddlePosition), X(0, 0.25f) + 0.2f, 1e-4);
    EXPECT_EQ(view.Invalidated, std::vector<const CScoObj*>{&marker});

    // The start leg dragged below the middle stays on the middle's row, 0.2 left of it.
    marker.MoveLeg(CRepeatTiming::StartLeg, Bar(2, 3), X(2, 0.9f));
    EXPECT_EQ(marker.StartStave, 0);
    EXPECT_NEAR(X(0, marker.StartPosition), X(0, marker.MiddlePosition) - 0.2f, 1e-4);

    // The end leg dragged above the middle stays on the middle's row, right of it.
    marker.MoveLeg(CRepeatTiming::EndLeg, Bar(0, 0), X(0, 0.0f));
    EXPECT_EQ(marker.EndStave, 0);
    EXPECT_NEAR(X(0, marker.EndPosition), X(0, marker.MiddlePosition) + 0.2f, 1e-4);

    // On free rows a leg goes where it is dragged; the middle cannot pass the end's row.
    marker.MoveLeg(CRepeatTiming::EndLeg, Bar(2, 2), X(2, 0.6f));
    marker.MoveLeg(CRepeatTiming::MiddleLeg, Bar(1, 1), X(1, 0.3f));
    EXPECT_EQ(marker.EndStave, 2);
    EXPECT_FLOAT_EQ(marker.EndPosition, 0.6f);
    EXPECT_EQ(marker.MiddleStave, 1);
    EXPECT_FLOAT_EQ(marker.MiddlePosition, 0.3f);
}

TEST_F(RepeatMarkers, NotesInsideTheSectionsAreStampedAndNotesOnABoundaryAreNot)
{
    const float at[] = {0.1f, 0.25f, 0.3f, 0.5f, 0.6f, 0.75f, 0.8f};
    std::vector<CNoteEx*> notes;
    for (float fraction : at)
        notes.push_back(NoteAt(0, fraction));
    CNoteEx* nextRow = NoteAt(1, 0.3f);
    CRepeatTiming& marker = AddMarker(0, 0.25f, 0, 0.5f, 0, 0.75f);
    marker.Stamp(AreaNotes(Area()));

    const int kinds[] = {0, 0, 1, 0, 2, 0, 0};
    for (std::size_t i = 0; i < notes.size(); ++i) {
        EXPECT_EQ(notes[i]->RepeatKind, kinds[i]) << "note at " << at[i];
        EXPECT_EQ(notes[i]->RepeatId, kinds[i] != 0 ? marker.RepeatId : 0) << "note at " << at[i];
    }
    EXPECT_EQ(nextRow->RepeatKind, 0);
}

TEST_F(RepeatMarkers, AMarkerOverThreeSystemsStampsEachRowByItsPlaceInTheMarker)
{
    std::array<CNoteEx*, 3> early{};
    std::array<CNoteEx*, 3> late{};
    for (std::size_t row = 0; row < 3; ++row) {
        early[row] = NoteAt(row, 0.25f);
        late[row] = NoteAt(row, 0.75f);
    }
    const auto kinds = [&] {
        std::vector<std::int32_t> found;
        for (std::size_t row = 0; row < 3; ++row)
            found.insert(found.end(), {early[row]->RepeatKind, late[row]->RepeatKind});
        return found;
    };
    CRepeatTiming& marker = AddMarker(0, 0.5f, 1, 0.5f, 2, 0.5f);
    marker.Stamp(AreaNotes(Area()));
    EXPECT_EQ(kinds(), (std::vector<std::int32_t>{0, 1, 1, 2, 2, 0}));

    // A row between start and middle is first time throughout.
    marker.MiddleStave = 2;
    marker.Restamp(AreaNotes(Area()));
    EXPECT_EQ(kinds(), (std::vector<std::int32_t>{0, 1, 1, 1, 1, 0}));
}

TEST_F(RepeatMarkers, ClearingStampsFreesOnlyThisMarkersNotesAndKeepsTheirId)
{
    CNoteEx* first = NoteAt(0, 0.3f);
    CNoteEx* second = NoteAt(0, 0.6f);
    CNoteEx* other = NoteAt(2, 0.3f);
    CRepeatTiming& marker = AddMarker(0, 0.25f, 0, 0.5f, 0, 0.75f);
    CRepeatTiming& elsewhere = AddMarker(2, 0.25f, 2, 0.5f, 2, 0.75f);
    ASSERT_EQ(elsewhere.RepeatId, marker.RepeatId + 1);
    const AreaNotes notes(Area());
    marker.Stamp(notes);
    elsewhere.Stamp(notes);

    marker.ClearStamps(notes);
    EXPECT_EQ(first->RepeatKind, 0);
    EXPECT_EQ(second->RepeatKind, 0);
    EXPECT_EQ(first->RepeatId, marker.RepeatId);
    EXPECT_EQ(other->RepeatKind, 1);
    EXPECT_EQ(other->RepeatId, elsewhere.RepeatId);

    // A restamp after a drag follows the legs.
    marker.MiddlePosition = 0.7f;
    marker.Restamp(notes);
    EXPECT_EQ(first->RepeatKind, 1);
    EXPECT_EQ(second->RepeatKind, 1);
}

} // namespace
} // namespace corrieval
