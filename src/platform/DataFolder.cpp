#include "platform/DataFolder.h"

#include <QDir>
#include <QStandardPaths>

namespace corrieval {

QString DataFolder()
{
    QString folder = qEnvironmentVariable("CORRIEVAL_DATA_DIR");
    if (folder.isEmpty())
        folder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) +
                 QStringLiteral("/TormavenLtd/Corrieval4");
    folder = QDir::cleanPath(folder);
    return folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/');
}

QString DataSubfolder(const QString& name) { return DataFolder() + name + QLatin1Char('/'); }

} // namespace corrieval
