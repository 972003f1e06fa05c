#pragma once

#include "editor/MouseDrag.h"

#include <functional>

namespace corrieval {

class CPageArea;

// Moves an area by its border or sizes it by one of its eight handles. The area itself follows
// the mouse, kept inside its page and no smaller than its minimum size.
class AreaDrag : public MouseDrag {
public:
    // `handle` as CPageArea::HitHandle gives it; `start` is where the button went down.
    // `changed` runs after each step, to repaint.
    AreaDrag(CPageArea& area, int handle, PointF start, std::function<void()> changed);

    void Move(PointF at) override;

private:
    CPageArea& m_area;
    int m_handle;
    PointF m_grab; // the grab point less the area's corner
    std::function<void()> m_changed;
};

} // namespace corrieval
