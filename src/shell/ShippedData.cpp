#include "shell/ShippedData.h"

#include "model/Messages.h"
#include "platform/DataFolder.h"
#include "shell/AppSettings.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QUrl>

namespace corrieval {

namespace {
const QStringList kSubfolders{QStringLiteral("Music Scores"), QStringLiteral("Templates"),
                              QStringLiteral("Image Library"), QStringLiteral("Banners"),
                              QStringLiteral("Instrument Samples")};
const QString kGuideFile = QStringLiteral("index.html");

// Copies the shipped files of `shipped` matching `patterns` into the data folder's `subfolder`
// where the user has none of that name: a user's own recordings or templates are never replaced.
void CopyMissing(const QString& shipped, const QStringList& patterns, const QString& subfolder,
                 QStringList& problems)
{
    const QString from = ShippedDataDir(shipped);
    if (from.isEmpty())
        return;
    for (const QFileInfo& file : QDir(from).entryInfoList(patterns, QDir::Files)) {
        const QString target = DataSubfolder(subfolder) + file.fileName();
        if (!QFileInfo::exists(target) && !QFile::copy(file.filePath(), target))
            problems << target;
    }
}
} // namespace

QString ShippedDataDir(const QString& name)
{
    const QStringList candidates{QCoreApplication::applicationDirPath() +
                                     QStringLiteral("/../share/corrieval/") + name,
                                 QStringLiteral(CORRIEVAL_DATA_INSTALL_DIR "/") + name};
    for (const QString& dir : candidates)
        if (QFileInfo(dir).isDir())
            return QDir::cleanPath(dir);
    return {};
}

QString PrepareDataFolder()
{
    QStringList problems;
    for (const QString& name : kSubfolders)
        if (!QDir().mkpath(DataSubfolder(name)))
            problems << DataSubfolder(name);
    CopyMissing(QStringLiteral("templates"), {QStringLiteral("*.skt")}, QStringLiteral("Templates"), problems);
    CopyMissing(QStringLiteral("samples"), {QStringLiteral("*.wav"), QStringLiteral("*.txt")},
                QStringLiteral("Instrument Samples"), problems);
    if (problems.isEmpty())
        return {};
    return QStringLiteral("The data folder could not be set up; these could not be made:\n%1")
        .arg(problems.join(QLatin1Char('\n')));
}

QString UserGuidePath()
{
    const QString help = ShippedDataDir(QStringLiteral("help"));
    return help.isEmpty() || !QFileInfo::exists(help + QLatin1Char('/') + kGuideFile)
               ? QString()
               : help + QLatin1Char('/') + kGuideFile;
}

void OpenUserGuide()
{
    const QString guide = UserGuidePath();
    if (guide.isEmpty() || !QDesktopServices::openUrl(QUrl::fromLocalFile(guide)))
        ShowMessage(
            QStringLiteral("The user guide could not be opened: %1 is missing or no browser is set up. "
                           "Reinstall Corrieval to bring the guide back.")
                .arg(guide.isEmpty() ? QStringLiteral("share/corrieval/help/") + kGuideFile : guide),
            MessageKind::Warning);
}

void OpenStatusBarLink()
{
    const QString page = HomePage();
    if (page.isEmpty())
        OpenUserGuide();
    else
        QDesktopServices::openUrl(QUrl(page));
}

} // namespace corrieval
