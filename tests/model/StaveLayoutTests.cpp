// Laying out music areas: their default staves and bars, bar columns coming and going, and bar
// widths.

#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

CStaveGroup& Group(CStaveArea& area, std::size_t i)
{
    return static_cast<CStaveGroup&>(*area.ChildAt(i));
}
CStave& Stave(CStaveGroup& group, std::size_t i)
{
    return static_cast<CStave&>(*group.ChildAt(i));
}
CBarEx& Bar(CStave& stave, std::size_t i)
{
    return static_cast<CBarEx&>(*stave.ChildAt(i));
}

// A music area on a page, as a rubber band makes one.
struct MusicArea {
    explicit MusicArea(RectF r, int parts = 1)
    {
        page.SetBounds(0, 0, 8.5f, 11);
        area = static_cast<CStaveArea*>(page.AddChild(std::make_unique<CStaveArea>(), true));
        area->SetBounds(r);
        area->FillDefaultContent();
        area->SetPartCount(parts);
    }
    CStaveGroup& First() { return Group(*area, 0); }
    CTunePage page;
    CStaveArea* area;
};

TEST(StaveLayout, DefaultContentFollowsTheAreaSize)
{
    MusicArea small({0.5f, 0.5f, 1.0f, 0.6f}); // content 1 by 0.5 inches
    EXPECT_EQ(small.area->ChildCount(), 1u);
    EXPECT_EQ(small.First().BarConfigs.size(), 1u);

    MusicArea large({0.5f, 0.5f, 7.0f, 3.2f}); // content 7 by 3.1
    ASSERT_EQ(large.area->ChildCount(), 3u);
    CStaveGroup& group = Group(*large.area, 1);
    CStave& stave = Stave(group, 0);
    ASSERT_EQ(stave.ChildCount(), 4u);
    // Bars share the stave's content width evenly, after the room of the head.
    const RectF box = stave.ContentBox();
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_NEAR(Bar(stave, i).Bounds().X, box.X + box.Width * static_cast<float>(i) / 4, 1e-5);
        EXPECT_EQ(Bar(stave, i).Config, group.BarConfigs[i].get());
    }
}

TEST(StaveLayout, BarColumnsComeAndGoAcrossAllStaves)
{
    MusicArea music({0.5f, 0.5f, 5.0f, 1.1f}, 3);
    CStaveGroup& group = music.First();
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

    // The last column stays; the spacing still returns to the standard.
    while (group.BarConfigs.size() > 1)
        group.RemoveBarColumn(0, false);
    music.area->StaveSpacing = 70;
    group.RemoveBarColumn(0, true);
    EXPECT_EQ(group.BarConfigs.size(), 1u);
    EXPECT_EQ(Stave(group, 0).ChildCount(), 1u);
    EXPECT_EQ(music.area->StaveSpacing, CStaveArea::StandardSpacing);
}

TEST(StaveLayout, RemovingTheFirstBarKeepsTheOpeningTimeSignature)
{
    MusicArea music({0.5f, 0.5f, 5.0f, 1.1f});
    music.First().BarConfigs[0]->TimeSig.SetType(12);
    Stave(music.First(), 0).RemoveBar(0, true);
    EXPECT_EQ(Bar(Stave(music.First(), 0), 0).Config->TimeSig.Type, 12);
}

TEST(StaveLayout, BarWidthsKeepTheirShareAndBarLinesMoveOnlyWhereBothBarsStayWideEnough)
{
    MusicArea music({0.5f, 0.5f, 6.0f, 1.1f});
    CStave& stave = Stave(music.First(), 0);
    music.First().SetBarWidth(1, 1.0f); // uneven bars
    const float share = Bar(stave, 1).Bounds().Width / stave.ContentBox().Width;
    music.area->SetBounds(0.5f, 0.5f, 7.5f, 1.1f);
    EXPECT_NEAR(Bar(stave, 1).Bounds().Width / stave.ContentBox().Width, share, 1e-5);

    const float left = Bar(stave, 0).Bounds().X;
    music.First().MoveBarLine(Bar(stave, 1), left + 0.5f); // the first bar would be 0.5 wide
    EXPECT_NE(Bar(stave, 1).Bounds().X, left + 0.5f);
    music.First().MoveBarLine(Bar(stave, 1), left + 0.8f);
    EXPECT_FLOAT_EQ(Bar(stave, 1).Bounds().X, left + 0.8f);
    EXPECT_FLOAT_EQ(Bar(stave, 0).Bounds().Width, 0.8f);
}

} // namespace
} // namespace corrieval
