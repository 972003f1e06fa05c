#pragma once

#include "model/GraphObjContainer.h"

#include <array>
#include <cstdint>

namespace corrieval {

// What single notes, beamed groups and movements have in common: they sit in bars, are selected
// by their drawn shape rather than their rectangle, and draw in their current colour.
class CNoteBase : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    bool IsSelectable() const override { return true; }
    bool IsNoteItem() const override { return true; }

    // Whether the point lies on the drawn shape of the item.
    virtual bool HitTestNote(float x, float y) const = 0;
    // Whether the drawn shape lies wholly inside the rectangle.
    virtual bool IsWithin(float x, float y, float width, float height) const = 0;

    // Width of the item as placed; below 0.001 callers fall back on GetDefaultWidth.
    virtual float GetWidth() const { return Bounds().Width; }
    virtual float GetDefaultWidth() const { return Bounds().Height * 0.125f; }

    bool Pasted = false;
    // Current drawing colour first, then the colours it switches between.
    std::array<std::uint32_t, 4> Colours{0xFF000000, 0xFF008000, 0xFFA52A2A, 0xFF000000};
};

} // namespace corrieval
