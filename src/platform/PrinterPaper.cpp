#include "platform/PrinterPaper.h"

#include <QPrinterInfo>

namespace corrieval::platform {

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
