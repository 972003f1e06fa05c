// Ties and triplet slurs: the tie command, how ties lose notes, their box, their curve and figure,
// and how they come back from a file.

#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TieCommand.h"
#include "notation/TieEx.h"
#include "support/RecordingMessages.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

namespace corrieval {
namespace {

using testing::PaintCall;
using testing::RecordingMessages;
using testing::RecordingPainter;

const QString kRefusal =
    QStringLiteral("You can only tie 2 notes of the same pitch, or any 3 notes as a triple.");

// Two systems of one stave, two bars each, four crotchets a bar, at pitches 3, 5, 7 and 9 from
// left to right.
class Ties : public ::testing::Test {
protected:
    Ties()
    {
        fixtures::TuneShape shape;
        shape.Groups = 2;
        shape.Parts = 1;
        shape.Columns = 2;
        shape.NotesPerBar = 4;
        shape.Title = false;
        Doc = fixtures::BuildTune(shape);
        View.Doc = Doc.get();
        for (std::size_t group = 0; group < 2; ++group) {
            for (std::size_t column = 0; column < 2; ++column) {
                for (std::size_t i = 0; i < 4; ++i)
                    Note(group, column, i)->Pitch = static_cast<NotePitch>(3 + 2 * i);
            }
        }
    }

    CStaveArea& Area() const { return static_cast<CStaveArea&>(*Doc->Pages[0]->ChildAt(0)); }
    CStave& Stave(std::size_t group) const
    {
        return static_cast<CStave&>(*static_cast<CStaveGroup&>(*Area().ChildAt(group)).ChildAt(0));
    }
    CBarEx& Bar(std::size_t group, std::size_t column) const
    {
        return static_cast<CBarEx&>(*Stave(group).ChildAt(column));
    }
    // The i-th note of the bar from the left.
    CNoteEx* Note(std::size_t group, std::size_t column, std::size_t i) const
    {
        std::vector<CNoteEx*> notes;
        for (const auto& child : Bar(group, column).Children())
            notes.push_back(static_cast<CNoteEx*>(child.get()));
        std::sort(notes.begin(), notes.end(), [](auto* a, auto* b) { return a->Bounds().X < b->Bounds().X; });
        return notes.at(i);
    }
    // A beamed group of the bar's first three notes, in place of them.
    CNoteGroupEx* GroupFirstThree(std::size_t group, std::size_t column)
    {
        CBarEx& bar = Bar(group, column);
        const std::vector<CNoteEx*> notes{Note(group, column, 0), Note(group, column, 1),
                                          Note(group, column, 2)};
        auto beamed = std::make_unique<CNoteGroupEx>();
        for (CNoteEx* note : notes)
            beamed->AddChild(bar.RemoveChild(note, false), false);
        return static_cast<CNoteGroupEx*>(bar.AddChild(std::move(beamed), false));
    }

    std::unique_ptr<CCorrievalDoc> Doc;
    testing::RecordingView View;
    RecordingMessages Messages;
};

TEST_F(Ties, TwoNotesOfOnePitchTieAndThreeOfAnyPitchMakeATriplet)
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
    EXPECT_EQ(Doc->Ties[1]->Id, 2);
    EXPECT_EQ(Doc->Ties[1]->TieValue, 3);
    EXPECT_TRUE(Messages.Texts.isEmpty());
}

TEST_F(Ties, ABeamedGroupOfThreeBecomesATripletWholeAndAGroupTiesByItsLastNote)
{
    CNoteGroupEx* group = GroupFirstThree(0, 0);
    EXPECT_TRUE(ToggleTie({group}, *Doc));
    ASSERT_EQ(Doc->Ties.size(), 1u);
    EXPECT_EQ(Doc->Ties[0]->Notes.size(), 3u);
    EXPECT_EQ(Doc->Ties[0]->TieValue, 3);
    ToggleTie({group}, *Doc); // untie again

    // The group ends on pitch 7; a note of pitch 7 in the next bar ties to it.
    CNoteEx* seven = Note(0, 1, 2);
    ASSERT_EQ(seven->Pitch, 7);
    EXPECT_TRUE(ToggleTie({seven, group}, *Doc));
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
    EXPECT_EQ(Messages.Texts, QStringList(QList<QString>(refused.size(), kRefusal)));
    EXPECT_EQ(Messages.LastKind, MessageKind::Warning);

    // Three are accepted whatever they are, but a lone gracenote stays out of the tie.
    EXPECT_TRUE(ToggleTie({Note(0, 0, 1), grace, Note(1, 0, 1)}, *Doc));
    ASSERT_EQ(Doc->Ties.size(), 1u);
    EXPECT_EQ(Doc->Ties[0]->Notes, (std::vector<CNoteEx*>{Note(0, 0, 1), Note(1, 0, 1)}));
    EXPECT_EQ(grace->Tie, nullptr);
}

TEST_F(Ties, ToggleWithATiedNoteOnlyUntiesAndFreesTheWholeTie)
{
    CNoteEx* a = Note(0, 0, 0);
    CNoteEx* b = Note(0, 1, 0);
    ToggleTie({a, b}, *Doc);
    CNoteEx* free = Note(1, 0, 0); // of the same pitch: the two could be tied
    Doc->SetModifiedFlag(false);
    EXPECT_TRUE(ToggleTie({b, free}, *Doc));
    EXPECT_TRUE(Doc->Ties.empty());
    EXPECT_EQ(a->Tie, nullptr);
    EXPECT_EQ(free->Tie, nullptr);
    EXPECT_TRUE(Doc->IsModified());
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

TEST_F(Ties, IdsAndFiguresComeBackFromTheFileAndAnEditedFigureIsRecomputed)
{
    ToggleTie({Note(0, 0, 0), Note(0, 1, 0)}, *Doc);
    ToggleTie({Note(1, 0, 0), Note(1, 0, 1), Note(1, 0, 2)}, *Doc);
    ToggleTie({Note(0, 0, 0)}, *Doc); // the first tie goes
    ToggleTie({Note(0, 0, 1), Note(0, 1, 1)}, *Doc);
    Doc->Ties[0]->TieValue = 7;

    auto loaded = ReadScore(StoreScore(*Doc, {}), {});
    ASSERT_EQ(loaded->Ties.size(), 2u);
    EXPECT_EQ(loaded->Ties[0]->Id, 2);
    EXPECT_EQ(loaded->Ties[0]->TieValue, 3);
    // The new pair did not take the id of the triplet, so the two stay apart.
    const CTieEx& pair = *loaded->Ties[1];
    EXPECT_EQ(pair.Id, 3);
    ASSERT_EQ(pair.Notes.size(), 2u);
    EXPECT_EQ(pair.Notes[1]->Bounds(), Note(0, 1, 1)->Bounds());
    EXPECT_EQ(pair.Notes[1]->Tie, &pair);
}

TEST_F(Ties, BoundsRunOverTheNotesOnTheFirstNotesStaveWithTheStavesHeight)
{
    CTieEx tie;
    EXPECT_EQ(tie.GetBounds(), RectF{});

    CNoteEx* right = Note(0, 1, 0);
    CNoteEx* left = Note(0, 0, 2);
    tie.AddNote(right);
    tie.AddNote(left);
    tie.AddNote(Note(1, 0, 0)); // on the next system: no part of the box
    const RectF box = tie.GetBounds();
    const RectF stave = Stave(0).GetBounds();
    EXPECT_FLOAT_EQ(box.X, left->Bounds().X);
    EXPECT_FLOAT_EQ(box.Right(), right->Bounds().Right());
    EXPECT_FLOAT_EQ(box.Y, stave.Y);
    EXPECT_FLOAT_EQ(box.Height, stave.Height);
    for (CNoteEx* note : tie.Notes)
        note->Tie = nullptr;
}

TEST_F(Ties, TheCurveRisesAboveTheHighestNoteAndATripletShowsItsFigure)
{
    std::vector<CScoObj*> three{Note(0, 0, 1), Note(0, 0, 2), Note(0, 0, 3)}; // pitches 5, 7, 9
    ToggleTie(three, *Doc);
    CTieEx& tie = *Doc->Ties[0];
    RecordingPainter painter;
    tie.Draw(painter, OutputMode::Screen);

    const RectF stave = Stave(0).GetBounds();
    const float u = Stave(0).Positions()[1];
    const RectF first = Note(0, 0, 1)->Bounds();
    const RectF last = Note(0, 0, 3)->Bounds();
    const auto curves = painter.Of(PaintCall::Kind::StrokePath);
    ASSERT_EQ(curves.size(), 1u);
    EXPECT_TRUE(curves[0].Smoothing);
    const QPainterPath& curve = curves[0].Path;
    ASSERT_EQ(curve.elementCount(), 4);
    // From the middle of the first note at its pitch, through control points six units above
    // the highest note, to the middle of the last.
    const float controlY = stave.Y + (5 - 6) * u;
    const float fromX = first.X + first.Width / 2;
    const float toX = last.X + last.Width / 2;
    EXPECT_NEAR(curve.elementAt(0).x, fromX, 1e-5);
    EXPECT_NEAR(curve.elementAt(0).y, stave.Y + 4 * u - u / 2, 1e-5);
    EXPECT_NEAR(curve.elementAt(1).x, fromX + (toX - fromX) / 4, 1e-5);
    EXPECT_NEAR(curve.elementAt(2).y, controlY, 1e-5);
    EXPECT_NEAR(curve.elementAt(3).y, stave.Y + 8 * u - u / 2, 1e-5);

    // The figure, centred under the middle of the curve; a click on it finds the tie.
    ASSERT_EQ(painter.Count(PaintCall::Kind::FillPath), 1u);
    EXPECT_FALSE(painter.Smoothing);
    const RectF figure = tie.FigureBounds();
    const float size = stave.Height * 0.125f;
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
    RecordingPainter painter;
    Doc->Ties[0]->Draw(painter, OutputMode::Screen);
    EXPECT_TRUE(Doc->Ties.empty());
    EXPECT_EQ(a->Tie, nullptr);
    EXPECT_EQ(b->Tie, nullptr);
    EXPECT_TRUE(painter.Calls.empty());

    // A triplet with one note moved on: the other two keep their curve, without the figure, and
    // there is no figure left to click.
    std::vector<CScoObj*> three{Note(0, 1, 1), Note(0, 1, 3), Note(1, 0, 1)};
    ToggleTie(three, *Doc);
    CTieEx& tie = *Doc->Ties[0];
    tie.Draw(painter, OutputMode::Screen);
    EXPECT_EQ(tie.Notes, (std::vector<CNoteEx*>{Note(0, 1, 1), Note(0, 1, 3)}));
    EXPECT_EQ(Note(1, 0, 1)->Tie, nullptr);
    EXPECT_EQ(painter.Count(PaintCall::Kind::StrokePath), 1u);
    EXPECT_EQ(painter.Count(PaintCall::Kind::FillPath), 0u);
    EXPECT_EQ(tie.FigureBounds(), RectF{});
}

} // namespace
} // namespace corrieval
