#pragma once

#include "editor/MouseDrag.h"

#include <functional>

namespace corrieval {

// The rectangle dragged out from a press on a page, to select what lies in it or to give a new
// area its place. The far corner stays on the page's content. The view draws the band as a
// dashed rectangle while it runs.
class RubberBand : public MouseDrag {
public:
    // `repaint` is told the rectangle to redraw, before and after each step; `ended` receives
    // the band when the drag ends, however it ended.
    RubberBand(PointF start, const RectF& limit, std::function<void(const RectF&)> repaint,
               std::function<void(const RectF&)> ended);

    void Move(PointF at) override;
    void Finish() override;

    // The band as it stands, of positive or no size.
    RectF Band() const;

private:
    PointF m_start;
    PointF m_corner;
    RectF m_limit;
    std::function<void(const RectF&)> m_repaint;
    std::function<void(const RectF&)> m_ended;
};

} // namespace corrieval
