#include "cli/QuietStart.h"

#include <QString>
#include <QtGlobal>

namespace corrieval::cli {

namespace {

QtMessageHandler g_previousHandler = nullptr;

void PassOnAllButRuntimeFolder(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtWarningMsg && message.startsWith(QLatin1String("QStandardPaths: XDG_RUNTIME_DIR not set")))
        return;
    g_previousHandler(type, context, message);
}

} // namespace

void KeepQtStartQuiet()
{
    g_previousHandler = qInstallMessageHandler(PassOnAllButRuntimeFolder);
}

} // namespace corrieval::cli
