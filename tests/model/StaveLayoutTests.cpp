#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/Stave.h"
#include "model/AbbreviationArea.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/RepeatTiming.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

CStaveGroup& Group(CStaveArea& area, std::size_t i) { return static_cast<CStaveGroup&>(*area.ChildAt(i)); }
CStave& Stave(CStaveGroup& group, std::size_t i) { return static_cast<CStave&>(*group.ChildAt(i)); }
CBarEx& Bar(CStave& stave, std::size_t i) { return static_cast<CBarEx&>(*stave.ChildAt(i)); }

// A music area on a page, as a rubber band makes one.
struct MusicArea {
    explicit MusicArea(RectF r)
    {
        page.SetBounds(0, 0, 8.5f, 11);
        area = static_cast<CStaveArea*>(page.AddChild(std::make_unique<CStaveArea>(), true));
        area->SetBounds(r);
        area->FillDefaultContent();
    }
    CTunePage page;
    CStaveArea* area;
};

TEST(StaveLayout, DefaultContentFollowsTheAreaSize)
{
    MusicArea small({0.5f, 0.5f, 1.0f, 0.6f}); // content 1 by 0.5 inches
    EXPECT_EQ(small.area->ChildCount(), 1u);
    EXPECT_EQ(Group(*small.area, 0).BarConfigs.size(), 1u);

    MusicArea large({0.5f, 0.5f, 7.0f, 3.2f}); // content 7 by 3.1
    ASSERT_EQ(large.area->ChildCount(), 3u);
    EXPECT_EQ(large.area->PartCount, 1);
    CStaveGroup& group = Group(*large.area, 1);
    EXPECT_EQ(group.BarConfigs.size(), 4u);
    CStave& stave = Stave(group, 0);
    ASSERT_EQ(stave.ChildCount(), 4u);
    // Bars share the stave's content width evenly, after the room of the head.
    const RectF box = stave.ContentBox();
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(Bar(stave, i).Bounds().X, box.X + box.Width * static_cast<float>(i) / 4, 1e-5);
        EXPECT_EQ(Bar(stave, i).Config, group.BarConfigs[i].get());
        EXPECT_FLOAT_EQ(Bar(stave, i).Bounds().Height, box.Height);
    }
    EXPECT_FLOAT_EQ(large.area->MinimumHeight, 1.5f);
}

TEST(StaveLayout, EveryRelayoutReturnsToTheStandardSpacing)
{
    MusicArea music({0.5f, 0.5f, 7.0f, 2.1f});
    music.area->StaveSpacing = 60;
    Group(*music.area, 0).Spacing = 60;
    music.area->SetBounds(0.5f, 0.5f, 7.0f, 3.0f);
    EXPECT_EQ(music.area->StaveSpacing, CStaveArea::StandardSpacing);
    CStaveGroup& group = Group(*music.area, 0);
    EXPECT_EQ(group.Spacing, CStaveArea::StandardSpacing);
    EXPECT_FLOAT_EQ(group.TopMargin, 0.35f * group.Bounds().Height / 3);

    // A loaded group has no spacing until something lays the area out again: its own layout
    // then gives it no room above and below.
    group.Spacing = 0;
    group.LayoutStaves();
    EXPECT_FLOAT_EQ(group.TopMargin, 0);
}

TEST(StaveLayout, BarColumnsComeAndGoAcrossAllStaves)
{
    MusicArea music({0.5f, 0.5f, 5.0f, 1.1f});
    music.area->SetPartCount(3);
    CStaveGroup& group = Group(*music.area, 0);
    ASSERT_EQ(group.ChildCount(), 3u);
    const std::size_t columns = group.BarConfigs.size();
    EXPECT_EQ(Stave(group, 2).ChildCount(), columns);

    group.InsertBarColumn(0);
    CBarConfig* first = group.BarConfigs[0].get();
    for (std::size_t s = 0; s < 3; ++s)
        EXPECT_EQ(Bar(Stave(group, s), 0).Config, first);

    group.RemoveBarColumn(0, false);
    EXPECT_EQ(group.BarConfigs.size(), columns);
    EXPECT_NE(Bar(Stave(group, 1), 0).Config, first);

    while (group.BarConfigs.size() > 1)
        group.RemoveBarColumn(0, false);
    music.area->StaveSpacing = 70;
    group.RemoveBarColumn(0, true); // the last column stays, the spacing still resets
    EXPECT_EQ(group.BarConfigs.size(), 1u);
    EXPECT_EQ(Stave(group, 0).ChildCount(), 1u);
    EXPECT_EQ(music.area->StaveSpacing, CStaveArea::StandardSpacing);
}

TEST(StaveLayout, RemovingTheFirstBarKeepsTheOpeningTimeSignature)
{
    MusicArea music({0.5f, 0.5f, 5.0f, 1.1f});
    CStaveGroup& group = Group(*music.area, 0);
    group.BarConfigs[0]->TimeSig.SetType(12);
    Stave(group, 0).RemoveBar(0, true);
    EXPECT_EQ(Bar(Stave(group, 0), 0).Config->TimeSig.Type, 12);
}

TEST(StaveLayout, HeaderReservesRoomForClefKeyAndTime)
{
    MusicArea music({0.5f, 0.5f, 6.0f, 1.1f});
    CStave& stave = Stave(Group(*music.area, 0), 0);
    const float h = stave.Bounds().Height;
    stave.LayoutHeader(false);
    EXPECT_FLOAT_EQ(stave.LeftMargin, h / 3.8f * 1.2f + h / 6);
    stave.LayoutHeader(true);
    EXPECT_FLOAT_EQ(stave.LeftMargin, h / 3.8f * 2.4f + h / 6);
    EXPECT_FLOAT_EQ(stave.Clef.Bounds().Y, stave.Bounds().Y + stave.Positions()[4]);
}

TEST(StaveLayout, ResizingAStaveKeepsEachBarsShare)
{
    MusicArea music({0.5f, 0.5f, 6.0f, 1.1f});
    CStave& stave = Stave(Group(*music.area, 0), 0);
    CStaveGroup& group = Group(*music.area, 0);
    group.SetBarWidth(1, 1.0f); // uneven bars
    const RectF before = stave.ContentBox();
    const float share = Bar(stave, 1).Bounds().Width / before.Width;
    music.area->SetBounds(0.5f, 0.5f, 7.5f, 1.1f);
    EXPECT_NEAR(Bar(stave, 1).Bounds().Width / stave.ContentBox().Width, share, 1e-5);
}

TEST(StaveLayout, BarLinesMoveOnlyWhereBothBarsStayWideEnough)
{
    MusicArea music({0.5f, 0.5f, 6.0f, 1.1f});
    CStaveGroup& group = Group(*music.area, 0);
    CStave& stave = Stave(group, 0);
    CBarEx& second = Bar(stave, 1);
    const float left = Bar(stave, 0).Bounds().X;
    group.MoveBarLine(second, left + 0.5f); // first bar would be 0.5 wide: refused
    EXPECT_NE(second.Bounds().X, left + 0.5f);
    group.MoveBarLine(second, left + 0.8f);
    EXPECT_FLOAT_EQ(second.Bounds().X, left + 0.8f);
    EXPECT_FLOAT_EQ(Bar(stave, 0).Bounds().Width, 0.8f);
}

TEST(StaveLayout, NextBarRunsOnIntoTheSamePartOfTheNextSystem)
{
    MusicArea music({0.5f, 0.5f, 4.0f, 2.2f});
    music.area->SetPartCount(2);
    CStave& lower = Stave(Group(*music.area, 0), 1);
    CBarEx& last = Bar(lower, lower.ChildCount() - 1);
    EXPECT_EQ(CStaveArea::NextBar(last), &Bar(Stave(Group(*music.area, 1), 1), 0));
    EXPECT_EQ(CStaveArea::PreviousBar(Bar(Stave(Group(*music.area, 1), 1), 0)), nullptr);
    CStave& end = Stave(Group(*music.area, 1), 1);
    EXPECT_EQ(CStaveArea::NextBar(Bar(end, end.ChildCount() - 1)), nullptr);
}

TEST(StaveLayout, RepeatMarkersTakeTheNextIdAndTheAreasRectangle)
{
    MusicArea music({0.5f, 0.5f, 4.0f, 1.1f});
    CRepeatTiming* first = music.area->AddRepeatMarker(std::make_unique<CRepeatTiming>());
    CRepeatTiming* second = music.area->AddRepeatMarker(std::make_unique<CRepeatTiming>());
    EXPECT_EQ(first->RepeatId, 1);
    EXPECT_EQ(second->RepeatId, 2);
    auto taken = music.area->RemoveRepeatMarker(first);
    EXPECT_EQ(taken.get(), first);
    EXPECT_EQ(music.area->AddRepeatMarker(std::move(taken))->RepeatId, 3);
    music.area->SetBounds(1, 1, 5, 2);
    EXPECT_EQ(second->Bounds(), (RectF{1, 1, 5, 2}));
}

TEST(StaveLayout, CloneCopiesStructureNotesAndFirstBarLines)
{
    MusicArea music({0.5f, 0.5f, 6.0f, 2.2f});
    music.area->SetPartCount(2);
    music.area->Background = 0x80112233;
    CStaveGroup& group = Group(*music.area, 0);
    group.BarConfigs[0]->StartRepeat = true;
    group.BarConfigs[1]->EndRepeat = true; // not carried over
    CBarEx& bar = Bar(Stave(group, 0), 0);
    auto* note = static_cast<CNoteEx*>(bar.AddChild(std::make_unique<CNoteEx>(8), true));
    note->SetBounds(bar.Bounds().X + 0.3f, bar.Bounds().Y, 0.2f, bar.Bounds().Height);
    note->Pitch = 5;

    auto copy = music.area->Clone();
    auto& area = static_cast<CStaveArea&>(*copy);
    EXPECT_EQ(area.Background, 0x80112233u);
    ASSERT_EQ(area.ChildCount(), 2u);
    CStaveGroup& copiedGroup = Group(area, 0);
    EXPECT_EQ(copiedGroup.ChildCount(), 2u);
    EXPECT_TRUE(copiedGroup.BarConfigs[0]->StartRepeat);
    EXPECT_FALSE(copiedGroup.BarConfigs[1]->EndRepeat);
    CBarEx& copiedBar = Bar(Stave(copiedGroup, 0), 0);
    ASSERT_EQ(copiedBar.ChildCount(), 1u);
    const auto& copiedNote = static_cast<const CNoteEx&>(*copiedBar.ChildAt(0));
    EXPECT_EQ(copiedNote.Pitch, 5);
    EXPECT_NEAR(copiedNote.Bounds().X - copiedBar.Bounds().X, 0.3f, 1e-5);
    EXPECT_EQ(CAbbreviationArea().Clone(), nullptr);
}

TEST(PageAreaHandles, DraggingStopsAtTheMinimumAndThePageEdge)
{
    CTunePage page;
    page.SetBounds(0, 0, 8.5f, 11);
    auto* area = static_cast<CPageArea*>(page.AddChild(std::make_unique<CStaveArea>(), true));
    area->SetBounds(1, 1, 3, 1);
    // Handle 0 (top left) far to the right: the width stops at 2 with the right edge in place.
    EXPECT_EQ(area->ResizedBounds(0, 3.5f, 1), (RectF{2, 1, 2, 1}));
    // Handle 2 (bottom right) far outside the page: clamped to the page's content box.
    const RectF page8 = area->ResizedBounds(2, 20, 20);
    EXPECT_FLOAT_EQ(page8.Right(), 8.1f);
    EXPECT_FLOAT_EQ(page8.Bottom(), 10.6f);
    // The whole area dragged past the edge lands flush against it, its size unchanged.
    const RectF moved = area->MovedBounds(2, 1.5f, 30, 1.5f);
    EXPECT_FLOAT_EQ(moved.X, 5.1f);
    EXPECT_FLOAT_EQ(moved.Width, 3);

    area->SetBounds(1, 1, 1.5f, 1); // below the minimum already: it can grow, not shrink
    EXPECT_EQ(area->ResizedBounds(5, 1.2f, 1.5f).Width, 1.5f);
    EXPECT_EQ(area->ResizedBounds(5, 3.0f, 1.5f).Width, 2.0f);
}

TEST(PageAreaHandles, HandlesWinBeforeTheBorderBand)
{
    CStaveArea area;
    area.SetBounds(1, 1, 3, 2);
    area.HandleSize = 0.06f;
    area.ComputeHandles();
    EXPECT_EQ(area.HitHandle(0.98f, 0.98f), 0); // sticks out of the rectangle, still a handle
    EXPECT_EQ(area.HitHandle(4.0f, 2.0f), 5);
    EXPECT_EQ(area.HitHandle(1.02f, 2.5f), CPageArea::Border);
    EXPECT_EQ(area.HitHandle(1.03f, 2.5f), CPageArea::NoHandle); // 0.03 in: inside, not the band
    EXPECT_EQ(area.HitHandle(5, 5), CPageArea::NoHandle);
}

} // namespace
} // namespace corrieval
