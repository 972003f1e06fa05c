#pragma once

#include <QObject>
#include <QStringList>
#include <memory>

class QLocalServer;
class QLockFile;

namespace corrieval {

// Only one copy of the program runs per user. The running copy holds a lock file,
// "TORMAVENBOOK-<uid>.lock" in $XDG_RUNTIME_DIR (else the data folder), and listens beside it on a
// local socket "CORRIEBOOK<uid>" for the files that a later start was asked to open. A lock whose
// process has gone is taken over.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    explicit SingleInstance(QObject* parent = nullptr);
    ~SingleInstance() override;

    // Takes the lock and starts listening; false when another copy holds it.
    bool TryBecomeFirst();
    // From a later start: hands `paths` (absolute) to the running copy. Empty when it took them,
    // else the stage that failed: "CONNECT" (no running copy listens) or "TRANSACT" (it did not
    // answer).
    static QString HandOver(const QStringList& paths);

    // Where the lock and the socket live.
    static QString Folder();
    static QString ServerName();

signals:
    // A later start handed these files over.
    void FilesArrived(const QStringList& paths);

private:
    void Receive();

    std::unique_ptr<QLockFile> m_lock;
    QLocalServer* m_server = nullptr;
};

} // namespace corrieval
