// What the mouse leaves behind in the tune: how it plays, and whether it counts as changed.

#include "EditCommandTestSupport.h"
#include "model/BarEx.h"
#include "notation/NoteEx.h"
#include "notation/RepeatTiming.h"
#include "playback/TuneSequence.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace corrieval::edit_tests {
namespace {

PointF Centre(const RectF& r)
{
    return {r.X + r.Width / 2, r.Y + r.Height / 2};
}

PointF Centre(const QPainterPath& path)
{
    const QPointF c = path.boundingRect().center();
    return {static_cast<float>(c.x()), static_cast<float>(c.y())};
}

// One system of four bars of two crotchets between repeat lines: bar 2 is the first time, bar 3
// the second, its notes stamped as a tune written with the marker has them.
class RepeatedTune : public ::testing::Test {
protected:
    RepeatedTune()
    {
        CTuneSequence written(&tune.Doc());
        written.Build(nullptr);
        Marker().Restamp(written);
        tune.Paint();
    }

    CRepeatTiming& Marker() const { return *tune.Music().RepeatMarkers.front(); }
    // The bars as play meets them, a bar's notes counted once.
    std::vector<int> PlayedBars(const CNoteEx* only = nullptr) const
    {
        CTuneSequence sequence(&tune.Doc());
        sequence.Build(nullptr);
        std::vector<int> bars;
        int last = -1;
        for (const CNoteSample* record : sequence.PlayList(0)) {
            if (only != nullptr && record->Note != only)
                continue;
            const CBarEx* bar = record->Note->FindAncestor<CBarEx>();
            int column = 0;
            while (&tune.Bar(0, static_cast<std::size_t>(column)) != bar)
                ++column;
            // A bar's notes count once, unless only one note is followed.
            if (column != last || only != nullptr)
                bars.push_back(column);
            last = column;
        }
        return bars;
    }

    EditedTune tune{{.Groups = 1, .Parts = 1, .Columns = 4, .NotesPerBar = 2, .Repeats = true}};
};

TEST_F(RepeatedTune, ANoteDroppedIntoTheSecondTimeBarPlaysOnTheSecondPassOnly)
{
    ASSERT_EQ(PlayedBars(), (std::vector<int>{0, 1, 2, 0, 1, 3}));
    tune.Shown.Host.Prototypes.push_back(std::make_unique<CNoteEx>(8));
    tune.View.EditState().PaletteEntry = 0;
    CBarEx& second = tune.Bar(0, 3);
    const RectF box = second.ContentBox();
    const PointF at{box.X + box.Width * 0.75f, second.Bounds().Y + 6 * second.Bounds().Height / 19};
    tune.Move(at);
    ASSERT_EQ(tune.View.EditState().GhostTarget, &second);
    tune.Press(at);
    tune.Release(at);
    ASSERT_EQ(second.ChildCount(), 3u);
    const auto notes = ChildrenOf<CNoteEx>(second);
    const auto dropped = std::ranges::find_if(notes, [](const CNoteEx* n) { return n->Duration == 8; });
    ASSERT_NE(dropped, notes.end());
    EXPECT_EQ(PlayedBars(*dropped), std::vector<int>{3});
    EXPECT_EQ(PlayedBars(), (std::vector<int>{0, 1, 2, 0, 1, 3}));
}

TEST_F(RepeatedTune, AStartLegDraggedOneBarBackMakesThatBarAFirstTimeBar)
{
    const PointF leg = Centre(Marker().StartLegPath);
    const RectF earlier = tune.Bar(0, 1).ContentBox();
    tune.Drag(leg, {earlier.X + 0.02f, leg.Y});
    EXPECT_EQ(PlayedBars(), (std::vector<int>{0, 1, 2, 0, 3}));
    // Undone, the notes play as they did.
    tune.View.History().Undo();
    EXPECT_EQ(PlayedBars(), (std::vector<int>{0, 1, 2, 0, 1, 3}));
}

TEST(MouseModified, AClickThatMovesNothingLeavesTheTuneUnmodified)
{
    EditedTune tune(CrotchetTune());
    tune.Paint();
    ASSERT_FALSE(tune.Doc().IsModified());
    CNoteEx& note = tune.Note(0, 1, 0);
    const PointF head = Centre(note.HeadRect);
    tune.Press(head);
    tune.Release(head);
    ASSERT_TRUE(tune.View.Selection().Contains(&note));
    // A second click on the selected note starts a drag, which moves nothing either.
    tune.Press(head);
    tune.Release(head);
    // Nor does a new area without a band.
    tune.Run(InsertText);
    const PointF empty{tune.Doc().Pages.front()->ContentBox().X + 0.3f,
                       tune.Doc().Pages.front()->ContentBox().Bottom() - 0.3f};
    tune.Press(empty);
    tune.Release(empty);
    EXPECT_FALSE(tune.Doc().IsModified());
    EXPECT_FALSE(tune.View.History().CanUndo());

    tune.View.EditState().PendingArea = nullptr;
    tune.Drag(head, {head.X, head.Y + 0.2f});
    EXPECT_TRUE(tune.Doc().IsModified());
    EXPECT_TRUE(tune.View.History().CanUndo());
}

} // namespace
} // namespace corrieval::edit_tests
