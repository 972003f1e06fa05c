#pragma once

#include "model/Geometry.h"
#include "model/Painter.h"

#include <QPageLayout>

class QPrinter;

namespace corrieval {

class CCorrievalDoc;

// Where one page of the tune goes on paper: the printer's origin sits at the corner of its
// printable area, and the page is drawn 0.105 inch in from there, clipped to its own rectangle
// less 0.105 inch on each side, so that the printer's unprintable edge never cuts the music.
struct PrintPlacement {
    RectF Printable;       // document inches: the part of the page that is drawn
    float DeviceWidth = 0; // the printable width in printer pixels, before the scale
    float Scale = 1.0f;    // the page scale: 1 on paper, fitted to the preview's page
    PointF Origin;         // the document point that lands on the printer's origin
};

inline constexpr float PrintInset = 0.105f; // inches

// The placement of a page with `pageBounds` on a printer of `dpiX` whose printable area is
// `drawWidth` pixels wide. A preview shrinks or grows the page to that width; real printing draws
// it at its size.
PrintPlacement PlacePage(const RectF& pageBounds, float dpiX, float drawWidth, OutputMode mode);

// Portrait when the tune's pages are taller than wide, else landscape.
QPageLayout::Orientation PrintOrientation(const CCorrievalDoc& doc);

// Sets the printer to the orientation of the tune's pages and to A4 paper, whatever size the
// pages have: tunes are printed on A4 by the pipers this program is made for, and the placement
// above fits any page of that size or smaller.
void PreparePrinter(QPrinter& printer, const CCorrievalDoc& doc);

// Draws the pages of the printer's page range (all when it has none) onto the printer, a printer
// page each, in `mode`.
void PrintPages(QPrinter& printer, CCorrievalDoc& doc, OutputMode mode);

} // namespace corrieval
