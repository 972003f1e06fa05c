#include "editor/PrintLayout.h"

#include "editor/ViewTransform.h"
#include "model/CorrievalDoc.h"
#include "model/TunePage.h"
#include "platform/QtPainter.h"

#include <QPageSize>
#include <QPainter>
#include <QPrinter>
#include <algorithm>

namespace corrieval {

PrintPlacement PlacePage(const RectF& pageBounds, float dpiX, float drawWidth, OutputMode mode)
{
    PrintPlacement placement;
    placement.Printable = {pageBounds.X + PrintInset, pageBounds.Y + PrintInset,
                           pageBounds.Width - 2 * PrintInset, pageBounds.Height - 2 * PrintInset};
    // Paper is measured without the view's zoom: a transform of no client area has no centring.
    ViewTransform paper;
    paper.DpiX = dpiX;
    const QPointF left = paper.DocumentToDevice({placement.Printable.X, 0}, false, false);
    const QPointF right = paper.DocumentToDevice({placement.Printable.Right(), 0}, false, false);
    placement.DeviceWidth = static_cast<float>(right.x() - left.x());
    if (mode == OutputMode::PrintPreview && placement.DeviceWidth > 0)
        placement.Scale = drawWidth / placement.DeviceWidth;
    placement.Origin = {pageBounds.X - PrintInset, pageBounds.Y - PrintInset};
    return placement;
}

QPageLayout::Orientation PrintOrientation(const CCorrievalDoc& doc)
{
    return doc.PageHeight > doc.PageWidth ? QPageLayout::Portrait : QPageLayout::Landscape;
}

void PreparePrinter(QPrinter& printer, const CCorrievalDoc& doc)
{
    printer.setPageOrientation(PrintOrientation(doc));
    printer.setPageSize(QPageSize(QPageSize::A4));
}

void PrintPages(QPrinter& printer, CCorrievalDoc& doc, OutputMode mode)
{
    const int count = static_cast<int>(doc.Pages.size());
    const int from = printer.fromPage() > 0 ? printer.fromPage() : 1;
    const int to = printer.toPage() > 0 ? std::min(printer.toPage(), count) : count;
    if (from > to)
        return;
    QPainter painter(&printer);
    if (!painter.isActive())
        return;
    const float dpi = static_cast<float>(printer.resolution());
    const float drawWidth =
        static_cast<float>(printer.pageLayout().paintRectPixels(printer.resolution()).width());
    for (int n = from; n <= to; ++n) {
        if (n > from)
            printer.newPage();
        CTunePage& page = *doc.Pages[static_cast<std::size_t>(n - 1)];
        const PrintPlacement placement = PlacePage(page.Bounds(), dpi, drawWidth, mode);
        platform::QtPainter inches(painter, dpi, placement.Scale, placement.Origin);
        // The clip goes on after the QtPainter has set its transform, so it is given in inches.
        const RectF& clip = placement.Printable;
        painter.setClipRect(QRectF(clip.X, clip.Y, clip.Width, clip.Height));
        page.DrawIfVisible(inches, mode);
    }
}

} // namespace corrieval
