#pragma once

#include <QMainWindow>

class QMdiArea;

namespace corrieval {

class CCorrievalView;

// The one top-level window: tabbed tunes under the ribbon, the status bar, and what outlives any
// one tune (the mixer and the sound stream).
class CMainFrame : public QMainWindow {
    Q_OBJECT

public:
    explicit CMainFrame(QWidget* parent = nullptr);

    // Opens a new untitled tune in a tab of its own and returns its view.
    CCorrievalView* NewDocument();
    // Opens a score (".skb") or template (".skt"), or imports a Glenmarch (".glm") or BWW (".bww",
    // ".bmw") tune into a new tab. False when it cannot; the user has been told why.
    bool OpenDocument(const QString& path);
    // The next new view imports this file at its first paint.
    void SetPendingImport(const QString& path);

    // The "Autozoom" and "Margins" settings, read once the frame exists.
    void SetAutoZoom(bool on);
    bool AutoZoom() const;

    // Restarts the check that offers New, Open and the recent files when no tune is open.
    void RestartQuickStartTimer();

private:
    QMdiArea* m_mdiArea;
    QString m_pendingImport;
    bool m_autoZoom = false;
};

} // namespace corrieval
