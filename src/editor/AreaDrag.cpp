#include "editor/AreaDrag.h"

#include "model/PageArea.h"

#include <utility>

namespace corrieval {

AreaDrag::AreaDrag(CPageArea& area, int handle, PointF start, std::function<void()> changed)
    : m_area(area), m_handle(handle), m_grab{start.X - area.Bounds().X, start.Y - area.Bounds().Y},
      m_changed(std::move(changed))
{
}

void AreaDrag::Move(PointF at)
{
    const RectF now = m_area.Bounds();
    // The grab point moves with the area, so it is handed over as it stands now.
    m_area.SetBounds(m_handle == CPageArea::Border
                         ? m_area.MovedBounds(now.X + m_grab.X, now.Y + m_grab.Y, at.X, at.Y)
                         : m_area.ResizedBounds(m_handle, at.X, at.Y));
    m_changed();
}

} // namespace corrieval
