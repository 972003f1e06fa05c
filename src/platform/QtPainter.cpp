#include "platform/QtPainter.h"

#include <QFont>
#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cassert>
#include <cmath>

namespace corrieval::platform {

namespace {

// Qt's raster engine and font engines work in 16-bit pixel ranges; text beyond is no text.
constexpr float kLargestTextPixels = 32767.0f;

QColor ToQColor(std::uint32_t argb)
{
    return QColor::fromRgba(argb);
}

QRectF ToQRect(const RectF& r)
{
    return QRectF(r.X, r.Y, r.Width, r.Height).normalized();
}

RectF ToRectF(const QRectF& r)
{
    return {static_cast<float>(r.x()), static_cast<float>(r.y()), static_cast<float>(r.width()),
            static_cast<float>(r.height())};
}

// One ink dot in five, spread evenly: the twenty percent hatch that shades the page margins.
constexpr int kHatchPeriod = 5;

QImage HatchTile(std::uint32_t fore, std::uint32_t back)
{
    QImage tile(kHatchPeriod, kHatchPeriod, QImage::Format_ARGB32_Premultiplied);
    tile.fill(ToQColor(back));
    for (int y = 0; y < kHatchPeriod; ++y)
        tile.setPixelColor((2 * y) % kHatchPeriod, y, ToQColor(fore));
    return tile;
}

// The colour that the hatch averages to, a fifth of the way from the background to the ink.
QColor HatchTone(std::uint32_t fore, std::uint32_t back)
{
    const auto mix = [](int f, int b) {
        return (f + (kHatchPeriod - 1) * b + kHatchPeriod / 2) / kHatchPeriod;
    };
    const QColor f = ToQColor(fore);
    const QColor b = ToQColor(back);
    return QColor(mix(f.red(), b.red()), mix(f.green(), b.green()), mix(f.blue(), b.blue()),
                  mix(f.alpha(), b.alpha()));
}

} // namespace

Qt::Alignment ToAlignment(TextAlign horizontal, TextAlign vertical)
{
    Qt::Alignment flags;
    switch (horizontal) {
    case TextAlign::Near: flags |= Qt::AlignLeft; break;
    case TextAlign::Centre: flags |= Qt::AlignHCenter; break;
    case TextAlign::Far: flags |= Qt::AlignRight; break;
    }
    switch (vertical) {
    case TextAlign::Near: flags |= Qt::AlignTop; break;
    case TextAlign::Centre: flags |= Qt::AlignVCenter; break;
    case TextAlign::Far: flags |= Qt::AlignBottom; break;
    }
    return flags;
}

QFont ToQFont(const TextFont& font, int pixelSize)
{
    QFont qfont(font.Family);
    qfont.setStyleHint(QFont::SansSerif);
    qfont.setPixelSize(std::max(1, pixelSize));
    qfont.setWeight(static_cast<QFont::Weight>(std::clamp(font.Weight, 1, 1000)));
    qfont.setItalic(font.Italic);
    qfont.setUnderline(font.Underline);
    qfont.setStrikeOut(font.StrikeOut);
    return qfont;
}

QtPainter::QtPainter(QPainter& painter, float dpi, float zoom, PointF origin)
    : m_painter(painter), m_zoom(zoom), m_scale(dpi * zoom), m_pixels(painter.worldTransform())
{
    assert(painter.isActive() && m_scale > 0);
    m_painter.save();
    m_inches = QTransform::fromTranslate(-origin.X, -origin.Y) * QTransform::fromScale(m_scale, m_scale);

    const QPaintDevice* device = painter.device();
    QRectF visible = m_pixels.inverted().mapRect(QRectF(0, 0, device->width(), device->height()));
    if (painter.hasClipping())
        visible &= painter.clipBoundingRect();
    m_visible = ToRectF(m_inches.inverted().mapRect(visible));

    m_painter.setWorldTransform(m_inches * m_pixels);
    // Outlines start sharp, as the stave lines want them; text is always smoothed.
    m_painter.setRenderHint(QPainter::Antialiasing, false);
    m_painter.setRenderHint(QPainter::TextAntialiasing, true);
    m_painter.setRenderHint(QPainter::SmoothPixmapTransform, true);
}

QtPainter::~QtPainter()
{
    m_painter.restore();
}

bool QtPainter::IsVisible(const RectF& rect) const
{
    // Strict overlap still lets a line (a rectangle of no height or width) inside the surface
    // through, while a page that only touches the surface's edge stays out.
    return ToRectF(ToQRect(rect)).Overlaps(m_visible);
}

float QtPainter::PixelsToInches(float pixels) const
{
    return pixels / m_scale;
}

void QtPainter::SetSmoothing(bool on)
{
    m_painter.setRenderHint(QPainter::Antialiasing, on);
}

QPen QtPainter::ToQPen(const Pen& pen) const
{
    QPen q(ToQColor(pen.Argb), pen.Width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
    // Dashes are counted in pen widths, three on and one off, dots one on and one off.
    switch (pen.Dash) {
    case DashStyle::Solid: break;
    case DashStyle::Dash: q.setDashPattern({3, 1}); break;
    case DashStyle::Dot: q.setDashPattern({1, 1}); break;
    }
    return q;
}

QBrush QtPainter::ToQBrush(const Brush& brush) const
{
    if (brush.Kind == Brush::Style::Solid)
        return QBrush(ToQColor(brush.Fore));
    // Qt's SVG writer drops brushes of tiled images: there the hatch becomes its average tone.
    if (m_painter.paintEngine()->type() == QPaintEngine::SVG)
        return QBrush(HatchTone(brush.Fore, brush.Back));
    // The hatch is a pattern of device pixels whatever the zoom, so its tile is scaled back
    // from inches to pixels.
    QBrush hatch(HatchTile(brush.Fore, brush.Back));
    hatch.setTransform(QTransform::fromScale(1.0 / m_scale, 1.0 / m_scale));
    return hatch;
}

void QtPainter::DrawLine(float x1, float y1, float x2, float y2, const Pen& pen)
{
    m_painter.setPen(ToQPen(pen));
    m_painter.drawLine(QLineF(x1, y1, x2, y2));
}

void QtPainter::DrawRect(const RectF& rect, const Pen& pen)
{
    QRectF r = ToQRect(rect);
    if (pen.Inset) {
        // Centred on a rectangle shrunk by half the pen, the stroke stays inside the outline.
        const qreal half = std::min({qreal(pen.Width) / 2, r.width() / 2, r.height() / 2});
        r.adjust(half, half, -half, -half);
    }
    m_painter.setPen(ToQPen(pen));
    m_painter.setBrush(Qt::NoBrush);
    m_painter.drawRect(r);
}

void QtPainter::FillRect(const RectF& rect, const Brush& brush)
{
    m_painter.fillRect(ToQRect(rect), ToQBrush(brush));
}

void QtPainter::FillEllipse(const RectF& rect, const Brush& brush)
{
    m_painter.setPen(Qt::NoPen);
    m_painter.setBrush(ToQBrush(brush));
    m_painter.drawEllipse(ToQRect(rect));
}

void QtPainter::StrokePath(const QPainterPath& path, const Pen& pen)
{
    m_painter.strokePath(path, ToQPen(pen));
}

void QtPainter::FillPath(const QPainterPath& path, const Brush& brush)
{
    m_painter.fillPath(path, ToQBrush(brush));
}

void QtPainter::DrawText(const QString& text, const TextFont& font, const RectF& layout, TextAlign horizontal,
                         TextAlign vertical, std::uint32_t argb)
{
    // Qt rounds font sizes to whole units of the coordinate system, so a font of 0.1 "inches"
    // would become 0 or 1. Text is laid out in device pixels instead, with a font of the
    // height in pixels.
    const float pixels = std::min(font.Height * m_scale, kLargestTextPixels);
    if (text.isEmpty() || !(pixels >= 0.5f))
        return;
    const QFont qfont = ToQFont(font, static_cast<int>(std::lround(pixels)));

    int flags = ToAlignment(horizontal, vertical);
    // A box without width or height only anchors the text: no wrapping, no clipping.
    if (layout.Width > 0 && layout.Height > 0)
        flags |= Qt::TextWordWrap;
    else
        flags |= Qt::TextDontClip;

    m_painter.save();
    m_painter.setWorldTransform(m_pixels);
    m_painter.setFont(qfont);
    m_painter.setPen(ToQColor(argb));
    m_painter.drawText(m_inches.mapRect(ToQRect(layout)), flags, text);
    m_painter.restore();
}

void QtPainter::DrawImage(const QImage& image, const RectF& target)
{
    if (!image.isNull())
        m_painter.drawImage(ToQRect(target), image);
}

} // namespace corrieval::platform
