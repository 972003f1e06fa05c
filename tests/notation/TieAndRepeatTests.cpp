// Marks that span notes. Ties and triplet slurs: the tie command, how ties lose notes, their curve
// and figure, and how they break when their notes end up on different staves. First-and-second-
// time markers: how they are made and drawn, and how they stamp the notes they bracket.

#include "fixtures/ScoreFixtures.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TieCommand.h"
#include "notation/TieEx.h"
#include "support/RecordingMessages.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"
#include "support/ScoreWalk.h"

#include <gtest/gtest.h>
#include <memory>
#include <tuple>
#include <vector>

namespace corrieval {
namespace {

using testing::PaintCall;

// A tune of one stave a system built by the tune fixture, with a view on it.
class Tune : public ::testing::Test {
protected:
    explicit Tune(const fixtures::TuneShape& shape) : Doc(fixtures::BuildTune(shape))
    {
        View.Doc = Doc.get();
    }

    CStaveArea& Area() const { return *testing::MusicAreas(*Doc).front(); }
    CStave& Stave(std::size_t row) const { return testing::StaveOf(Area(), row); }
    CBarEx& Bar(std::size_t row, std::size_t column) const { return testing::BarOf(Area(), row, column); }

    std::unique_ptr<CCorrievalDoc> Doc;
    testing::RecordingView View;
};

// Two systems of two bars, four crotchets a bar, at pitches 3, 5, 7 and 9 from left to right.
class Ties : public Tune {
protected:
    Ties() : Tune({.Groups = 2, .Parts = 1, .Columns = 2, .NotesPerBar = 4, .Title = false})
    {
        for (std::size_t bar = 0; bar < 4; ++bar) {
            for (std::size_t i = 0; i < 4; ++i)
                Note(bar / 2, bar % 2, i)->Pitch = static_cast<NotePitch>(3 + 2 * i);
        }
    }
    // The i-th note of the bar; the fixture keeps a bar's notes in order from the left.
    CNoteEx* Note(std::size_t group, std::size_t column, std::size_t i) const
    {
        return static_cast<CNoteEx*>(Bar(group, column).ChildAt(i));
    }

    testing::RecordingMessages Messages;
};

TEST_F(Ties, TwoNotesOfOnePitchTieThreeOfAnyPitchMakeATripletAndATiedNoteOnlyUnties)
{
    CNoteEx* a = Note(0, 0, 0);
    CNoteEx* b = Note(0, 1, 0); // the same pitch, over the bar line
    EXPECT_TRUE(ToggleTie({a, b}, *Doc));
    ASSERT_EQ(Doc->Ties.size(), 1u);
    CTieEx& pair = *Doc->Ties[0];
    EXPECT_EQ(pair.Id, 1);
    EXPECT_EQ(pair.TieValue, 2);
    EXPECT_EQ(pair.Notes, (std::vector<CNoteEx*>{a, b}));
    EXPECT_EQ(b->Tie, &pair);
    EXPECT_TRUE(Doc->IsModified());

    EXPECT_TRUE(ToggleTie({Note(1, 0, 0), Note(1, 0, 1), Note(1, 0, 2)}, *Doc));
    ASSERT_EQ(Doc->Ties.size(), 2u);
    EXPECT_EQ(Doc->Ties[1]->TieValue, 3);
    EXPECT_TRUE(Messages.Texts.isEmpty());

    // With a tied note in the selection the command frees that whole tie and ties nothing, even
    // when the other note could be tied to it.
    CNoteEx* free = Note(1, 1, 0);
    Doc->SetModifiedFlag(false);
    EXPECT_TRUE(ToggleTie({b, free}, *Doc));
    ASSERT_EQ(Doc->Ties.size(), 1u);
    EXPECT_EQ(Doc->Ties[0]->Id, 2); // the triplet, numbered after the pair
    EXPECT_EQ(a->Tie, nullptr);
    EXPECT_EQ(free->Tie, nullptr);
    EXPECT_TRUE(Doc->IsModified());

    // Ids are never handed out twice, or two ties would merge when the file is read back.
    ToggleTie({Note(0, 0, 1), Note(0, 1, 1)}, *Doc);
    EXPECT_EQ(Doc->Ties.back()->Id, 3);
}

TEST_F(Ties, ABeamedGroupOfThreeBecomesATripletWholeAndAGroupTiesByItsLastNote)
{
    CBarEx& bar = Bar(0, 0);
    auto beamed = std::make_unique<CNoteGroupEx>();
    for (int i = 0; i < 3; ++i)
        beamed->AddChild(bar.RemoveChild(bar.ChildAt(0), false), false);
    CScoObj* group = bar.AddChild(std::move(beamed), false);
    EXPECT_TRUE(ToggleTie({group}, *Doc));
    ASSERT_EQ(Doc->Ties.size(), 1u);
    EXPECT_EQ(Doc->Ties[0]->Notes.size(), 3u);
    EXPECT_EQ(Doc->Ties[0]->TieValue, 3);
    ToggleTie({group}, *Doc); // untie again

    // The group ends on pitch 7; a note of pitch 7 in the next bar ties to it.
    EXPECT_TRUE(ToggleTie({Note(0, 1, 2), group}, *Doc));
    EXPECT_EQ(Doc->Ties[0]->Notes.size(), 4u);
    EXPECT_EQ(Doc->Ties[0]->TieValue, 3);
    EXPECT_TRUE(Messages.Texts.isEmpty());
}

TEST_F(Ties, OtherSelectionsAreRefusedWithTheWarningAndChangeNothing)
{
    CNoteEx* grace = Note(0, 1, 0);
    grace->Duration = 64;
    const std::vector<std::vector<CScoObj*>> refused{
        {Note(0, 0, 0), Note(0, 0, 1)},                               // two pitches
        {Note(0, 0, 0)},                                              // one note
        {Note(0, 0, 0), Note(0, 0, 1), Note(0, 0, 2), Note(0, 0, 3)}, // four
        {Note(0, 0, 0), grace},                                       // a lone gracenote has no pitch
        {},
    };
    for (const auto& selection : refused)
        EXPECT_FALSE(ToggleTie(selection, *Doc));
    EXPECT_TRUE(Doc->Ties.empty());
    EXPECT_FALSE(Doc->IsModified());
    const QString warning = "You can only tie 2 notes of the same pitch, or any 3 notes as a triple.";
    EXPECT_EQ(Messages.Texts, QStringList(QList<QString>(refused.size(), warning)));
    EXPECT_EQ(Messages.LastKind, MessageKind::Warning);

    // Three are accepted whatever they are, but a lone gracenote stays out of the tie.
    EXPECT_TRUE(ToggleTie({Note(0, 0, 1), grace, Note(1, 0, 1)}, *Doc));
    ASSERT_EQ(Doc->Ties.size(), 1u);
    EXPECT_EQ(Doc->Ties[0]->Notes, (std::vector<CNoteEx*>{Note(0, 0, 1), Note(1, 0, 1)}));
    EXPECT_EQ(grace->Tie, nullptr);
}

TEST_F(Ties, ATieThatLosesItsLastNoteLeavesTheDocument)
{
    CNoteEx* a = Note(0, 0, 0);
    CNoteEx* b = Note(0, 1, 0);
    ToggleTie({a, b}, *Doc);
    ToggleTie({Note(1, 0, 0), Note(1, 1, 0)}, *Doc);
    CTieEx* first = Doc->Ties[0].get();
    View.Invalidated.clear();

    EXPECT_FALSE(first->RemoveNote(Note(1, 0, 0), *Doc)); // not one of its notes
    EXPECT_TRUE(View.Invalidated.empty());
    EXPECT_FALSE(first->RemoveNote(a, *Doc));
    EXPECT_EQ(first->Notes, std::vector<CNoteEx*>{b});
    EXPECT_EQ(View.Invalidated, std::vector<const CScoObj*>{first});
    EXPECT_TRUE(first->RemoveNote(b, *Doc));
    ASSERT_EQ(Doc->Ties.size(), 1u);
    EXPECT_EQ(Doc->Ties[0]->Id, 2);
    a->Tie = b->Tie = nullptr;
}

TEST_F(Ties, TheCurveRisesAboveTheHighestNoteAndATripletShowsItsFigure)
{
    ToggleTie({Note(0, 0, 1), Note(0, 0, 2), Note(0, 0, 3)}, *Doc); // pitches 5, 7, 9
    CTieEx& tie = *Doc->Ties[0];
    testing::RecordingPainter painter;
    tie.Draw(painter, OutputMode::Screen);
    const auto curves = painter.Of(PaintCall::Kind::StrokePath);
    ASSERT_EQ(curves.size(), 1u);
    const QPainterPath& curve = curves[0].Path;
    ASSERT_EQ(curve.elementCount(), 4);
    // From the middle of the first note to the middle of the last, bowed six stave steps above
    // the highest of them (pitch 5).
    const float fromX = Note(0, 0, 1)->Bounds().X + Note(0, 0, 1)->Bounds().Width / 2;
    const float toX = Note(0, 0, 3)->Bounds().X + Note(0, 0, 3)->Bounds().Width / 2;
    const float controlY = Stave(0).GetBounds().Y + (5 - 6) * Stave(0).Positions()[1];
    EXPECT_NEAR(curve.elementAt(0).x, fromX, 1e-5);
    EXPECT_NEAR(curve.elementAt(3).x, toX, 1e-5);
    EXPECT_NEAR(curve.elementAt(1).y, controlY, 1e-5);

    // The figure, centred under the middle of the curve; a click on it finds the tie.
    ASSERT_EQ(painter.Count(PaintCall::Kind::FillPath), 1u);
    const RectF figure = tie.FigureBounds();
    const float size = Stave(0).GetBounds().Height * 0.125f;
    EXPECT_NEAR(figure.X + figure.Width / 2, (fromX + toX) / 2, size * 0.2);
    EXPECT_NEAR(figure.Y + figure.Height / 2, controlY + size, size * 0.3);
    EXPECT_EQ(Doc->TieAt(figure.X + figure.Width / 2, figure.Y + figure.Height / 2), &tie);
    EXPECT_EQ(Doc->TieAt(fromX, controlY - size), nullptr);
}

TEST_F(Ties, ATieOverTwoStavesBreaksAtTheNextPaint)
{
    // A pair on two systems: both notes go free, the tie leaves the document, nothing is drawn.
    CNoteEx* a = Note(0, 1, 0);
    CNoteEx* b = Note(1, 0, 0);
    ToggleTie({a, b}, *Doc);
    testing::RecordingPainter painter;
    Doc->Ties[0]->Draw(painter, OutputMode::Screen);
    EXPECT_TRUE(Doc->Ties.empty());
    EXPECT_EQ(a->Tie, nullptr);
    EXPECT_EQ(b->Tie, nullptr);
    EXPECT_TRUE(painter.Calls.empty());

    // A triplet with one note moved on: the other two keep their curve, without the figure, and
    // there is no figure left to click.
    ToggleTie({Note(0, 1, 1), Note(0, 1, 3), Note(1, 0, 1)}, *Doc);
    CTieEx& tie = *Doc->Ties[0];
    tie.Draw(painter, OutputMode::Screen);
    EXPECT_EQ(tie.Notes, (std::vector<CNoteEx*>{Note(0, 1, 1), Note(0, 1, 3)}));
    EXPECT_EQ(Note(1, 0, 1)->Tie, nullptr);
    EXPECT_EQ(painter.Count(PaintCall::Kind::StrokePath), 1u);
    EXPECT_EQ(painter.Count(PaintCall::Kind::FillPath), 0u);
    EXPECT_EQ(tie.FigureBounds(), RectF{});
}

// The notes of a one-part area in written order, as the tune sequence will offer them.
class AreaNotes : public WrittenNotes {
public:
    explicit AreaNotes(const CStaveArea& area) : m_area(area) {}
    void VisitPart(int part, const std::function<bool(const PlayedNote&)>& visit) const override
    {
        for (std::size_t row = 0; part == 0 && row < m_area.ChildCount(); ++row) {
            for (const auto& bar : testing::StaveOf(m_area, row).Children()) {
                for (const auto& item : static_cast<const CBarEx&>(*bar).Children()) {
                    if (!visit({static_cast<CNoteEx*>(item.get()), static_cast<const CBarEx*>(bar.get())}))
                        return;
                }
            }
        }
    }

private:
    const CStaveArea& m_area;
};

// Three systems of one stave, four empty bars each.
class RepeatMarkers : public Tune {
protected:
    RepeatMarkers() : Tune({.Groups = 3, .Parts = 1, .Columns = 4, .Title = false}) {}

    RectF Row(std::size_t row) const { return Stave(row).ContentBox(); }
    // The x of a fraction of a row, computed as the marker computes it.
    float X(std::size_t row, float fraction) const { return Row(row).X + fraction * Row(row).Width; }
    float LegTop(std::size_t row) const { return Stave(row).Bounds().Y - 4 * Stave(row).Positions()[1]; }

    // A marker from (stave, fraction) to (stave, fraction) through (stave, fraction).
    CRepeatTiming& AddMarker(std::int32_t start, float startAt, std::int32_t middle, float middleAt,
                             std::int32_t end, float endAt)
    {
        auto marker = std::make_unique<CRepeatTiming>();
        std::tie(marker->StartStave, marker->StartPosition, marker->MiddleStave, marker->MiddlePosition,
                 marker->EndStave, marker->EndPosition) =
            std::tuple(start, startAt, middle, middleAt, end, endAt);
        return *Area().AddRepeatMarker(std::move(marker));
    }
    // A note whose left edge stands at a fraction of the row, in the bar there: the four bars
    // share the row evenly.
    CNoteEx* NoteAt(std::size_t row, float fraction)
    {
        CBarEx& bar = Bar(row, static_cast<std::size_t>(fraction * 4));
        auto note = std::make_unique<CNoteEx>(4);
        note->SetBounds(X(row, fraction), bar.Bounds().Y, 0.1f, bar.Bounds().Height);
        return static_cast<CNoteEx*>(bar.AppendNote(std::move(note)));
    }
};

TEST_F(RepeatMarkers, AMarkerFromABarBracketsThatBarAndTheNext)
{
    CRepeatTiming marker(&Area(), Bar(1, 1), false, 0, 0);
    EXPECT_FLOAT_EQ(X(1, marker.StartPosition), Bar(1, 1).ContentBox().X);
    EXPECT_FLOAT_EQ(X(1, marker.MiddlePosition), Bar(1, 2).ContentBox().X);
    EXPECT_FLOAT_EQ(X(1, marker.EndPosition), Bar(1, 2).ContentBox().Right());
    EXPECT_EQ((std::vector{marker.StartStave, marker.MiddleStave, marker.EndStave}), (std::vector{1, 1, 1}));
    EXPECT_EQ(CRepeatTiming(&Area(), Bar(2, 0), false, 1, 0).StartStave, 1); // counted from an offset

    // On the last bar of a row the second time is the first bar of the next system, and the
    // line is drawn in two pieces, each at the height of its own row.
    CRepeatTiming& last =
        *Area().AddRepeatMarker(std::make_unique<CRepeatTiming>(&Area(), Bar(0, 3), false, 0, 0));
    EXPECT_EQ((std::vector{last.StartStave, last.MiddleStave, last.EndStave}), (std::vector{0, 1, 1}));
    testing::RecordingPainter painter;
    last.Draw(painter, OutputMode::Screen);
    const QPainterPath& line = last.LinePath;
    ASSERT_EQ(line.elementCount(), 4);
    EXPECT_TRUE(line.elementAt(2).isMoveTo());
    EXPECT_NEAR(line.elementAt(1).x, Row(0).Right(), 1e-5);
    EXPECT_NEAR(line.elementAt(1).y, LegTop(0), 1e-5);
    EXPECT_NEAR(line.elementAt(2).x, Row(1).X, 1e-5);
    EXPECT_NEAR(line.elementAt(3).y, LegTop(1), 1e-5);
    EXPECT_EQ(Area().RepeatMarkerAt(Row(0).Right() - 0.01f, LegTop(0)), &last);

    // A marker whose system is gone draws nothing and is no longer found.
    last.EndStave = 3;
    painter.Clear();
    last.Draw(painter, OutputMode::Screen);
    EXPECT_TRUE(painter.Calls.empty());
    EXPECT_EQ(Area().RepeatMarkerAt(Row(0).Right() - 0.01f, LegTop(0)), nullptr);

    // A marker for whole lines takes the next line, or the one after from a point within the line.
    CRepeatTiming whole(&Area(), Bar(0, 2), true, 0, 0);
    EXPECT_EQ((std::vector{whole.StartStave, whole.EndStave}), (std::vector{0, 1}));
    EXPECT_EQ((std::vector{whole.StartPosition, whole.MiddlePosition, whole.EndPosition}),
              (std::vector{0.0f, 0.0f, 1.0f}));
    CRepeatTiming part(&Area(), Bar(0, 2), true, 0, X(0, 0.5f));
    EXPECT_FLOAT_EQ(part.StartPosition, 0.5f);
    EXPECT_EQ((std::vector{part.MiddleStave, part.EndStave}), (std::vector{2, 2}));
}

TEST_F(RepeatMarkers, NotesInsideTheSectionsAreStampedAndNotesOnABoundaryAreNot)
{
    // Kinds expected at each fraction of the first row: 1 first time, 2 second time.
    const std::pair<float, std::int32_t> cases[] = {{0.1f, 0}, {0.25f, 0}, {0.3f, 1}, {0.5f, 0},
                                                    {0.6f, 2}, {0.75f, 0}, {0.8f, 0}};
    std::vector<CNoteEx*> notes;
    for (const auto& [fraction, kind] : cases)
        notes.push_back(NoteAt(0, fraction));
    CNoteEx* nextRow = NoteAt(1, 0.3f);
    CRepeatTiming& marker = AddMarker(0, 0.25f, 0, 0.5f, 0, 0.75f);
    CRepeatTiming& elsewhere = AddMarker(2, 0.25f, 2, 0.5f, 2, 0.75f);
    CNoteEx* other = NoteAt(2, 0.3f);
    const AreaNotes written(Area());
    marker.Stamp(written);
    elsewhere.Stamp(written);
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const auto [fraction, kind] = cases[i];
        EXPECT_EQ(notes[i]->RepeatKind, kind) << "note at " << fraction;
        EXPECT_EQ(notes[i]->RepeatId, kind != 0 ? marker.RepeatId : 0) << "note at " << fraction;
    }
    EXPECT_EQ(nextRow->RepeatKind, 0);
    EXPECT_EQ(other->RepeatId, elsewhere.RepeatId);
    EXPECT_NE(elsewhere.RepeatId, marker.RepeatId);

    // Clearing frees only this marker's notes and keeps their id.
    marker.ClearStamps(written);
    EXPECT_EQ(notes[2]->RepeatKind, 0);
    EXPECT_EQ(notes[4]->RepeatKind, 0);
    EXPECT_EQ(notes[2]->RepeatId, marker.RepeatId);
    EXPECT_EQ(other->RepeatKind, 1);

    // A restamp after a drag follows the legs.
    marker.MiddlePosition = 0.7f;
    marker.Restamp(written);
    EXPECT_EQ(notes[4]->RepeatKind, 1);
}

TEST_F(RepeatMarkers, AMarkerOverThreeSystemsStampsEachRowByItsPlaceInTheMarker)
{
    std::vector<CNoteEx*> notes; // early and late in each row
    for (std::size_t row = 0; row < 3; ++row)
        notes.insert(notes.end(), {NoteAt(row, 0.25f), NoteAt(row, 0.75f)});
    const auto kinds = [&] {
        std::vector<std::int32_t> found;
        for (const CNoteEx* note : notes)
            found.push_back(note->RepeatKind);
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

} // namespace
} // namespace corrieval
