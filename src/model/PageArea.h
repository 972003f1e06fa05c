#pragma once

#include "model/GraphObjContainer.h"

#include <array>
#include <memory>

namespace corrieval {

// A free rectangle on a page that can be placed, sized and stacked by hand: what music, text,
// image and abbreviation areas have in common. None of its own fields is stored in the file.
class CPageArea : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    // Handles 0-3 are the corners clockwise from the top left, 4-7 the edge centres clockwise
    // from the top; Border is the band inside the edge that moves the whole area.
    enum Handle : int { NoHandle = -1, Border = 8 };
    static constexpr int HandleCount = 8;
    static constexpr float BorderBand = 0.03f;
    // The inset of text and picture areas.
    static constexpr float FreeAreaMargin = 0.03f;

    CPageArea();
    CPageArea(const CPageArea& other);

    bool IsSelectable() const override { return true; }
    bool IsAreaItem() const override { return true; }

    // A copy of the area with its content; null for areas that cannot be copied.
    virtual std::unique_ptr<CPageArea> Clone() const { return nullptr; }

    // The handle under the point as the handles were last drawn, the border band, or NoHandle.
    int HitHandle(float x, float y) const;
    // The rectangle after dragging `handle` to the point, kept inside the parent's content box
    // and no smaller than the minimum size (or the present size, if that is smaller already).
    RectF ResizedBounds(int handle, float x, float y) const;
    // The rectangle after dragging the whole area so that the grab point follows the mouse,
    // kept wholly inside the parent's content box.
    RectF MovedBounds(float grabX, float grabY, float x, float y) const;
    void ComputeHandles();

    // Fills itself white, so that it hides what lies beneath, then frames itself on the screen.
    void Draw(Painter& painter, OutputMode mode) override;

    float MinimumWidth = 2.0f;
    float MinimumHeight = 0.2f;
    std::array<RectF, HandleCount> Handles{};
    float FrameWidth = 0;
    float HandleSize = 0;

protected:
    RectF LimitBox() const;
};

} // namespace corrieval
