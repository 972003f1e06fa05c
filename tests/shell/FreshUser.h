#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <array>
#include <utility>

namespace corrieval::testing {

// A user who has never run the program: fresh data, settings and runtime folders for as long as
// it lives, for this process and for the programs it starts.
class FreshUser {
public:
    FreshUser()
    {
        for (auto& [name, previous] : m_previous) {
            previous = qgetenv(name);
            const QString folder = m_dir.path() + QLatin1Char('/') + QString::fromLatin1(name);
            QDir().mkpath(folder);
            QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
            qputenv(name, folder.toUtf8());
        }
    }
    ~FreshUser()
    {
        for (const auto& [name, previous] : m_previous)
            if (previous.isEmpty())
                qunsetenv(name);
            else
                qputenv(name, previous);
    }
    FreshUser(const FreshUser&) = delete;
    FreshUser& operator=(const FreshUser&) = delete;

    QString DataFolder() const { return Folder("CORRIEVAL_DATA_DIR"); }
    QString ConfigFolder() const { return Folder("CORRIEVAL_CONFIG_DIR"); }
    QString Log() const
    {
        QFile log(DataFolder() + QStringLiteral("/corrlog.log"));
        return log.open(QIODevice::ReadOnly) ? QString::fromUtf8(log.readAll()) : QString();
    }

private:
    QString Folder(const char* name) const
    {
        return m_dir.path() + QLatin1Char('/') + QString::fromLatin1(name);
    }

    QTemporaryDir m_dir;
    std::array<std::pair<const char*, QByteArray>, 3> m_previous{
        {{"CORRIEVAL_DATA_DIR", {}}, {"CORRIEVAL_CONFIG_DIR", {}}, {"XDG_RUNTIME_DIR", {}}}};
};

} // namespace corrieval::testing
