#pragma once

#include <QProcess>
#include <QStandardPaths>
#include <QString>
#include <QTemporaryDir>
#include <QThread>

#include <chrono>
#include <optional>

namespace corrieval::testing {

// A user-mode PulseAudio daemon of our own, on a private runtime folder, with one null sink whose
// monitor can be recorded. Started by the constructor, stopped by its PID in the destructor.
// Without `norewinds=1` a new stream on an idle null sink is held back for up to a second.
class PulseDaemon {
public:
    static constexpr const char* SinkName = "corrieval_test";

    static bool Installed()
    {
        return !QStandardPaths::findExecutable(QStringLiteral("pulseaudio")).isEmpty() &&
               !QStandardPaths::findExecutable(QStringLiteral("parec")).isEmpty() &&
               !QStandardPaths::findExecutable(QStringLiteral("pactl")).isEmpty();
    }

    PulseDaemon()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
        environment.insert(QStringLiteral("HOME"), m_folder.path());
        m_daemon.setProcessEnvironment(environment);
        m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_daemon.setStandardOutputFile(QProcess::nullDevice());
        m_daemon.start(
            QStringLiteral("pulseaudio"),
            {QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--exit-idle-time=-1"),
             QStringLiteral("--use-pid-file=no"), QStringLiteral("--disable-shm=yes"),
             QStringLiteral("--log-level=error"), QStringLiteral("-L"),
             QStringLiteral("module-null-sink sink_name=%1 norewinds=1").arg(QLatin1String(SinkName)),
             QStringLiteral("-L"),
             QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=%1").arg(Socket())});
        for (int tries = 0; tries < 200 && !Ready(); ++tries)
            QThread::msleep(50);
    }
    ~PulseDaemon() { Stop(); }
    PulseDaemon(const PulseDaemon&) = delete;
    PulseDaemon& operator=(const PulseDaemon&) = delete;

    // The address that clients give in PULSE_SERVER or --server.
    QString Address() const { return QStringLiteral("unix:") + Socket(); }
    bool Ready() const { return Pactl({QStringLiteral("info")}).has_value(); }
    // Ends the daemon as a crash of the sound server would look to a client.
    void Stop()
    {
        if (m_daemon.state() == QProcess::NotRunning)
            return;
        m_daemon.terminate();
        if (!m_daemon.waitForFinished(5000))
            m_daemon.kill();
        m_daemon.waitForFinished(5000);
    }
    // Runs pactl against this daemon; its output, or nothing when it failed.
    std::optional<QByteArray> Pactl(const QStringList& arguments) const
    {
        QProcess pactl;
        pactl.start(QStringLiteral("pactl"),
                    QStringList{QStringLiteral("--server=") + Address()} + arguments);
        if (!pactl.waitForFinished(5000) || pactl.exitStatus() != QProcess::NormalExit ||
            pactl.exitCode() != 0)
            return std::nullopt;
        return pactl.readAllStandardOutput();
    }
    QString Folder() const { return m_folder.path(); }

private:
    QString Socket() const { return m_folder.filePath(QStringLiteral("native")); }

    QTemporaryDir m_folder;
    QProcess m_daemon;
};

} // namespace corrieval::testing
