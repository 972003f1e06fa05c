#include "shell/SingleInstance.h"

#include "platform/DataFolder.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <unistd.h>

namespace corrieval {

namespace {
// The hand-over: one absolute path a line, an empty line to end; the running copy answers "OK".
constexpr int kConnectMs = 2000;
constexpr int kAnswerMs = 5000;
const QByteArray kAnswer = QByteArrayLiteral("OK\n");
constexpr qsizetype kSocketPathRoom = 100;

QString UserId()
{
    return QString::number(::getuid());
}
} // namespace

SingleInstance::SingleInstance(QObject* parent) : QObject(parent) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::Folder()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return QDir::cleanPath(runtime.isEmpty() ? DataFolder() : runtime);
}

// A full path keeps the socket beside the lock, so a test's own runtime folder keeps its copies
// apart from the user's. A socket's path has room for about 100 bytes; past that, the bare name
// puts it in the temporary folder.
QString SingleInstance::ServerName()
{
    const QString name = QStringLiteral("CORRIEBOOK") + UserId();
    const QString besideLock = Folder() + QLatin1Char('/') + name;
    return besideLock.toUtf8().size() < kSocketPathRoom ? besideLock : name;
}

bool SingleInstance::TryBecomeFirst()
{
    QDir().mkpath(Folder());
    auto lock = std::make_unique<QLockFile>(Folder() + QStringLiteral("/TORMAVENBOOK-") + UserId() +
                                            QStringLiteral(".lock"));
    // Stale only when its process is gone, however long a copy has been running.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return false;
    m_lock = std::move(lock);

    // A socket left by a copy that crashed would refuse to be listened on.
    QLocalServer::removeServer(ServerName());
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::Receive);
    m_server->listen(ServerName());
    return true;
}

void SingleInstance::Receive()
{
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            if (!socket->property("done").toBool() && socket->bytesAvailable() > 0 &&
                socket->peek(socket->bytesAvailable()).contains("\n\n")) {
                socket->setProperty("done", true);
                QStringList paths;
                for (const QByteArray& line : socket->readAll().split('\n'))
                    if (!line.isEmpty())
                        paths << QString::fromUtf8(line);
                socket->write(kAnswer);
                socket->flush();
                emit FilesArrived(paths);
            }
        });
    }
}

QString SingleInstance::HandOver(const QStringList& paths)
{
    QLocalSocket socket;
    socket.connectToServer(ServerName());
    if (!socket.waitForConnected(kConnectMs))
        return QStringLiteral("CONNECT");
    QByteArray request;
    for (const QString& path : paths)
        request += path.toUtf8() + '\n';
    socket.write(request + '\n');
    QByteArray answer;
    while (socket.waitForBytesWritten(kAnswerMs) || socket.waitForReadyRead(kAnswerMs)) {
        answer += socket.readAll();
        if (answer.endsWith('\n'))
            break;
    }
    return answer == kAnswer ? QString() : QStringLiteral("TRANSACT");
}

} // namespace corrieval
