#include "editor/RubberBand.h"

#include <algorithm>
#include <utility>

namespace corrieval {

RubberBand::RubberBand(PointF start, const RectF& limit, std::function<void(const RectF&)> repaint,
                       std::function<void(const RectF&)> ended)
    : m_start(start), m_corner(start), m_limit(limit), m_repaint(std::move(repaint)),
      m_ended(std::move(ended))
{
}

void RubberBand::Move(PointF at)
{
    m_repaint(Band());
    m_corner = {std::clamp(at.X, m_limit.X, m_limit.Right()), std::clamp(at.Y, m_limit.Y, m_limit.Bottom())};
    m_repaint(Band());
}

void RubberBand::Finish()
{
    m_repaint(Band());
    m_ended(Band());
}

RectF RubberBand::Band() const
{
    return {std::min(m_start.X, m_corner.X), std::min(m_start.Y, m_corner.Y),
            std::abs(m_corner.X - m_start.X), std::abs(m_corner.Y - m_start.Y)};
}

} // namespace corrieval
