#include "model/PageArea.h"

#include "model/ActiveView.h"
#include "model/SessionState.h"

#include <algorithm>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CPageArea, CGraphObjContainer);

namespace {
constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kEnclosingFrame = 0xFF0000FF;
constexpr std::uint32_t kOtherFrame = 0xFFE6E6E6;
constexpr std::uint32_t kHandleFill = 0xFF505050;

// Which edges a handle moves.
struct HandleEdges {
    bool Left, Top, Right, Bottom;
};
constexpr HandleEdges kEdges[CPageArea::HandleCount] = {
    {true, true, false, false},  {false, true, true, false}, {false, false, true, true}, {true, false, false, true},
    {false, true, false, false}, {false, false, true, false}, {false, false, false, true}, {true, false, false, false},
};
} // namespace

CPageArea::CPageArea()
{
    LeftMargin = 0.04f;
    RightMargin = 0.04f;
}

// The rectangle and margins are the deriving class's business.
CPageArea::CPageArea(const CPageArea& other)
    : CGraphObjContainer(), MinimumWidth(other.MinimumWidth), MinimumHeight(other.MinimumHeight),
      FrameWidth(other.FrameWidth)
{
}

void CPageArea::ComputeHandles()
{
    const RectF b = Bounds();
    const float s = HandleSize;
    const float xs[3] = {b.X, b.X + b.Width / 2, b.Right()};
    const float ys[3] = {b.Y, b.Y + b.Height / 2, b.Bottom()};
    // Corners clockwise from the top left, then edge centres clockwise from the top.
    const int at[HandleCount][2] = {{0, 0}, {2, 0}, {2, 2}, {0, 2}, {1, 0}, {2, 1}, {1, 2}, {0, 1}};
    for (int i = 0; i < HandleCount; ++i)
        Handles[i] = {xs[at[i][0]] - s / 2, ys[at[i][1]] - s / 2, s, s};
}

int CPageArea::HitHandle(float x, float y) const
{
    for (int i = 0; i < HandleCount; ++i) {
        if (Handles[i].Contains(x, y))
            return i;
    }
    const RectF b = Bounds();
    const RectF inner{b.X + BorderBand, b.Y + BorderBand, b.Width - 2 * BorderBand, b.Height - 2 * BorderBand};
    return b.Contains(x, y) && !inner.Contains(x, y) ? Border : NoHandle;
}

RectF CPageArea::LimitBox() const
{
    return Parent() != nullptr ? Parent()->ContentBox() : Bounds();
}

RectF CPageArea::ResizedBounds(int handle, float x, float y) const
{
    const RectF b = Bounds();
    if (handle < 0 || handle >= HandleCount)
        return b;
    const RectF limit = LimitBox();
    x = std::min(std::max(x, limit.X), limit.Right());
    y = std::min(std::max(y, limit.Y), limit.Bottom());
    // An area that is already below its minimum is not forced to grow.
    const float minW = std::min(MinimumWidth, b.Width);
    const float minH = std::min(MinimumHeight, b.Height);

    RectF r = b;
    const HandleEdges& e = kEdges[handle];
    if (e.Left) {
        r.X = x;
        r.Width = b.Right() - x;
        if (r.Width < minW) {
            r.Width = minW;
            r.X = b.Right() - minW;
        }
    }
    if (e.Right) {
        r.Width = std::max(x - b.X, minW);
    }
    if (e.Top) {
        r.Y = y;
        r.Height = b.Bottom() - y;
        if (r.Height < minH) {
            r.Height = minH;
            r.Y = b.Bottom() - minH;
        }
    }
    if (e.Bottom) {
        r.Height = std::max(y - b.Y, minH);
    }
    return r;
}

RectF CPageArea::MovedBounds(float grabX, float grabY, float x, float y) const
{
    const RectF b = Bounds();
    const RectF limit = LimitBox();
    RectF r = b;
    r.X = std::max(x - (grabX - b.X), limit.X);
    r.Y = std::max(y - (grabY - b.Y), limit.Y);
    if (r.Right() > limit.Right())
        r.X = limit.Right() - r.Width;
    if (r.Bottom() > limit.Bottom())
        r.Y = limit.Bottom() - r.Height;
    return r;
}

void CPageArea::Draw(Painter& painter, OutputMode mode)
{
    painter.FillRect(Bounds(), Brush::Solid(kWhite));
    // Frames and handles keep their size on the screen at any zoom.
    FrameWidth = painter.PixelsToInches(2);
    HandleSize = painter.PixelsToInches(4);

    const ScoreView* view = ActiveView();
    if (!Session().Locked && view != nullptr && view->PrintIdle()) {
        if (view->EnclosingArea() == this) {
            painter.DrawRect(Bounds(), Pen{kEnclosingFrame, FrameWidth, DashStyle::Dash});
            if (Selected()) {
                ComputeHandles();
                for (const RectF& handle : Handles)
                    painter.FillRect(handle, Brush::Solid(kHandleFill));
            }
        } else {
            painter.DrawRect(Bounds(), Pen{kOtherFrame, FrameWidth, DashStyle::Dot});
        }
    }
    CGraphObjContainer::Draw(painter, mode);
}

} // namespace corrieval
