#include "shell/FileFilters.h"

#include <QStringList>

namespace corrieval {

QString QtFileFilter(const QString& filter)
{
    const QStringList parts = filter.split(QLatin1Char('|'), Qt::SkipEmptyParts);
    QStringList captions;
    // Captions and patterns alternate; the caption carries its patterns already.
    for (qsizetype i = 0; i < parts.size(); i += 2)
        captions << parts[i];
    return captions.join(QStringLiteral(";;"));
}

} // namespace corrieval
