#pragma once

#include "model/Painter.h"

#include <QImage>
#include <QString>
#include <QStringList>

#include <optional>

namespace corrieval {
class CCorrievalDoc;
class CTunePage;
} // namespace corrieval

namespace corrieval::platform {

// The files a tune's pages can be drawn into: one PDF holds every page; SVG and PNG take a file
// per page.
enum class PageFormat { Pdf, Svg, Png };

// The format that a file name asks for by its extension, if any.
std::optional<PageFormat> PageFormatOfFile(const QString& path);

struct PageExportOptions {
    // Screen shows the paper with its shadow and margins; Printer draws the music alone.
    OutputMode Mode = OutputMode::Screen;
    // Pixels per inch of PNG files. PDF and SVG are drawn finer, at VectorDpi.
    int Dpi = 150;
};

// Resolution of the device units of PDF and SVG output: fine enough that text sizes, which fonts
// round to whole units, come out true.
inline constexpr int VectorDpi = 1200;

// The names that the pages of a tune take: `path` itself for a single page or a PDF, otherwise
// NAME-1.EXT, NAME-2.EXT, ... beside it.
QStringList PageFileNames(const QString& path, PageFormat format, int pageCount);

// Draws one page of the tune's paper size on white at `dpi`, the page's top left corner at the
// image's. A null image when the page is too large for an image at that resolution.
QImage RenderPageImage(const CCorrievalDoc& doc, CTunePage& page, int dpi, OutputMode mode);

// Draws every page of the tune into `path` in the given format and returns the files written.
// Each file is written beside its final name and renamed into place only when all pages are
// done, so a failure leaves no new file behind and old files as they were. Throws FileError
// naming the file that could not be written, or `path` for a tune that cannot be drawn.
QStringList ExportPages(CCorrievalDoc& doc, const QString& path, PageFormat format,
                        const PageExportOptions& options = {});

} // namespace corrieval::platform
