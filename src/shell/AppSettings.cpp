#include "shell/AppSettings.h"

#include "platform/DataFolder.h"
#include "platform/SettingsStore.h"

#include <QFileInfo>
#include <QUrl>

namespace corrieval {

namespace {
SettingsStore SettingsKey()
{
    return SettingsStore(QString::fromLatin1(SettingsKeyPath));
}
SettingsStore WorkspaceKey()
{
    return SettingsStore(QString::fromLatin1(ProductKeyPath)).Subkey(QStringLiteral("Workspace"));
}

const QString kApplicationLook = QStringLiteral("ApplicationLook");
const QString kGeometry = QStringLiteral("MainWindowGeometry");
constexpr int DefaultLook = 215;
} // namespace

UserFolders ReadUserFolders()
{
    SettingsStore key = SettingsKey();
    const QString scores = DataSubfolder(QStringLiteral("Music Scores"));
    UserFolders folders;
    folders.Skb = key.ReadString(QStringLiteral("UserSKB"), scores);
    folders.Imp = key.ReadString(QStringLiteral("UserIMP"), scores);
    folders.Exp = key.ReadString(QStringLiteral("UserEXP"), scores);
    // Glenmarch files were kept beside the data rather than among the scores.
    folders.Glm = key.ReadString(QStringLiteral("UserGLM"), DataFolder());
    key.Sync();
    return folders;
}

void RememberUserFolder(const QString& name, const QString& path)
{
    SettingsStore key = SettingsKey();
    key.WriteString(name, QFileInfo(path).absolutePath() + QLatin1Char('/'));
    key.Sync();
}

ViewSettings ReadViewSettings()
{
    SettingsStore key = SettingsKey();
    ViewSettings settings;
    settings.AutoZoom = key.ReadInt(QStringLiteral("Autozoom"), 0) != 0;
    settings.Margins = key.ReadInt(QStringLiteral("Margins"), 0) != 0;
    key.Sync();
    return settings;
}

void WriteViewSettings(const ViewSettings& settings)
{
    SettingsStore key = SettingsKey();
    key.WriteInt(QStringLiteral("Autozoom"), settings.AutoZoom ? 1 : 0);
    key.WriteInt(QStringLiteral("Margins"), settings.Margins ? 1 : 0);
    key.Sync();
}

int ReadApplicationLook()
{
    SettingsStore key = WorkspaceKey();
    const int look = key.ReadInt(kApplicationLook, DefaultLook);
    key.Sync();
    return look;
}

void WriteApplicationLook(int lookId)
{
    SettingsStore key = WorkspaceKey();
    key.WriteInt(kApplicationLook, lookId);
    key.Sync();
}

QByteArray ReadWindowGeometry()
{
    return QByteArray::fromBase64(WorkspaceKey().StringValue(kGeometry).value_or(QString()).toLatin1());
}

void WriteWindowGeometry(const QByteArray& geometry)
{
    SettingsStore key = WorkspaceKey();
    key.WriteString(kGeometry, QString::fromLatin1(geometry.toBase64()));
    key.Sync();
}

QString HomePage()
{
    const QString page = SettingsKey().StringValue(QStringLiteral("HomePage")).value_or(QString()).trimmed();
    const QString scheme = QUrl(page).scheme();
    return scheme == QLatin1String("http") || scheme == QLatin1String("https") ? page : QString();
}

} // namespace corrieval
