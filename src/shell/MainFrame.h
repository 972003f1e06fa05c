#pragma once

#include "editor/CommandTarget.h"
#include "editor/ViewHost.h"
#include "shell/ChildFrame.h"
#include "shell/HeldMessages.h"
#include "shell/NoteFollower.h"
#include "shell/ribbon/RibbonLayout.h"

#include <QMainWindow>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QToolButton;

namespace corrieval {

class AudioDevice;
class CCorrievalView;
class CFrameStatusBar;
class CommandTable;
class CTransport;
class MovementGalleries;

// The one top-level window: tabbed tunes under the ribbon, the status bar, and what outlives any
// one tune (the mixer and the sound stream, in the transport).
//
// Commands travel the route active view, its tune window, this frame, the transport, the
// application; the command table updates every command's state whenever the program is idle.
class CMainFrame : public QMainWindow, public CommandTarget, private ViewHost, private FolderMemory {
    Q_OBJECT

public:
    // `devices` makes the sound output (the sound server's, or a null one for tests);
    // `samplesFolder` holds the instruments' recordings.
    CMainFrame(std::function<std::unique_ptr<AudioDevice>()> devices, const QString& samplesFolder,
               QWidget* parent = nullptr);
    ~CMainFrame() override;

    // Opens a new untitled tune in a tab of its own and returns its view.
    CCorrievalView* NewDocument();
    // Opens a score (".skb") or template (".skt"), or imports a Glenmarch (".glm") or BWW (".bww",
    // ".bmw") tune into a new tab. False when it cannot; the user has been told why.
    bool OpenDocument(const QString& path);
    // The next new view imports this file at its first paint.
    void SetPendingImport(const QString& path);

    // The "Autozoom" and "Margins" settings, read once the frame exists.
    void SetAutoZoom(bool on);
    bool AutoZoom() const override;

    // Restarts the check that offers New, Open and the recent files when no tune is open.
    void RestartQuickStartTimer();

    // The application's commands come last on the route.
    void SetApplicationCommands(CommandTarget* app) { m_appCommands = app; }
    // What the quick start offers as recent tunes, newest first.
    void SetRecentFiles(std::function<QStringList()> recent) { m_recentFiles = std::move(recent); }
    // Opens what the status bar's link points at.
    void SetLinkOpener(std::function<void()> open) { m_openLink = std::move(open); }
    CommandTable& Commands() { return *m_commands; }
    CTransport& Transport() { return *m_transport; }

    // The active tune window and its view, or null.
    CChildFrame* ActiveChild() const;
    CCorrievalView* ActiveView() const;
    QList<CChildFrame*> Children() const;

    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;

signals:
    // A tune was opened from or saved to this file: it belongs in the recent list.
    void FileUsed(const QString& path);
    // This file could not be opened: it leaves the recent list.
    void FileFailed(const QString& path);

protected:
    void customEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // ViewHost
    QString TakePendingImport() override;
    void ZoomChanged(const CCorrievalView& view, float zoom) override;
    void TuneImported(CCorrievalView& view, int tempo) override;
    CNoteBase* PalettePrototype(int entry) const override;
    PaletteRange PaletteEntries(int galleryId) const override;
    bool RestartPlay() override;
    void ShowContextMenu(const QPoint& globalPos) override;
    // FolderMemory
    QString Folder(const QString& name) const override;
    void Remember(const QString& name, const QString& path) override;

    bool OpenFile(const QString& path);
    CChildFrame* AddChild(std::unique_ptr<CCorrievalDoc> doc);
    void SubWindowActivated(QMdiSubWindow* window);
    void ChildClosing(CChildFrame& child);
    void ExportWav();
    void ToggleLock();
    // The quick access buttons' tips name the step that Undo and Redo would take.
    void ShowUndoSteps();
    void OnQuickStartTimer();
    void ZoomChosen(int percent);
    void PlayOrStop();
    void ShowWindowsMenu();
    void BuildRibbon();
    void ChooseLook(int lookId);
    void FillRecentMenu();
    std::vector<CommandTarget*> Route() const;

    PostingHighlightListener m_highlights{*this};
    std::unique_ptr<CTransport> m_transport;
    // The note and movement palettes, read once at start; the views place their prototypes.
    std::unique_ptr<const MovementGalleries> m_palettes;
    CommandTable* m_commands;
    QMdiArea* m_mdiArea;
    CFrameStatusBar* m_statusBar;
    ribbon::Ribbon* m_ribbon;
    ribbon::RibbonControls m_controls;
    int m_look;
    NoteFollower m_follower;
    CommandTarget* m_appCommands = nullptr;
    std::function<QStringList()> m_recentFiles;
    std::function<void()> m_openLink;
    // Messages from the frame's construction, shown once the window is.
    HeldMessages::Held m_heldMessages;
    QPointer<CChildFrame> m_activeChild;

    QString m_pendingImport;
    bool m_autoZoom = false;
    QTimer m_quickStartTimer; // timer 3773: offers a way in when no tune is open
    bool m_quickStartShown = false;
};

} // namespace corrieval
