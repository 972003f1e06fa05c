#pragma once

namespace corrieval {

class CBarEx;

// The bar under a point of the document that the active view shows; null without a view or
// when no bar is there. Dragging notes asks this.
CBarEx* BarUnderPoint(float x, float y);

} // namespace corrieval
