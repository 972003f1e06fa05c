// Bars: what their notes are worth under a time signature, and the value check's colours.

#include "model/AbbreviationArea.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/TieEx.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>
#include <initializer_list>
#include <memory>
#include <tuple>
#include <vector>

namespace corrieval {
namespace {

using testing::PaintCall;
using testing::RecordingPainter;

// Staves 0.95 high give a stave unit of 0.05: the lines lie 0.25 to 0.65 below a bar's top.
constexpr float kStave = 0.95f;
constexpr float kNear = 1e-5f;

TEST(NoteTicks, AMelodyNoteIsItsShareOfAFullBarAndAGracenoteFortyPerWeight)
{
    // Duration, time signature type, weight, ticks.
    const std::tuple<NoteDuration, std::int32_t, float, std::uint32_t> cases[] = {
        {4, 8, 1, 480},  // 4/4
        {4, 6, 1, 960},  // 2/4: two crotchets still fill 1920
        {4, 7, 1, 640},  // 3/4
        {8, 12, 1, 160}, // 6/8: six quavers fill 960
        {2, 3, 1, 1920}, // 2/2: two minims fill 3840
        {512, 8, 1, 60}, // the further glyph is a demisemiquaver, not a gracenote
        {4, 8, 1.5f, 720},
        {3, 8, 1, 0},              // no such duration
        {4, CTimeSig::None, 1, 0}, // no beats
        {4, 8, -1, 0},
        {64, 8, 1, 40}, // gracenotes: forty, scaled by the beat unit
        {256, 8, 1, 40},
        {64, 3, 1, 80},
        {64, 12, 1, 20},
        {64, 8, 0.25f, 30}, // 120 * 0.25 is not above 40: the plain share stands
        {64, 12, 0.25f, 15},
        {64, 8, 2, 80},
    };
    for (const auto& [duration, sigType, weight, ticks] : cases) {
        CNoteEx note(duration);
        note.Weight = weight;
        EXPECT_EQ(note.NoteTicks(CTimeSig(sigType)), ticks)
            << duration << " in " << sigType << " weight " << weight;
    }
}

// One system built by hand, without the layout hooks, so that the numbers stay plain: staves
// 0.95 high stacked from y = 0, bars 2 inches wide from x = 1.
class Bars : public ::testing::Test {
protected:
    static void Build(CStaveArea& target, int parts, int columns)
    {
        if (target.ChildCount() == 0)
            target.AddChild(std::make_unique<CStaveGroup>(), true);
        auto& group = static_cast<CStaveGroup&>(*target.ChildAt(0));
        while (group.ChildCount() < static_cast<std::size_t>(parts))
            group.AddChild(std::make_unique<CStave>(), true);
        for (int c = 0; c < columns; ++c)
            group.BarConfigs.push_back(std::make_unique<CBarConfig>());
        for (int p = 0; p < parts; ++p) {
            auto& stave = static_cast<CStave&>(*group.ChildAt(static_cast<std::size_t>(p)));
            stave.TopMargin = stave.BottomMargin = 0;
            const float y = kStave * static_cast<float>(p);
            stave.RestoreStoredBounds({0, y, 8, kStave});
            for (int c = 0; c < columns; ++c) {
                auto bar = std::make_unique<CBarEx>(group.BarConfigs[static_cast<std::size_t>(c)].get());
                bar->RestoreStoredBounds({1 + 2.0f * static_cast<float>(c), y, 2, kStave});
                stave.AddChild(std::move(bar), true);
            }
        }
    }
    static CBarEx& Bar(const CStaveArea& from, int part, int column)
    {
        const auto& group = static_cast<const CGraphObjContainer&>(*from.ChildAt(0));
        const auto& stave = static_cast<const CStave&>(*group.ChildAt(static_cast<std::size_t>(part)));
        return static_cast<CBarEx&>(*stave.ChildAt(static_cast<std::size_t>(column)));
    }
    CBarEx& Bar(int part, int column) { return Bar(area, part, column); }
    CBarConfig& Config(int column) { return *Bar(0, column).Config; }

    static CNoteEx* AddNote(CBarEx& bar, NoteDuration duration, float x)
    {
        auto note = std::make_unique<CNoteEx>(duration);
        note->RestoreStoredBounds({x, bar.Bounds().Y, 0.1f, bar.Bounds().Height});
        return static_cast<CNoteEx*>(bar.AppendNote(std::move(note)));
    }
    // Notes left to right in the order given, far off to the right: out of sight of the
    // painters here, which probe the bar's own marks.
    static std::vector<CNoteEx*> Fill(CBarEx& bar, std::initializer_list<NoteDuration> durations)
    {
        std::vector<CNoteEx*> notes;
        for (NoteDuration d : durations)
            notes.push_back(AddNote(bar, d, 100 + 0.2f * static_cast<float>(notes.size())));
        return notes;
    }
    static std::uint32_t Checked(CBarEx& bar)
    {
        EXPECT_FALSE(bar.UpdateValueColour(true, false));
        EXPECT_FALSE(bar.UseBackground);
        return bar.Colour;
    }
    void Tie(std::initializer_list<CNoteEx*> notes)
    {
        ties.push_back(std::make_unique<CTieEx>());
        for (CNoteEx* note : notes)
            ties.back()->AddNote(note);
    }
    std::vector<std::unique_ptr<CTieEx>> ties; // outlive the notes that point at them
    CStaveArea area;                           // common time
};

TEST_F(Bars, CheckValuesComparesTheNotesWithAFullBarOfTheSignatureInForce)
{
    Build(area, 1, 12);
    Fill(Bar(0, 0), {4, 4, 4, 4});
    Fill(Bar(0, 1), {4, 4, 4});
    Fill(Bar(0, 2), {4, 4, 4, 4, 4});
    auto dotted = Fill(Bar(0, 3), {4, 8, 2, 4}); // dotted crotchet, quaver, cut minim, crotchet
    dotted[0]->DotCut = CNoteEx::Dotted;
    dotted[2]->DotCut = CNoteEx::Cut;
    auto triplet = Fill(Bar(0, 4), {8, 8, 8, 4, 4, 4}); // three quavers in the time of two
    Tie({triplet[0], triplet[1], triplet[2]});
    auto pair = Fill(Bar(0, 5), {4, 4, 4, 4}); // two tied notes count in full
    Tie({pair[1], pair[2]});
    auto runOn = Fill(Bar(0, 6), {4, 4, 4, 4}); // the tie goes on into the next bar
    CNoteEx nextBar;
    Tie({runOn[3], &nextBar});
    // A gracenote borrows its time from the next melody note.
    Fill(Bar(0, 7), {64, 4, 64, 4, 64, 4, 64, 4});
    // The demisemiquaver keeps 30 of its 60 after the light gracenote and so counts 60 more.
    Fill(Bar(0, 8), {2, 4, 8, 16, 64, 32})[4]->Weight = 0.25f;
    // A movement's gracenotes count in the movement's place.
    for (int i = 0; i < 4; ++i) {
        const float x = 3 + 0.4f * static_cast<float>(i);
        auto* movement = static_cast<CNoteBase*>(Bar(0, 9).AppendNote(std::make_unique<CFixedNoteGroup>()));
        for (int g = 0; g < 3; ++g) {
            auto grace = std::make_unique<CNoteEx>(64);
            grace->RestoreStoredBounds({x + 0.05f * static_cast<float>(g), 0, 0.05f, kStave});
            movement->AddChild(std::move(grace), true);
        }
        AddNote(Bar(0, 9), 4, x + 0.3f);
    }
    Config(10).TimeSig.SetType(12); // 6/8 from here to the end of the stave
    Fill(Bar(0, 10), {8, 8, 8, 8, 8, 8});
    Fill(Bar(0, 11), {8, 8, 8, 8, 8});
    std::vector<std::uint32_t> expected(12, CBarEx::ExactColour);
    expected[1] = expected[11] = CBarEx::ShortColour;
    expected[2] = CBarEx::OverColour;
    for (int column = 0; column < 12; ++column)
        EXPECT_EQ(Checked(Bar(0, column)), expected[static_cast<std::size_t>(column)]) << column;
}

TEST_F(Bars, EmptyBarsAndTheWrittenRowAreNeverColoured)
{
    testing::RecordingView view;
    Build(area, 1, 1);
    Bar(0, 0).Colour = 0x12345678;
    EXPECT_TRUE(Bar(0, 0).UpdateValueColour(true, true));
    EXPECT_EQ(Bar(0, 0).Colour, 0x12345678u);

    CAbbreviationArea legend;
    Build(legend, 2, 1);
    CBarEx& written = Bar(legend, 0, 0);
    CBarEx& played = Bar(legend, 1, 0);
    Fill(written, {4, 4, 4});
    Fill(played, {4, 4, 4});
    EXPECT_TRUE(written.UpdateValueColour(true, false));
    EXPECT_TRUE(written.UseBackground);
    EXPECT_FALSE(played.UpdateValueColour(true, true));
    EXPECT_EQ(played.Colour, CBarEx::ShortColour);
    EXPECT_EQ(view.Invalidated.back(), &played);
    EXPECT_TRUE(played.UpdateValueColour(false, false)); // switched off: the area's background
    EXPECT_TRUE(played.UseBackground);
}

TEST_F(Bars, TheScreenFillShowsCheckedValuesAndTheSelection)
{
    Build(area, 1, 3);
    Fill(Bar(0, 1), {4, 4, 4, 4});
    testing::RecordingView view;
    CCorrievalDoc doc;
    view.Doc = &doc;
    doc.CheckValues = 1;
    const auto fill = [&](int column, OutputMode mode) {
        RecordingPainter painter;
        painter.Visible = RectF{0, 0, 8, kStave};
        Bar(0, column).Draw(painter, mode);
        return painter.Of(PaintCall::Kind::FillRect);
    };
    const auto checked = fill(1, OutputMode::Screen);
    ASSERT_EQ(checked.size(), 1u);
    EXPECT_EQ(checked[0].Fill.Fore, CBarEx::ExactColour);
    EXPECT_NEAR(checked[0].Rect.Y, 0.25f, kNear); // between the outer stave lines
    EXPECT_NEAR(checked[0].Rect.Height, 0.4f, kNear);
    EXPECT_EQ(fill(0, OutputMode::Screen).at(0).Fill.Fore, area.Background); // empty
    Bar(0, 1).SetSelected(true);
    EXPECT_EQ(fill(1, OutputMode::Screen).at(0).Fill.Fore, CBarEx::SelectedFill);
    view.Idle = false; // printing
    EXPECT_TRUE(fill(1, OutputMode::Printer).empty());
}

} // namespace
} // namespace corrieval
