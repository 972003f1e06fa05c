#pragma once

#include "platform/SettingsStore.h"
#include "shell/AppSettings.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QProcess>
#include <QThread>
#include <functional>
#include <gtest/gtest.h>

namespace corrieval::testing {

// Starts the desktop program as a user would, in `folder`, its messages printed rather than
// shown; `exitAfterStart` ends it once start-up is over.
inline void Start(QProcess& program, const QStringList& arguments, const QString& folder = {},
                  bool exitAfterStart = false)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("CORRIEVAL_MESSAGES_TO_STDERR"), QStringLiteral("1"));
    if (exitAfterStart)
        environment.insert(QStringLiteral("CORRIEVAL_EXIT_AFTER_START"), QStringLiteral("1"));
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(folder);
    program.start(QStringLiteral(CORRIEVAL_PROGRAM), arguments);
    ASSERT_TRUE(program.waitForStarted());
}

// Whether `condition` comes true within half a minute, asked every 50 ms.
inline bool WaitUntil(const std::function<bool()>& condition)
{
    const QDeadlineTimer deadline(30000);
    while (!condition()) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(50);
    }
    return true;
}

// Writes a short BWW tune, "Reel.bww", into `folder` and returns its path.
inline QString WriteTune(const QString& folder)
{
    const QString path = folder + QStringLiteral("/Reel.bww");
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("Bagpipe Reader:1.0\n& sharpf sharpc 4_4 LA_4 B_4 C_4 D_4 !I\n");
    return path;
}

// The program's newest recent file, as it keeps it in the settings: what it opened last.
inline QString NewestRecentFile()
{
    const SettingsStore recent =
        SettingsStore(QString::fromLatin1(ProductKeyPath)).Subkey(QStringLiteral("Recent File List"));
    return recent.StringValue(QStringLiteral("File1")).value_or(QString());
}

} // namespace corrieval::testing
