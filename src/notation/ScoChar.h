#pragma once

#include "model/Geometry.h"
#include "model/Object.h"

#include <QPainterPath>

#include <cstdint>

namespace corrieval {

class Painter;

// One symbol of the music font: a character code, 0 for none, and whether the outline is turned
// half round about the centre of its box.
class CScoChar : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    CScoChar() = default;
    explicit CScoChar(char16_t code) : Code(code) {}
    CScoChar(const CScoChar&) = default;
    CScoChar& operator=(const CScoChar& other)
    {
        Code = other.Code;
        Flip = other.Flip;
        return *this;
    }

    // Stored codes lose the flip: nothing in the score is drawn turned.
    void SetCode(char16_t code)
    {
        Code = code;
        Flip = false;
    }

    // Adds the outline, fitted to the box, to `path` and returns the width that stems, beams and
    // the note's head rectangle are placed by. The box height is the stave gap of the caller.
    float AddToPath(QPainterPath& path, const RectF& box) const;
    // The glyph's advance, in inches, when drawn in a box of this height; 0 while the music font
    // is not loaded.
    float Advance(float boxHeight) const;
    // Fills the outline fitted to the box in the colour, with smoothing, then smoothing off.
    void DrawGlyph(Painter& painter, const RectF& box, std::uint32_t argb) const;

    char16_t Code = 0;
    bool Flip = false;
};

} // namespace corrieval
