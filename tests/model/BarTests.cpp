#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/AbbreviationArea.h"
#include "model/StaveArea.h"
#include "notation/FixedNoteGroup.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TieEx.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>

#include <array>
#include <initializer_list>
#include <memory>
#include <vector>

namespace corrieval {
namespace {

using testing::PaintCall;
using testing::RecordingPainter;

// Staves 0.95 high give a stave unit of 0.05: the lines lie 0.25 to 0.65 below a bar's top.
constexpr float kStave = 0.95f;
constexpr float kNear = 1e-5f;

std::uint32_t Ticks(NoteDuration duration, std::int32_t sigType, float weight = 1.0f)
{
    CNoteEx note;
    note.Duration = duration;
    note.Weight = weight;
    return note.NoteTicks(CTimeSig(sigType));
}

TEST(NoteTicks, AMelodyNoteIsItsShareOfAFullBar)
{
    EXPECT_EQ(Ticks(4, 8), 480u);  // 4/4
    EXPECT_EQ(Ticks(4, 6), 960u);  // 2/4: two crotchets still fill 1920
    EXPECT_EQ(Ticks(4, 7), 640u);  // 3/4
    EXPECT_EQ(Ticks(8, 12), 160u); // 6/8: six quavers fill 960
    EXPECT_EQ(Ticks(2, 3), 1920u); // 2/2: two minims fill 3840
    EXPECT_EQ(Ticks(512, 8), 60u); // the further glyph is a demisemiquaver, not a gracenote
    EXPECT_EQ(Ticks(4, 8, 1.5f), 720u);
    EXPECT_EQ(Ticks(3, 8), 0u);              // no such duration
    EXPECT_EQ(Ticks(4, CTimeSig::None), 0u); // no beats
    EXPECT_EQ(Ticks(4, 8, -1.0f), 0u);
}

TEST(NoteTicks, GracenotesAreFortyPerWeightScaledByTheUnit)
{
    for (NoteDuration small : {64, 128, 256})
        EXPECT_EQ(Ticks(small, 8), 40u);
    EXPECT_EQ(Ticks(64, 3), 80u);
    EXPECT_EQ(Ticks(64, 12), 20u);
    EXPECT_EQ(Ticks(64, 8, 0.25f), 30u); // 120 * 0.25 is not above 40: the plain share stands
    EXPECT_EQ(Ticks(64, 12, 0.25f), 15u);
    EXPECT_EQ(Ticks(64, 8, 2.0f), 80u);
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

    static CNoteEx* AddNote(CBarEx& bar, NoteDuration duration, float x, float width = 0.1f)
    {
        auto note = std::make_unique<CNoteEx>();
        note->Duration = duration;
        note->RestoreStoredBounds({x, bar.Bounds().Y, width, bar.Bounds().Height});
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
    Build(area, 1, 6);
    Fill(Bar(0, 0), {4, 4, 4, 4});
    Fill(Bar(0, 1), {4, 4, 4});
    Fill(Bar(0, 2), {4, 4, 4, 4, 4});
    auto dotted = Fill(Bar(0, 3), {4, 8, 2, 4}); // dotted crotchet, quaver, cut minim, crotchet
    dotted[0]->DotCut = CNoteEx::Dotted;
    dotted[2]->DotCut = CNoteEx::Cut;
    Config(4).TimeSig.SetType(12); // 6/8 from here to the end of the stave
    Fill(Bar(0, 4), {8, 8, 8, 8, 8, 8});
    Fill(Bar(0, 5), {8, 8, 8, 8, 8});
    EXPECT_EQ(Checked(Bar(0, 0)), CBarEx::ExactColour);
    EXPECT_EQ(Checked(Bar(0, 1)), CBarEx::ShortColour);
    EXPECT_EQ(Checked(Bar(0, 2)), CBarEx::OverColour);
    EXPECT_EQ(Checked(Bar(0, 3)), CBarEx::ExactColour);
    EXPECT_EQ(Bar(0, 5).GetActiveTimeSig().Type, 12);
    EXPECT_EQ(Checked(Bar(0, 4)), CBarEx::ExactColour);
    EXPECT_EQ(Checked(Bar(0, 5)), CBarEx::ShortColour);

    CStaveArea cut;
    cut.InitialTimeSig.SetType(3); // 2/2
    Build(cut, 1, 1);
    Fill(Bar(cut, 0, 0), {2, 2});
    EXPECT_EQ(Checked(Bar(cut, 0, 0)), CBarEx::ExactColour);
}

TEST_F(Bars, TiesTripletsAndGracenotesComeOutExact)
{
    Build(area, 1, 6);
    auto triplet = Fill(Bar(0, 0), {8, 8, 8, 4, 4, 4}); // three quavers in the time of two
    Tie({triplet[0], triplet[1], triplet[2]});
    auto pair = Fill(Bar(0, 1), {4, 4, 4, 4}); // two tied notes count in full
    Tie({pair[1], pair[2]});
    auto runOn = Fill(Bar(0, 2), {4, 4, 4, 4}); // the tie goes on into the next bar
    CNoteEx nextBar;
    Tie({runOn[3], &nextBar});
    // A gracenote borrows its time from the next melody note.
    Fill(Bar(0, 3), {64, 4, 64, 4, 64, 4, 64, 4});
    // The demisemiquaver keeps 30 of its 60 after the light gracenote and so counts 60 more.
    Fill(Bar(0, 4), {2, 4, 8, 16, 64, 32})[4]->Weight = 0.25f;
    // A movement's gracenotes count in the movement's place.
    for (int i = 0; i < 4; ++i) {
        const float x = 3 + 0.4f * static_cast<float>(i);
        auto* movement = static_cast<CNoteBase*>(Bar(0, 5).AppendNote(std::make_unique<CFixedNoteGroup>()));
        for (int g = 0; g < 3; ++g) {
            auto grace = std::make_unique<CNoteEx>();
            grace->Duration = 64;
            grace->RestoreStoredBounds({x + 0.05f * static_cast<float>(g), 0, 0.05f, kStave});
            movement->AddChild(std::move(grace), true);
        }
        AddNote(Bar(0, 5), 4, x + 0.3f);
    }
    for (int column = 0; column < 6; ++column)
        EXPECT_EQ(Checked(Bar(0, column)), CBarEx::ExactColour) << column;
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
    EXPECT_EQ(played.Colour, legend.Background);
}

TEST_F(Bars, PlaceItemCentresOnThePointInsideTheContentBox)
{
    Build(area, 1, 3);
    Config(1).StartBarLine = true;
    CBarEx& bar = Bar(0, 1); // content from 3.05 to 5
    bar.RecalcMargins();
    CNoteEx* note = AddNote(bar, 4, 0, 0.2f);

    bar.PlaceItem(*note, 4, 6.6f * 0.05f); // rounds to the nearest position
    EXPECT_NEAR(note->Bounds().X, 3.9f, kNear);
    EXPECT_EQ(note->Pitch, 7);
    bar.PlaceItem(*note, 4.99f, 6.4f * 0.05f);
    EXPECT_NEAR(note->Bounds().X, 4.8f, kNear);
    EXPECT_EQ(note->Pitch, 6);
    bar.PlaceItem(*note, 3, -1);
    EXPECT_NEAR(note->Bounds().X, 3.05f, kNear);
    EXPECT_EQ(note->Pitch, HighestPitch);
    EXPECT_TRUE(bar.ContainsItem(*note));
    bar.PlaceItem(*note, 4, 5);
    EXPECT_EQ(note->Pitch, LowestPitch);
    note->SetBounds(3.04f, 0, 0.2f, kStave);
    EXPECT_FALSE(bar.ContainsItem(*note));

    CNoteEx* unsized = AddNote(bar, 4, 0, 0); // no width yet: an eighth of its height
    bar.PlaceItem(*unsized, 4, 0.45f);
    EXPECT_NEAR(unsized->Bounds().Width, kStave * 0.125f, kNear);
}

TEST_F(Bars, SortedInsertGoesBehindItemsAtTheSameX)
{
    Build(area, 1, 1);
    CBarEx& bar = Bar(0, 0);
    CNoteEx* a = AddNote(bar, 4, 1.5f);
    CNoteEx* b = AddNote(bar, 4, 2.5f);
    auto at = [](float x) {
        auto note = std::make_unique<CNoteEx>();
        note->RestoreStoredBounds({x, 0, 0.1f, kStave});
        return note;
    };
    CScoObj* c = bar.AddNoteSorted(at(2));
    CScoObj* d = bar.AddNoteSorted(at(2));
    CScoObj* first = bar.AddNoteSorted(at(0.5f));
    EXPECT_EQ(bar.AddNoteSorted(nullptr), nullptr);
    const std::vector<const CScoObj*> expected{first, a, c, d, b};
    ASSERT_EQ(bar.ChildCount(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i)
        EXPECT_EQ(bar.ChildAt(i), expected[i]) << i;
    EXPECT_EQ(d->Parent(), &bar);
}

TEST_F(Bars, MarginsMakeRoomForHeavyLinesAndASignatureChangeInEveryStave)
{
    Build(area, 2, 3);
    Config(1).StartRepeat = true;
    Config(1).EndBarLine = true;
    Config(1).TimeSig.SetType(12);
    for (int part = 0; part < 2; ++part) {
        CBarEx& bar = Bar(part, 1);
        bar.RecalcMargins();
        EXPECT_NEAR(bar.LeftMargin, 0.25f, kNear);
        EXPECT_NEAR(bar.RightMargin, 0.05f, kNear);
        EXPECT_NEAR(bar.TopMargin, 0.25f, kNear);
        EXPECT_NEAR(bar.BottomMargin, 0.3f, kNear);
        const RectF sig = Config(1).TimeSig.Bounds();
        EXPECT_NEAR(sig.X, 3.05f, kNear);
        EXPECT_NEAR(sig.Width, 0.25f, kNear);
        EXPECT_EQ(sig.Y, bar.Bounds().Y);
        EXPECT_EQ(Config(1).TimeSig.Stave, bar.Parent());
    }
}

TEST_F(Bars, ResizingKeepsEachNoteAtItsFractionOfTheWidth)
{
    Build(area, 1, 3);
    CBarEx& bar = Bar(0, 1); // from x = 3, 2 wide
    CNoteEx* quarter = AddNote(bar, 4, 3.45f);
    CNoteEx* late = AddNote(bar, 4, 4.55f);
    bar.SetBounds(5, 0.1f, 4, 1);
    EXPECT_NEAR(quarter->Bounds().X, 5.95f, kNear);
    EXPECT_NEAR(late->Bounds().X, 8.15f, kNear);
    EXPECT_EQ(late->Bounds(), (RectF{late->Bounds().X, 0.1f, 0.1f, 1}));
}

TEST_F(Bars, SpacingLeavesAFifthOfAGapBehindGracenotesAndMovements)
{
    Build(area, 1, 3);
    CBarEx& bar = Bar(0, 1); // neither first nor last: content 2 wide from x = 3
    CNoteEx* grace = AddNote(bar, 64, 3.1f, 0.05f);
    CNoteEx* note = AddNote(bar, 4, 3.3f);
    auto* movement = static_cast<CNoteBase*>(bar.AppendNote(std::make_unique<CFixedNoteGroup>()));
    movement->RestoreStoredBounds({3.5f, 0, 0.2f, kStave});
    auto* beamed = static_cast<CNoteBase*>(bar.AppendNote(std::make_unique<CNoteGroupEx>()));
    auto member = std::make_unique<CNoteEx>();
    member->RestoreStoredBounds({3.9f, 0, 0.1f, kStave});
    CScoObj* inGroup = beamed->AddChild(std::move(member), true);
    bar.AutoOrganise();

    const float gap = (2 - 0.45f - 0.1f) / 4;
    EXPECT_NEAR(grace->Bounds().X, 3 + gap * 0.5f + 0.1f, kNear);
    EXPECT_NEAR(note->Bounds().X - grace->Bounds().Right(), gap * 0.2f, kNear);
    EXPECT_NEAR(movement->Bounds().X - note->Bounds().Right(), gap * 1.8f, kNear);
    EXPECT_NEAR(inGroup->Bounds().X - movement->Bounds().Right(), gap * 0.2f, kNear);
    EXPECT_EQ(inGroup->Bounds().Y, bar.Bounds().Y);

    const RectF once = inGroup->Bounds();
    bar.AutoOrganise();
    EXPECT_EQ(inGroup->Bounds(), once);
}

TEST_F(Bars, SpacingInsetsTheEndsOfTheStave)
{
    Build(area, 1, 3);
    CNoteEx* first = AddNote(Bar(0, 0), 4, 2);
    CNoteEx* last = AddNote(Bar(0, 2), 4, 6);
    Bar(0, 0).AutoOrganise();
    Bar(0, 2).AutoOrganise();
    const float gap = 2 - 0.1f - 0.2f; // the free room of a one-note bar at either end
    EXPECT_NEAR(first->Bounds().X, 1 + gap * 0.5f + 0.2f, kNear);
    EXPECT_NEAR(last->Bounds().X, 5 + gap * 0.5f + 0.1f, kNear);

    CStaveArea solo; // a stave of one bar is first and last: the room goes once
    Build(solo, 1, 1);
    CNoteEx* only = AddNote(Bar(solo, 0, 0), 4, 2);
    Bar(solo, 0, 0).AutoOrganise();
    EXPECT_NEAR(only->Bounds().X, 1 + gap * 0.5f + 0.2f, kNear);
}

TEST_F(Bars, RefitPutsPastedNotesBehindInTheirOwnOrder)
{
    Build(area, 1, 3);
    CBarEx& bar = Bar(0, 1);
    // Pasted notes go in after the room that the notes already there take from their first.
    CNoteEx* a = AddNote(bar, 4, 3);
    CNoteEx* b = AddNote(bar, 4, 3.15f);
    CNoteEx* pastedFirst = AddNote(bar, 8, 0.5f);
    CNoteEx* pastedSecond = AddNote(bar, 8, 0.7f);
    pastedFirst->Pasted = pastedSecond->Pasted = true;
    bar.RefitContent();

    EXPECT_LT(a->Bounds().X, b->Bounds().X);
    EXPECT_LT(b->Bounds().X, pastedFirst->Bounds().X);
    EXPECT_LT(pastedFirst->Bounds().X, pastedSecond->Bounds().X);
    EXPECT_FALSE(pastedFirst->Pasted || pastedSecond->Pasted);
}

// The vertical lines drawn, as (x, top, bottom, width).
std::vector<std::array<float, 4>> BarLines(const RecordingPainter& painter)
{
    std::vector<std::array<float, 4>> lines;
    for (const PaintCall& c : painter.Of(PaintCall::Kind::Line)) {
        EXPECT_TRUE(c.IsVerticalLine());
        lines.push_back({c.X1, c.Y1, c.Y2, c.Stroke.Width});
    }
    return lines;
}

void ExpectLine(const std::array<float, 4>& line, float x, float top, float bottom, float width)
{
    EXPECT_NEAR(line[0], x, kNear);
    EXPECT_NEAR(line[1], top, kNear);
    EXPECT_NEAR(line[2], bottom, kNear);
    EXPECT_NEAR(line[3], width, kNear);
}

TEST_F(Bars, PlainLinesRunFromTheFirstStaveTopLineToTheLastStaveBottomLine)
{
    Build(area, 2, 3);
    RecordingPainter painter;
    Bar(0, 0).Draw(painter, OutputMode::Screen); // the stave's head stands where a first line would
    auto lines = BarLines(painter);
    ASSERT_EQ(lines.size(), 1u);
    ExpectLine(lines[0], 3, 0.25f, 0.95f, 0.004f);

    painter.Clear();
    Bar(1, 1).Draw(painter, OutputMode::Screen);
    lines = BarLines(painter);
    ASSERT_EQ(lines.size(), 2u);
    ExpectLine(lines[0], 3, 0.95f, 1.6f, 0.004f);
    ExpectLine(lines[1], 5, 0.95f, 1.6f, 0.004f);
    EXPECT_EQ(painter.Count(PaintCall::Kind::FillRect), 0u); // no view: no screen fill

    // Without mid-stave lines only the end of the stave and heavy lines draw.
    area.ShowBarLines = false;
    Config(2).StartRepeat = true;
    painter.Clear();
    Bar(0, 1).Draw(painter, OutputMode::Screen);
    EXPECT_TRUE(painter.Calls.empty());
    Bar(1, 2).Draw(painter, OutputMode::Screen);
    lines = BarLines(painter);
    ASSERT_EQ(lines.size(), 3u);
    ExpectLine(lines[2], 7, 0.95f, 1.6f, 0.004f);
}

TEST_F(Bars, RepeatLinesAndDotsStandWhereTheRulesPutThem)
{
    Build(area, 1, 3);
    Config(1).StartRepeat = true;
    Config(1).EndRepeat = true;
    RecordingPainter painter;
    Bar(0, 1).Draw(painter, OutputMode::Screen);

    const auto lines = BarLines(painter);
    ASSERT_EQ(lines.size(), 4u);
    const float light = 0.05f * 1.2f;
    const float half = 0.016f;
    const float endLight = 0.05f * 1.1f;
    ExpectLine(lines[0], 3, 0.25f, 0.65f, 0.032f);
    ExpectLine(lines[1], 3 + light, 0.25f, 0.65f, 0.004f);
    ExpectLine(lines[2], 5 - half, 0.25f, 0.65f, 0.032f);
    ExpectLine(lines[3], 5 - endLight - half, 0.25f, 0.65f, 0.004f);

    const auto dots = painter.Of(PaintCall::Kind::FillEllipse);
    ASSERT_EQ(dots.size(), 4u);
    const float endDots = 5 - half - endLight * 1.5f - 0.04f;
    const RectF expected[] = {{3 + light * 1.5f, 0.38f, 0.04f, 0.04f}, // the spaces by the middle line
                              {3 + light * 1.5f, 0.48f, 0.04f, 0.04f},
                              {endDots, 0.38f, 0.04f, 0.04f},
                              {endDots, 0.48f, 0.04f, 0.04f}};
    for (std::size_t i = 0; i < dots.size(); ++i) {
        EXPECT_NEAR(dots[i].Rect.X, expected[i].X, kNear) << i;
        EXPECT_NEAR(dots[i].Rect.Y, expected[i].Y, kNear) << i;
        EXPECT_NEAR(dots[i].Rect.Width, 0.04f, kNear);
        EXPECT_TRUE(dots[i].Smoothing);
    }
    EXPECT_FALSE(painter.Smoothing);
}

TEST_F(Bars, FirstBarClearsTheHeadAndASignatureChangeJoinsTheStartLines)
{
    Build(area, 1, 3);
    Config(0).StartBarLine = true;
    Config(1).StartRepeat = true;
    Config(1).TimeSig.SetType(12);
    RecordingPainter painter;
    painter.Visible = RectF{50, 50, 1, 1}; // the bar's own marks only, not the signature's glyphs
    Bar(0, 0).Draw(painter, OutputMode::Screen);
    auto lines = BarLines(painter);
    ASSERT_EQ(lines.size(), 3u);
    ExpectLine(lines[0], 1.07f, 0.25f, 0.65f, 0.032f);
    ExpectLine(lines[1], 1.07f + 0.06f, 0.25f, 0.65f, 0.004f);

    painter.Clear();
    Bar(0, 1).Draw(painter, OutputMode::Screen);
    lines = BarLines(painter);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_NEAR(lines[0][0], 3, kNear);
    EXPECT_NEAR(lines[1][0], 3, kNear);
    EXPECT_NEAR(painter.Of(PaintCall::Kind::FillEllipse).at(0).Rect.X, 3, kNear);
}

TEST_F(Bars, TheScreenFillShowsCheckedValuesAndTheSelection)
{
    Build(area, 1, 3);
    Fill(Bar(0, 1), {4, 4, 4, 4});
    testing::RecordingView view;
    CCorrievalDoc doc;
    view.Doc = &doc;
    doc.CheckValues = 1;
    RecordingPainter painter;
    painter.Visible = RectF{0, 0, 8, kStave};

    Bar(0, 1).Draw(painter, OutputMode::Screen);
    auto fills = painter.Of(PaintCall::Kind::FillRect);
    ASSERT_EQ(fills.size(), 1u);
    EXPECT_EQ(fills[0].Fill.Fore, CBarEx::ExactColour);
    EXPECT_NEAR(fills[0].Rect.Y, 0.25f, kNear);
    EXPECT_NEAR(fills[0].Rect.Height, 0.4f, kNear);

    painter.Clear();
    Bar(0, 0).Draw(painter, OutputMode::Screen); // empty: the area's background
    EXPECT_EQ(painter.Of(PaintCall::Kind::FillRect).at(0).Fill.Fore, area.Background);

    Bar(0, 1).SetSelected(true);
    painter.Clear();
    Bar(0, 1).Draw(painter, OutputMode::Screen);
    EXPECT_EQ(painter.Of(PaintCall::Kind::FillRect).at(0).Fill.Fore, CBarEx::SelectedFill);

    view.Idle = false; // printing
    painter.Clear();
    Bar(0, 1).Draw(painter, OutputMode::Printer);
    EXPECT_EQ(painter.Count(PaintCall::Kind::FillRect), 0u);
}

} // namespace
} // namespace corrieval
