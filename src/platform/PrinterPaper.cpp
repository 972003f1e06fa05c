#include "platform/PrinterPaper.h"

#include "model/SessionState.h"
#include "platform/ImportSettings.h"

#include <QPrinterInfo>

namespace corrieval::platform {

namespace {
void UsePaper(const QPageSize& paper)
{
    // The printing system speaks in thousandths of an inch, as the format has always stored it.
    const QSizeF inches = paper.size(QPageSize::Inch);
    Session().DefaultPaperWidth = static_cast<float>(qRound(inches.width() * 1000.0)) / 1000.0f;
    Session().DefaultPaperHeight = static_cast<float>(qRound(inches.height() * 1000.0)) / 1000.0f;
}
} // namespace

QPageSize PaperForLocale(const QLocale& locale)
{
    return QPageSize(locale.measurementSystem() == QLocale::ImperialUSSystem ? QPageSize::Letter
                                                                             : QPageSize::A4);
}

void UseLocalePaper()
{
    if (!StrictBwwSetting())
        UsePaper(PaperForLocale(QLocale()));
}

void UseDefaultPrinterPaper()
{
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    const QPageSize paper = printer.isNull() ? QPageSize() : printer.defaultPageSize();
    if (paper.isValid())
        UsePaper(paper);
    else
        UseLocalePaper();
}

} // namespace corrieval::platform
