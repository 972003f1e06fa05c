#include "model/CorrievalDoc.h"
#include "model/SessionState.h"
#include "platform/PrinterPaper.h"

#include <QGuiApplication>
#include <QPageSize>
#include <QPrinterInfo>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

TEST(PrinterPaper, NewTunesTakeTheDefaultPrintersPaperOrEightByEight)
{
    int argc = 1;
    char name[] = "platform_tests";
    char* argv[] = {name, nullptr};
    QGuiApplication app(argc, argv);

    platform::UseDefaultPrinterPaper();
    const CCorrievalDoc doc;
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    const QSizeF inches = printer.isNull() ? QSizeF(8, 8) : printer.defaultPageSize().size(QPageSize::Inch);
    EXPECT_NEAR(doc.PageWidth, inches.width(), 0.001);
    EXPECT_NEAR(doc.PageHeight, inches.height(), 0.001);
}

} // namespace
} // namespace corrieval
