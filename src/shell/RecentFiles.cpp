#include "shell/RecentFiles.h"

#include "platform/SettingsStore.h"
#include "shell/AppSettings.h"

#include <QFileInfo>

namespace corrieval {

namespace {
SettingsStore RecentKey()
{
    return SettingsStore(QString::fromLatin1(ProductKeyPath)).Subkey(QStringLiteral("Recent File List"));
}
QString EntryName(int index)
{
    return QStringLiteral("File%1").arg(index + 1);
}
} // namespace

RecentFiles::RecentFiles(QObject* parent) : QObject(parent)
{
    const SettingsStore key = RecentKey();
    for (int i = 0; i < MaxCount; ++i) {
        const QString path = key.StringValue(EntryName(i)).value_or(QString());
        if (!path.isEmpty() && !m_paths.contains(path))
            m_paths << path;
    }
}

void RecentFiles::Add(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    m_paths.removeAll(absolute);
    m_paths.prepend(absolute);
    while (m_paths.size() > MaxCount)
        m_paths.removeLast();
    Store();
}

void RecentFiles::Remove(const QString& path)
{
    if (m_paths.removeAll(QFileInfo(path).absoluteFilePath()) > 0)
        Store();
}

QString RecentFiles::DisplayName(const QString& path)
{
    return QFileInfo(path).fileName();
}

void RecentFiles::Store()
{
    // Entries past the end are written empty: the store keeps values, it does not delete them.
    SettingsStore key = RecentKey();
    for (int i = 0; i < MaxCount; ++i)
        key.WriteString(EntryName(i), m_paths.value(i));
    key.Sync();
    emit Changed();
}

} // namespace corrieval
