#pragma once

#include "model/Geometry.h"

#include <QPoint>
#include <QPointF>
#include <QRect>
#include <QSize>
#include <optional>

namespace corrieval {

// The map between the score view's device pixels and the document's inches, for one state of
// the view: its resolution, zoom, client size, scroll position and the document's extent. A
// document narrower or shorter than the client area is centred in it; a larger one starts at the
// top left corner, because the centring offset never goes negative.
//
// Device points are logical pixels of the viewport. The state changes with every resize, zoom
// and scroll, so the view builds a fresh transform whenever it converts.
class ViewTransform {
public:
    static constexpr float MinZoom = 0.5f;
    static constexpr float MaxZoom = 3.0f;

    float DpiX = 96;
    float DpiY = 96;
    float Zoom = 1.0f;
    QSize Client;            // pixels
    QPoint Scroll;           // pixels
    float DocumentWidth = 0; // inches
    float DocumentHeight = 0;

    // The centring translation in inches, before the zoom.
    PointF Offset() const;
    // The scrollable extent of the zoomed document in pixels.
    QSize Extent() const;

    // A device point, counted from the scrolled client's corner unless `pageRelative` says it
    // already counts from the document's unscrolled origin.
    PointF DeviceToDocument(QPointF device, bool pageRelative = false) const;
    // The device point of a document point; `scrolled` false counts from the unscrolled origin,
    // `scaled` false leaves the zoom and the centring out, as printing measures paper.
    QPointF DocumentToDevice(PointF point, bool scrolled = true, bool scaled = true) const;
    RectF DeviceRectToDocument(QPoint a, QPoint b, bool pageRelative = false) const;
    // The smallest pixel rectangle that covers `rect`, for invalidation.
    QRect DocumentRectToDevice(const RectF& rect) const;

    // The zoom at which a document `documentWidth` inches wide fills `clientWidth` pixels,
    // clamped to the zoom range; 1.0 for a document of no width.
    static float FitToWidth(int clientWidth, float dpiX, float documentWidth);
    // The vertical scroll position that brings `y` inches into view, keeping a fifth of the
    // client height above it, or nothing while it already stands clear of the bottom fifth.
    std::optional<int> KeepInView(float y) const;
};

// The rectangle that an object's change dirties: its bounds grown by 0.1 inch on each side, so
// that stems, flags and handles reaching out of the bounds are repainted with it.
RectF InvalidationBounds(const RectF& bounds);

} // namespace corrieval
