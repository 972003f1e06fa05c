#include "platform/PageExport.h"

#include "formats/score/ScoreFile.h"
#include "model/CorrievalDoc.h"
#include "model/TunePage.h"
#include "platform/QtPainter.h"

#include <QFileInfo>
#include <QPageLayout>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

#include <cmath>
#include <memory>
#include <vector>

namespace corrieval::platform {

namespace {

// PDF cannot hold a larger page, and nothing printed is larger.
constexpr float kLargestPage = 200.0f;
// Qt's raster painting works in 16-bit pixel ranges.
constexpr double kLargestImageSide = 32767.0;

constexpr double kInchesPerMetre = 1.0 / 0.0254;

QString Num(float v)
{
    return QString::number(static_cast<double>(v), 'g', 6);
}

void CheckPageSize(const CCorrievalDoc& doc, const QString& path)
{
    const auto drawable = [](float v) { return std::isfinite(v) && v > 0 && v <= kLargestPage; };
    if (!drawable(doc.PageWidth) || !drawable(doc.PageHeight))
        throw FileError(path, QStringLiteral("cannot draw pages of %1 x %2 inches")
                                  .arg(Num(doc.PageWidth), Num(doc.PageHeight)));
}

PointF Origin(const CTunePage& page)
{
    return {page.Bounds().X, page.Bounds().Y};
}

// The files of one export, each written beside its final name and kept aside until every page
// has been drawn.
class OutputFiles {
public:
    QSaveFile& Open(const QString& name)
    {
        auto& file = *m_files.emplace_back(std::make_unique<QSaveFile>(name));
        if (!file.open(QIODevice::WriteOnly))
            throw FileError(name, file.errorString());
        return file;
    }

    // A file that met a write error fails here. Those not committed are discarded when this
    // object goes.
    void CommitAll()
    {
        for (const auto& file : m_files) {
            if (!file->commit())
                throw FileError(file->fileName(), file->errorString());
        }
    }

private:
    std::vector<std::unique_ptr<QSaveFile>> m_files;
};

void WritePdf(CCorrievalDoc& doc, QSaveFile& file, OutputMode mode)
{
    QPdfWriter writer(&file);
    writer.setResolution(VectorDpi);
    writer.setCreator(QStringLiteral("Corrieval"));
    writer.setTitle(doc.Title());
    // An exact size: a near match would be snapped to the nearest standard paper.
    const QPageSize size(QSizeF(doc.PageWidth, doc.PageHeight), QPageSize::Inch, QString(),
                         QPageSize::ExactMatch);
    writer.setPageLayout(QPageLayout(size, QPageLayout::Portrait, QMarginsF()));

    QPainter painter(&writer);
    for (std::size_t i = 0; i < doc.Pages.size(); ++i) {
        if (i > 0)
            writer.newPage();
        CTunePage& page = *doc.Pages[i];
        QtPainter inches(painter, VectorDpi, 1.0f, Origin(page));
        page.Draw(inches, mode);
    }
    painter.end();
}

void WriteSvg(const CCorrievalDoc& doc, CTunePage& page, QSaveFile& file, OutputMode mode)
{
    const QSize pixels(qRound(doc.PageWidth * VectorDpi), qRound(doc.PageHeight * VectorDpi));
    QSvgGenerator svg;
    svg.setOutputDevice(&file);
    svg.setResolution(VectorDpi);
    svg.setSize(pixels);
    svg.setViewBox(QRect(QPoint(0, 0), pixels));
    svg.setTitle(doc.Title());

    QPainter painter(&svg);
    {
        QtPainter inches(painter, VectorDpi, 1.0f, Origin(page));
        page.Draw(inches, mode);
    }
    painter.end();
}

void WritePng(const CCorrievalDoc& doc, CTunePage& page, QSaveFile& file, const PageExportOptions& options)
{
    const QImage image = RenderPageImage(doc, page, options.Dpi, options.Mode);
    if (image.isNull()) {
        throw FileError(file.fileName(),
                        QStringLiteral("a page of %1 x %2 inches is too large to draw at %3 dpi")
                            .arg(Num(doc.PageWidth), Num(doc.PageHeight))
                            .arg(options.Dpi));
    }
    if (!image.save(&file, "PNG"))
        throw FileError(file.fileName(), file.errorString());
}

} // namespace

std::optional<PageFormat> PageFormatOfFile(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("pdf"))
        return PageFormat::Pdf;
    if (suffix == QLatin1String("svg"))
        return PageFormat::Svg;
    if (suffix == QLatin1String("png"))
        return PageFormat::Png;
    return std::nullopt;
}

QStringList PageFileNames(const QString& path, PageFormat format, int pageCount)
{
    if (format == PageFormat::Pdf || pageCount == 1)
        return {path};
    const QString suffix = QFileInfo(path).suffix();
    const QString stem = suffix.isEmpty() ? path : path.chopped(suffix.size() + 1);
    const QString extension = suffix.isEmpty() ? QString() : QLatin1Char('.') + suffix;
    QStringList names;
    for (int n = 1; n <= pageCount; ++n)
        names << stem + QLatin1Char('-') + QString::number(n) + extension;
    return names;
}

QImage RenderPageImage(const CCorrievalDoc& doc, CTunePage& page, int dpi, OutputMode mode)
{
    const double width = std::round(double(doc.PageWidth) * dpi);
    const double height = std::round(double(doc.PageHeight) * dpi);
    if (!(width >= 1 && height >= 1 && width <= kLargestImageSide && height <= kLargestImageSide))
        return {};
    QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_RGB32);
    if (image.isNull())
        return {};
    image.fill(Qt::white);
    const int dotsPerMetre = qRound(dpi * kInchesPerMetre);
    image.setDotsPerMeterX(dotsPerMetre);
    image.setDotsPerMeterY(dotsPerMetre);

    QPainter painter(&image);
    {
        QtPainter inches(painter, static_cast<float>(dpi), 1.0f, Origin(page));
        page.Draw(inches, mode);
    }
    painter.end();
    return image;
}

QStringList ExportPages(CCorrievalDoc& doc, const QString& path, PageFormat format,
                        const PageExportOptions& options)
{
    if (doc.Pages.empty())
        throw FileError(path, QStringLiteral("the tune has no pages to draw"));
    CheckPageSize(doc, path);

    const QStringList names = PageFileNames(path, format, static_cast<int>(doc.Pages.size()));
    OutputFiles files;
    if (format == PageFormat::Pdf) {
        WritePdf(doc, files.Open(names.front()), options.Mode);
    } else {
        for (std::size_t i = 0; i < doc.Pages.size(); ++i) {
            QSaveFile& file = files.Open(names[static_cast<int>(i)]);
            if (format == PageFormat::Svg)
                WriteSvg(doc, *doc.Pages[i], file, options.Mode);
            else
                WritePng(doc, *doc.Pages[i], file, options);
        }
    }
    files.CommitAll();
    return names;
}

} // namespace corrieval::platform
