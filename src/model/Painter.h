#pragma once

#include "model/Geometry.h"

namespace corrieval {

// How a drawing pass is meant to end up: on the screen with the page furniture, or on paper.
enum class OutputMode { Screen = 0, PrintPreview = 1, Printer = 2 };

// The drawing surface that score objects draw themselves onto, in inches. One back-end forwards to
// QPainter, another records the calls for tests.
class Painter {
public:
    virtual ~Painter() = default;

    // Whether any part of the rectangle can show on the surface; drawing skips what cannot.
    virtual bool IsVisible(const RectF& rect) const = 0;
};

} // namespace corrieval
