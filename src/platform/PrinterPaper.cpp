#include "platform/PrinterPaper.h"

#include "model/SessionState.h"

#include <QPageSize>
#include <QPrinterInfo>

namespace corrieval::platform {

void UseDefaultPrinterPaper()
{
    const QPrinterInfo printer = QPrinterInfo::defaultPrinter();
    if (printer.isNull())
        return;
    const QPageSize paper = printer.defaultPageSize();
    if (!paper.isValid())
        return;
    // The printing system speaks in thousandths of an inch, as the format has always stored it.
    const QSizeF inches = paper.size(QPageSize::Inch);
    Session().DefaultPaperWidth = static_cast<float>(qRound(inches.width() * 1000.0)) / 1000.0f;
    Session().DefaultPaperHeight = static_cast<float>(qRound(inches.height() * 1000.0)) / 1000.0f;
}

} // namespace corrieval::platform
