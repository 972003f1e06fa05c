#include "notation/MusicFont.h"

#include "notation/MusicFontFile.h"

#include <QDir>
#include <QFileInfo>
#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>

namespace corrieval {

namespace {
QString LoadFile(const QString& path)
{
    const QString family = QString::fromLatin1(MusicFontFamily);
    const int id = QFontDatabase::addApplicationFont(path);
    if (id < 0) {
        QString message = QStringLiteral("The music font file %1 could not be loaded as a font.").arg(path);
        if (QGuiApplication::platformName() == QLatin1String("minimal"))
            message += QStringLiteral(" The \"minimal\" platform takes no application fonts; run with "
                                      "QT_QPA_PLATFORM=offscreen.");
        return message;
    }
    const QStringList families = QFontDatabase::applicationFontFamilies(id);
    if (!families.contains(family)) {
        QFontDatabase::removeApplicationFont(id);
        return QStringLiteral("The font file %1 holds \"%2\", not the music font \"%3\".")
            .arg(path, families.join(QStringLiteral("\", \"")), family);
    }
    if (!QFontInfo(QFont(family)).exactMatch())
        return QStringLiteral("The music font \"%1\" was loaded from %2, but Qt does not select it.")
            .arg(family, path);
    return {};
}
} // namespace

QStringList MusicFontDirs()
{
    const QString chosen = qEnvironmentVariable("CORRIEVAL_FONT_DIR");
    if (!chosen.isEmpty())
        return {chosen};
    QStringList dirs;
    if (QCoreApplication::instance() != nullptr)
        dirs << QDir::cleanPath(QCoreApplication::applicationDirPath() + "/../share/corrieval/fonts");
    dirs << QStringLiteral(CORRIEVAL_FONT_INSTALL_DIR);
    return dirs;
}

QString LoadMusicFontFrom(const QStringList& dirs)
{
    const QString fileName = QString::fromLatin1(MusicFontFileName);
    for (const QString& dir : dirs) {
        const QString path = QDir(dir).filePath(fileName);
        if (QFileInfo::exists(path))
            return LoadFile(path);
    }
    return QStringLiteral("The music font %1 was not found in %2. Without it no notes or symbols are drawn; "
                          "reinstall Corrieval, or set CORRIEVAL_FONT_DIR to the folder that holds it.")
        .arg(fileName, dirs.join(QStringLiteral(", ")));
}

QString LoadMusicFont()
{
    static const QString result = LoadMusicFontFrom(MusicFontDirs());
    return result;
}

} // namespace corrieval
