#include "shell/FileDialogs.h"

#include <QFileDialog>
#include <QFileInfo>
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

QString AskSavePath(QWidget* parent, FolderMemory& folders, const QString& folderName, const QString& caption,
                    const QString& name, const QString& filter, const QString& suffix)
{
    QString path = QFileDialog::getSaveFileName(parent, caption, folders.Folder(folderName) + name,
                                                QtFileFilter(filter));
    if (path.isEmpty())
        return {};
    if (QFileInfo(path).suffix().isEmpty())
        path += suffix;
    folders.Remember(folderName, path);
    return path;
}

} // namespace corrieval
