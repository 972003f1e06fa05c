#pragma once

#include "model/GraphObjContainer.h"

#include <QPainterPath>

#include <array>
#include <cstdint>
#include <memory>

namespace corrieval {

// What single notes, beamed groups and movements have in common: they sit in bars, are selected
// by their drawn shape rather than their rectangle, and draw in their current colour.
class CNoteBase : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    static constexpr std::uint32_t SelectedColour = 0xFF0000FF;
    static constexpr std::uint32_t PlainColour = 0xFF000000;

    CNoteBase() = default;
    // A copy holds copies of the children, each made by its own Clone.
    CNoteBase(const CNoteBase& other);

    bool IsSelectable() const override { return true; }
    bool IsNoteItem() const override { return true; }
    void OnSelectionChanged(bool selected) override;

    // Whether the point lies on the drawn shape of the item.
    virtual bool HitTestNote(float x, float y) const = 0;
    // Whether the drawn shape lies wholly inside the rectangle; its edges may touch.
    virtual bool IsWithin(float x, float y, float width, float height) const = 0;
    virtual std::unique_ptr<CNoteBase> Clone() const = 0;
    // Moves the dragged item to the bar under the point, a note taking its pitch from the
    // height; returns how far it moved. An item of a group stays in the group's bar.
    PointF DragTo(float x, float y) override;
    virtual void SetColour(std::uint32_t argb) { Colours[0] = argb; }
    // Width of the item as placed; below 0.001 callers fall back on GetDefaultWidth.
    virtual float GetWidth() const { return Bounds().Width; }
    virtual float GetDefaultWidth() const { return Bounds().Height * 0.125f; }

    std::uint32_t Colour() const { return Colours[0]; }
    // The lines of a gallery picture: one pixel of a 32-pixel button, whatever the units.
    static float ToolbarPenWidth(float boxHeight) { return boxHeight / 32; }

protected:
    // Whether a drawn path lies wholly in the rectangle, edges touching; nothing drawn is nowhere.
    static bool PathWithin(const QPainterPath& path, const RectF& rect);

public:

    bool Pasted = false;
    // The current drawing colour first, then the colours it switches between.
    std::array<std::uint32_t, 4> Colours{PlainColour, 0xFF008000, 0xFFA52A2A, PlainColour};
};

} // namespace corrieval
