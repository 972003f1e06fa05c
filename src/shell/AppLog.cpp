#include "shell/AppLog.h"

#include "platform/DataFolder.h"

#include <QFile>

namespace corrieval {

void AppendLog(const char* line)
{
    QFile log(DataFolder() + QLatin1String(LogFileName));
    if (log.open(QIODevice::WriteOnly | QIODevice::Append))
        log.write(line);
}

} // namespace corrieval
