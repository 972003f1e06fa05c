#include "editor/PrintLayout.h"
#include "model/CorrievalDoc.h"

#include <QFile>
#include <QPageSize>
#include <QPrinter>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

TEST(PrintLayout, APageIsInsetAndDrawnAtItsSizeOnPaperAndFittedInPreview)
{
    // The second of two letter pages, on a printer of 600 dpi.
    const RectF page{0, 11, 8.5f, 11};
    const PrintPlacement p = PlacePage(page, 600, 4800, OutputMode::Printer);
    EXPECT_FLOAT_EQ(p.Printable.X, 0.105f);
    EXPECT_FLOAT_EQ(p.Printable.Y, 11.105f);
    EXPECT_FLOAT_EQ(p.Printable.Width, 8.29f);
    EXPECT_FLOAT_EQ(p.Printable.Height, 10.79f);
    EXPECT_NEAR(p.DeviceWidth, 8.29f * 600, 0.01);
    // Paper takes the page at its size whatever the printer's printable width.
    EXPECT_EQ(p.Scale, 1.0f);
    // The page's own corner lands 0.105 inch in from the printer's origin.
    EXPECT_NEAR(page.X - p.Origin.X, 0.105f, 1e-5);
    EXPECT_NEAR(page.Y - p.Origin.Y, 0.105f, 1e-5);

    // A preview fits the printable width to the width it draws into, smaller or larger.
    EXPECT_NEAR(PlacePage(page, 600, 0.5f * 8.29f * 600, OutputMode::PrintPreview).Scale, 0.5f, 1e-4);
    const PrintPlacement larger = PlacePage(page, 600, 2 * 8.29f * 600, OutputMode::PrintPreview);
    EXPECT_NEAR(larger.Scale, 2.0f, 1e-4);
    EXPECT_EQ(larger.Printable, p.Printable);
}

TEST(PrintLayout, PaperIsA4InTheOrientationOfThePages)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setPageSize(QPageSize(QPageSize::Letter));

    CCorrievalDoc landscape;
    landscape.PageWidth = 11;
    landscape.PageHeight = 8.5f;
    PreparePrinter(printer, landscape);
    EXPECT_EQ(printer.pageLayout().pageSize().id(), QPageSize::A4);
    EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Landscape);

    // A square page counts as landscape; a tall one is portrait, and the paper stays A4 even for
    // a page far larger.
    landscape.PageHeight = 11;
    EXPECT_EQ(PrintOrientation(landscape), QPageLayout::Landscape);
    CCorrievalDoc tall;
    tall.PageWidth = 11;
    tall.PageHeight = 17;
    PreparePrinter(printer, tall);
    EXPECT_EQ(printer.pageLayout().pageSize().id(), QPageSize::A4);
    EXPECT_EQ(printer.pageLayout().orientation(), QPageLayout::Portrait);
}

TEST(PrintLayout, PrintsThePagesOfTheRangeToAPdf)
{
    QTemporaryDir dir;
    auto doc = std::make_unique<CCorrievalDoc>();
    doc->PageWidth = 8.27f;
    doc->PageHeight = 11.69f;
    for (int i = 0; i < 3; ++i)
        doc->AddPage(doc->Pages.size());
    doc->LayoutPages();

    const auto pdfPages = [&](int from, int to) {
        QPrinter printer(QPrinter::HighResolution);
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(dir.filePath(QStringLiteral("out.pdf")));
        printer.setFromTo(from, to);
        PrintPages(printer, *doc, OutputMode::Printer);
        QFile pdf(printer.outputFileName());
        if (!pdf.open(QIODevice::ReadOnly))
            return -1;
        return static_cast<int>(pdf.readAll().count("/Type /Page\n"));
    };
    EXPECT_EQ(pdfPages(0, 0), 3);
    EXPECT_EQ(pdfPages(2, 3), 2);
    EXPECT_EQ(pdfPages(3, 9), 1); // a range past the end stops at the last page
}

} // namespace
} // namespace corrieval
