#include "platform/LocalePaper.h"

#include "model/SessionState.h"
#include "platform/ImportSettings.h"

#include <QSizeF>

namespace corrieval::platform {

void UsePaper(const QPageSize& paper)
{
    // The printing system speaks in thousandths of an inch, as the format has always stored it.
    const QSizeF inches = paper.size(QPageSize::Inch);
    Session().DefaultPaperWidth = static_cast<float>(qRound(inches.width() * 1000.0)) / 1000.0f;
    Session().DefaultPaperHeight = static_cast<float>(qRound(inches.height() * 1000.0)) / 1000.0f;
}

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

} // namespace corrieval::platform
