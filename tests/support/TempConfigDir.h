#pragma once

#include <QByteArray>
#include <QTemporaryDir>
#include <QtGlobal>

namespace corrieval::testing {

// Points the settings store at a fresh empty folder while it lives, so that no test reads or
// writes a real user's settings and every test starts from nothing.
class TempConfigDir {
public:
    TempConfigDir() : m_previous(qgetenv("CORRIEVAL_CONFIG_DIR"))
    {
        qputenv("CORRIEVAL_CONFIG_DIR", Path().toUtf8());
    }
    ~TempConfigDir()
    {
        if (m_previous.isEmpty())
            qunsetenv("CORRIEVAL_CONFIG_DIR");
        else
            qputenv("CORRIEVAL_CONFIG_DIR", m_previous);
    }
    TempConfigDir(const TempConfigDir&) = delete;
    TempConfigDir& operator=(const TempConfigDir&) = delete;

    QString Path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
    QByteArray m_previous;
};

} // namespace corrieval::testing
