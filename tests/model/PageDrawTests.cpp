#include "model/SessionState.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

using Kind = testing::PaintCall::Kind;

struct PageWithArea {
    PageWithArea()
    {
        page.SetBounds(0, 11, 8.5f, 11);
        area = static_cast<CStaveArea*>(page.AddChild(std::make_unique<CStaveArea>(), true));
        area->SetBounds(1, 12, 4, 2);
    }
    CTunePage page;
    CStaveArea* area;
};

TEST(PageDrawing, TheScreenShowsPaperShadowAndMarginsWhilePaperShowsOnlyTheMusic)
{
    PageWithArea p;
    testing::RecordingPainter screen;
    p.page.Draw(screen, OutputMode::Screen);
    const auto fills = screen.Of(Kind::FillRect);
    ASSERT_GE(fills.size(), 3u);
    EXPECT_EQ(fills[0].Rect, (RectF{0.13f, 11.13f, 8.3f, 10.8f})); // shadow
    EXPECT_EQ(fills[0].Fill.Fore, 0xFF000000u);
    EXPECT_EQ(fills[1].Rect, (RectF{0.1f, 11.1f, 8.3f, 10.8f})); // paper
    const auto hatch = screen.Of(Kind::FillPath);
    ASSERT_EQ(hatch.size(), 1u);
    EXPECT_EQ(hatch[0].Fill.Kind, Brush::Style::Hatch20Percent);
    EXPECT_FALSE(hatch[0].Path.contains(QPointF(4, 16))); // the content box is left clear
    EXPECT_TRUE(hatch[0].Path.contains(QPointF(0.2, 16)));

    testing::RecordingPainter paper;
    p.page.Draw(paper, OutputMode::Printer);
    EXPECT_TRUE(paper.Of(Kind::FillPath).empty());
    // Only the area's own white fill: it hides what lies beneath it on paper too.
    const auto paperFills = paper.Of(Kind::FillRect);
    ASSERT_EQ(paperFills.size(), 1u);
    EXPECT_EQ(paperFills[0].Rect, p.area->Bounds());
}

TEST(PageDrawing, ALockedTuneHasNoMarginHatchAndNoFrames)
{
    PageWithArea p;
    testing::RecordingView view;
    Session().Locked = true;
    testing::RecordingPainter painter;
    p.page.Draw(painter, OutputMode::Screen);
    Session().Locked = false;
    EXPECT_TRUE(painter.Of(Kind::FillPath).empty());
    EXPECT_TRUE(painter.Of(Kind::Rect).size() == 1u); // the paper outline only
}

TEST(PageDrawing, AreasAreFramedOnTheScreenOnly)
{
    PageWithArea p;
    testing::RecordingView view;
    view.Enclosing = p.area;
    p.area->SetSelected(true);
    testing::RecordingPainter painter;
    p.area->Draw(painter, OutputMode::Screen);
    const auto frames = painter.Of(Kind::Rect);
    ASSERT_EQ(frames.size(), 1u);
    EXPECT_EQ(frames[0].Stroke.Dash, DashStyle::Dash);
    EXPECT_EQ(frames[0].Stroke.Argb, 0xFF0000FFu);
    EXPECT_FLOAT_EQ(frames[0].Stroke.Width, painter.PixelsToInches(2));
    EXPECT_EQ(painter.Of(Kind::FillRect).size(), 1u + CPageArea::HandleCount);

    view.Enclosing = nullptr;
    painter.Clear();
    p.area->Draw(painter, OutputMode::Screen);
    ASSERT_EQ(painter.Of(Kind::Rect).size(), 1u);
    EXPECT_EQ(painter.Of(Kind::Rect)[0].Stroke.Dash, DashStyle::Dot);

    view.Idle = false; // printing
    painter.Clear();
    p.area->Draw(painter, OutputMode::Printer);
    EXPECT_TRUE(painter.Of(Kind::Rect).empty());
}

} // namespace
} // namespace corrieval
