#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QStringList>
#include <QTemporaryDir>
#include <QThread>

#include <algorithm>

namespace corrieval::testing {

// A user-mode PulseAudio daemon of our own, on a private runtime folder, with one null sink whose
// monitor can be recorded; stopped by the destructor. Without `norewinds=1` a new stream on an
// idle null sink is held back for up to a second.
class PulseDaemon {
public:
    static constexpr const char* SinkName = "corrieval_test";

    static bool Installed()
    {
        const QStringList tools{QStringLiteral("pulseaudio"), QStringLiteral("parec"),
                                QStringLiteral("pactl")};
        return std::ranges::all_of(
            tools, [](const QString& tool) { return !QStandardPaths::findExecutable(tool).isEmpty(); });
    }

    PulseDaemon()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
        environment.insert(QStringLiteral("HOME"), m_folder.path());
        m_daemon.setProcessEnvironment(environment);
        m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_daemon.setStandardOutputFile(QProcess::nullDevice());
        const QStringList command = QProcess::splitCommand(
            QStringLiteral(
                "pulseaudio -n --daemonize=no --exit-idle-time=-1 --use-pid-file=no --disable-shm=yes "
                "--log-level=error -L \"module-null-sink sink_name=%1 norewinds=1\" "
                "-L \"module-native-protocol-unix auth-anonymous=1 socket=%2\"")
                .arg(QLatin1String(SinkName), Socket()));
        m_daemon.start(command.front(), command.mid(1));
        for (int tries = 0; tries < 200 && !Ready(); ++tries)
            QThread::msleep(50);
    }
    // Whatever is left running, QProcess kills as it goes.
    ~PulseDaemon() { Stop(); }

    // The address that clients give in PULSE_SERVER or --server.
    QString Address() const { return QStringLiteral("unix:") + Socket(); }
    bool Ready() const
    {
        QProcess pactl;
        pactl.start(QStringLiteral("pactl"),
                    {QStringLiteral("--server=") + Address(), QStringLiteral("info")});
        return pactl.waitForFinished(5000) && pactl.exitStatus() == QProcess::NormalExit &&
               pactl.exitCode() == 0;
    }
    // Ends the daemon as a crash of the sound server would look to a client.
    void Stop()
    {
        m_daemon.terminate();
        m_daemon.waitForFinished(5000);
    }
    QString Folder() const { return m_folder.path(); }

private:
    QString Socket() const { return m_folder.filePath(QStringLiteral("native")); }

    QTemporaryDir m_folder;
    QProcess m_daemon;
};

} // namespace corrieval::testing
