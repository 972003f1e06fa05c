#include "editor/ViewTransform.h"

#include <algorithm>
#include <cmath>

namespace corrieval {

namespace {
constexpr float kInvalidationGrowth = 0.1f; // inches
// Keep in view leaves this fraction of the client height between the play position and the
// bottom edge, and scrolls so that the same space stands above it.
constexpr int kKeepInViewFraction = 5;
} // namespace

PointF ViewTransform::Offset() const
{
    return {std::max(0.0f, (Client.width() / DpiX / Zoom - DocumentWidth) * 0.5f),
            std::max(0.0f, (Client.height() / DpiY / Zoom - DocumentHeight) * 0.5f)};
}

QSize ViewTransform::Extent() const
{
    return {static_cast<int>(DpiX * DocumentWidth * Zoom), static_cast<int>(DpiY * DocumentHeight * Zoom)};
}

PointF ViewTransform::DeviceToDocument(QPointF device, bool pageRelative) const
{
    if (!pageRelative)
        device += Scroll;
    const PointF offset = Offset();
    return {static_cast<float>(device.x() / (DpiX * Zoom)) - offset.X,
            static_cast<float>(device.y() / (DpiY * Zoom)) - offset.Y};
}

QPointF ViewTransform::DocumentToDevice(PointF point, bool scrolled, bool scaled) const
{
    QPointF device(point.X * DpiX, point.Y * DpiY);
    if (scaled) {
        const PointF offset = Offset();
        device = QPointF((point.X + offset.X) * DpiX * Zoom, (point.Y + offset.Y) * DpiY * Zoom);
    }
    if (scrolled)
        device -= Scroll;
    return device;
}

RectF ViewTransform::DeviceRectToDocument(QPoint a, QPoint b, bool pageRelative) const
{
    const PointF p = DeviceToDocument(a, pageRelative);
    const PointF q = DeviceToDocument(b, pageRelative);
    return {std::min(p.X, q.X), std::min(p.Y, q.Y), std::abs(q.X - p.X), std::abs(q.Y - p.Y)};
}

QRect ViewTransform::DocumentRectToDevice(const RectF& rect) const
{
    const QPointF a = DocumentToDevice({rect.X, rect.Y});
    const QPointF b = DocumentToDevice({rect.Right(), rect.Bottom()});
    const QPoint topLeft(static_cast<int>(std::floor(std::min(a.x(), b.x()))),
                         static_cast<int>(std::floor(std::min(a.y(), b.y()))));
    const QPoint bottomRight(static_cast<int>(std::ceil(std::max(a.x(), b.x()))),
                             static_cast<int>(std::ceil(std::max(a.y(), b.y()))));
    // QRect's bottom right corner is inclusive.
    return QRect(topLeft, bottomRight - QPoint(1, 1));
}

float ViewTransform::FitToWidth(int clientWidth, float dpiX, float documentWidth)
{
    if (!(documentWidth > 0))
        return 1.0f;
    return std::clamp(clientWidth / (dpiX * documentWidth), MinZoom, MaxZoom);
}

std::optional<int> ViewTransform::KeepInView(float y) const
{
    const float p = DpiY * y * Zoom;
    const int height = Client.height();
    const int margin = height / kKeepInViewFraction;
    if (p > Scroll.y() + height - margin || p < Scroll.y())
        return static_cast<int>(std::max(0.0f, p - margin));
    return std::nullopt;
}

RectF InvalidationBounds(const RectF& bounds)
{
    return {bounds.X - kInvalidationGrowth, bounds.Y - kInvalidationGrowth,
            bounds.Width + 2 * kInvalidationGrowth, bounds.Height + 2 * kInvalidationGrowth};
}

} // namespace corrieval
