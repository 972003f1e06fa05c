#pragma once

namespace corrieval {

// Coordinates of the score are 32-bit floats in inches in one space for the whole document:
// the file stores them as such, and layout must round the same way as the stored values.
struct PointF {
    float X = 0;
    float Y = 0;
    bool operator==(const PointF&) const = default;
};

struct RectF {
    float X = 0;
    float Y = 0;
    float Width = 0;
    float Height = 0;

    float Right() const { return X + Width; }
    float Bottom() const { return Y + Height; }
    // Left and top edges belong to the rectangle, right and bottom edges do not.
    bool Contains(float x, float y) const { return X <= x && x < X + Width && Y <= y && y < Y + Height; }
    // Strict on all four sides: rectangles that only touch do not overlap.
    bool Overlaps(const RectF& o) const
    {
        return X < o.X + o.Width && o.X < X + Width && Y < o.Y + o.Height && o.Y < Y + Height;
    }
    // Lies wholly inside `outer`; the edges may touch.
    bool WithinOrTouching(const RectF& outer) const
    {
        return X >= outer.X && Y >= outer.Y && X + Width <= outer.X + outer.Width && Y + Height <= outer.Y + outer.Height;
    }
    // The smallest rectangle holding both, computed from the edges.
    RectF United(const RectF& o) const
    {
        const float left = X < o.X ? X : o.X;
        const float top = Y < o.Y ? Y : o.Y;
        const float right = Right() > o.Right() ? Right() : o.Right();
        const float bottom = Bottom() > o.Bottom() ? Bottom() : o.Bottom();
        return {left, top, right - left, bottom - top};
    }
    bool operator==(const RectF&) const = default;
};

} // namespace corrieval
