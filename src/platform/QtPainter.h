#pragma once

#include "model/Painter.h"

#include <QBrush>
#include <QFont>
#include <QPen>
#include <QTransform>

class QPainter;

namespace corrieval::platform {

// The Qt font of a score's text font at `pixelSize` pixels high; a face that this machine lacks
// falls to the generic sans-serif family.
QFont ToQFont(const TextFont& font, int pixelSize);
// Qt's alignment flags for a box's horizontal and vertical alignment.
Qt::Alignment ToAlignment(TextAlign horizontal, TextAlign vertical);

// The score's painter over a QPainter: inches in document space become device pixels through the
// QPainter's transform, scaled by the device's resolution times the zoom and shifted so that
// `origin` (a point in document inches) lands on the device's top left corner. A page at
// document Y 11.7 is drawn on its own PDF or PNG page by giving origin (0, 11.7).
//
// The QPainter's state is saved on construction and restored on destruction; the QPainter must
// be active and outlive this object.
class QtPainter : public Painter {
public:
    QtPainter(QPainter& painter, float dpi, float zoom, PointF origin = {});
    QtPainter(const QtPainter&) = delete;
    QtPainter& operator=(const QtPainter&) = delete;
    ~QtPainter() override;

    bool IsVisible(const RectF& rect) const override;
    float PixelsToInches(float pixels) const override;
    float Zoom() const override { return m_zoom; }

    void SetSmoothing(bool on) override;
    void DrawLine(float x1, float y1, float x2, float y2, const Pen& pen) override;
    void DrawRect(const RectF& rect, const Pen& pen) override;
    void FillRect(const RectF& rect, const Brush& brush) override;
    void FillEllipse(const RectF& rect, const Brush& brush) override;
    void StrokePath(const QPainterPath& path, const Pen& pen) override;
    void FillPath(const QPainterPath& path, const Brush& brush) override;
    void DrawText(const QString& text, const TextFont& font, const RectF& layout, TextAlign horizontal,
                  TextAlign vertical, std::uint32_t argb) override;
    void DrawImage(const QImage& image, const RectF& target) override;

private:
    QPen ToQPen(const Pen& pen) const;
    QBrush ToQBrush(const Brush& brush) const;

    QPainter& m_painter;
    float m_zoom;
    float m_scale;       // device pixels per document inch
    QTransform m_pixels; // the QPainter's transform as it was given: device pixels
    QTransform m_inches; // document inches to device pixels
    RectF m_visible;     // the device's visible rectangle in document inches
};

} // namespace corrieval::platform
