#include "shell/MainFrame.h"

#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "editor/MovementGalleries.h"
#include "formats/archive/ArchiveError.h"
#include "formats/score/ScoreFile.h"
#include "model/ActiveView.h"
#include "model/CorrievalDoc.h"
#include "model/Messages.h"
#include "model/SessionState.h"
#include "platform/SettingsStore.h"
#include "playback/AudioDevice.h"
#include "shell/AppLook.h"
#include "shell/AppSettings.h"
#include "shell/CommandCatalogue.h"
#include "shell/CommandTable.h"
#include "shell/FileDialogs.h"
#include "shell/FrameStatusBar.h"
#include "shell/HeldMessages.h"
#include "shell/PaletteRibbon.h"
#include "shell/QuickStartChooser.h"
#include "shell/Transport.h"
#include "shell/WaitCursor.h"
#include "shell/ribbon/Ribbon.h"
#include "shell/ribbon/RibbonGallery.h"
#include "shell/ribbon/RibbonSlider.h"

#include <QAbstractEventDispatcher>
#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileInfo>
#include <QMdiArea>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QTabBar>
#include <vector>

namespace corrieval {

namespace {

// The imports, told apart by the file's ending as the import commands do.
bool IsImport(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return suffix == QLatin1String("glm") || suffix == QLatin1String("bww") || suffix == QLatin1String("bmw");
}

} // namespace

CMainFrame::CMainFrame(std::function<std::unique_ptr<AudioDevice>()> devices, const QString& samplesFolder,
                       QWidget* parent)
    : QMainWindow(parent),
      m_transport(std::make_unique<CTransport>(std::move(devices), samplesFolder, m_highlights)),
      m_palettes(std::make_unique<const MovementGalleries>()),
      m_commands(new CommandTable(this)),
      m_mdiArea(new QMdiArea(this)),
      m_statusBar(new CFrameStatusBar(this)),
      m_ribbon(new ribbon::Ribbon(this)),
      m_look(ReadApplicationLook())
{
    setWindowTitle(QStringLiteral("Corrieval"));
    m_mdiArea->setViewMode(QMdiArea::TabbedView);
    m_mdiArea->setTabsClosable(true);
    m_mdiArea->setTabsMovable(true);
    m_mdiArea->setDocumentMode(true);
    // Tabs as wide as their titles, as in a browser, rather than shared out over the window.
    if (auto* tabs = m_mdiArea->findChild<QTabBar*>())
        tabs->setExpanding(false);
    setCentralWidget(m_mdiArea);
    connect(m_mdiArea, &QMdiArea::subWindowActivated, this, &CMainFrame::SubWindowActivated);

    setStatusBar(m_statusBar);
    connect(m_statusBar, &CFrameStatusBar::ZoomChosen, this, &CMainFrame::ZoomChosen);
    connect(m_statusBar, &CFrameStatusBar::LinkActivated, this, [this] { m_commands->Run(command::Link); });
    connect(m_transport.get(), &CTransport::InstrumentShown, this, [this](int index, const QString& problem) {
        m_statusBar->ShowInstrument(CTransport::InstrumentNames().value(index), problem);
    });

    DefineCommands(*m_commands);
    m_commands->SetRoute([this] { return Route(); });
    addActions(m_commands->Actions().values());
    BuildRibbon();

    // The one guarded way from the score to a window.
    SetActiveViewProvider([this]() -> ScoreView* { return ActiveView(); });

    m_transport->SetBindingProvider([this] {
        PlayBinding binding;
        if (CChildFrame* child = ActiveChild()) {
            binding.Document = &child->Document();
            binding.Sequence = &child->Sequence();
            binding.Selection = &child->View().SelectedItems();
        }
        return binding;
    });

    // Commands are brought up to date whenever the program has nothing else to do.
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, m_commands,
            &CommandTable::UpdateAll);
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock, this,
            &CMainFrame::ShowUndoSteps);

    m_quickStartTimer.setObjectName(QStringLiteral("3773"));
    m_quickStartTimer.setInterval(500);
    connect(&m_quickStartTimer, &QTimer::timeout, this, &CMainFrame::OnQuickStartTimer);

    // Space plays or stops while the score has the keyboard; in a text box it stays a space.
    auto* playOrStop = new QAction(QStringLiteral("Play or stop"), m_mdiArea);
    playOrStop->setShortcut(Qt::Key_Space);
    playOrStop->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(playOrStop, &QAction::triggered, this, &CMainFrame::PlayOrStop);
    m_mdiArea->addAction(playOrStop);

    // What the sound's start has to say (no sound server, no recordings) waits for the window,
    // so that the message stands over the program rather than before it.
    HeldMessages held;
    m_transport->ChooseInstrument(0);
    m_heldMessages = held.Take();
}

void CMainFrame::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (m_heldMessages.empty())
        return;
    QTimer::singleShot(0, this, [this] {
        for (const auto& [text, kind] : std::exchange(m_heldMessages, {}))
            ShowMessage(text, kind);
    });
}

CMainFrame::~CMainFrame()
{
    SetActiveViewProvider({});
    // Tabs going away below must not reach a frame half taken down.
    disconnect(m_mdiArea, nullptr, this, nullptr);
    m_quickStartTimer.stop();
    // The stream stops before any tune goes, so nothing plays from a freed list.
    m_transport.reset();
    // The tunes go before the frame's members they call on.
    for (CChildFrame* child : Children())
        delete child;
}

QList<CChildFrame*> CMainFrame::Children() const
{
    QList<CChildFrame*> children;
    for (QMdiSubWindow* window : m_mdiArea->subWindowList()) {
        if (auto* child = qobject_cast<CChildFrame*>(window))
            children << child;
    }
    return children;
}

CChildFrame* CMainFrame::ActiveChild() const { return m_activeChild.data(); }

CCorrievalView* CMainFrame::ActiveView() const
{
    CChildFrame* child = ActiveChild();
    return child != nullptr ? &child->View() : nullptr;
}

std::vector<CommandTarget*> CMainFrame::Route() const
{
    std::vector<CommandTarget*> route;
    if (CChildFrame* child = ActiveChild()) {
        route.push_back(&child->View());
        route.push_back(child);
    }
    route.push_back(const_cast<CMainFrame*>(this));
    route.push_back(m_transport.get());
    if (m_appCommands != nullptr)
        route.push_back(m_appCommands);
    return route;
}

CChildFrame* CMainFrame::AddChild(std::unique_ptr<CCorrievalDoc> doc)
{
    auto* child = new CChildFrame(std::move(doc), *this, *this, [this](CChildFrame& c) { ChildClosing(c); });
    connect(child, &CChildFrame::Saved, this, &CMainFrame::FileUsed);
    // Undo and redo replace the notes that the play lists point at: play lets go of them first.
    connect(&child->View().History(), &UndoHistory::aboutToRestore, this,
            [this, child] { m_transport->ViewClosing(&child->Sequence()); });
    m_mdiArea->addSubWindow(child);
    child->showMaximized();
    m_mdiArea->setActiveSubWindow(child);
    // setActiveSubWindow does not report a window that was already active, as a first one is.
    SubWindowActivated(child);
    return child;
}

CCorrievalView* CMainFrame::NewDocument()
{
    auto doc = std::make_unique<CCorrievalDoc>();
    // The paper is asked for once the tab is there, so the page set-up has a window to sit on.
    CChildFrame* child = AddChild(std::move(doc));
    Session().ImportFileName = m_pendingImport;
    child->Document().OnNewDocument();
    Session().ImportFileName.clear();
    child->Document().SetModifiedFlag(false);
    child->RefreshTitle();
    RestartQuickStartTimer();
    return &child->View();
}

bool CMainFrame::OpenDocument(const QString& path)
{
    const bool opened = OpenFile(path);
    emit opened ? FileUsed(QFileInfo(path).absoluteFilePath()) : FileFailed(path);
    return opened;
}

bool CMainFrame::OpenFile(const QString& path)
{
    const QString absolute = QFileInfo(path).absoluteFilePath();
    for (CChildFrame* child : Children()) {
        if (QFileInfo(child->Document().PathName()).absoluteFilePath() == absolute &&
            !child->Document().PathName().isEmpty()) {
            m_mdiArea->setActiveSubWindow(child);
            return true;
        }
    }
    if (IsImport(path)) {
        if (!QFileInfo(path).isReadable()) {
            ShowMessage(QStringLiteral("Could not open %1:\nthe file cannot be read.").arg(QDir::toNativeSeparators(path)),
                        MessageKind::Warning);
            return false;
        }
        SetPendingImport(absolute);
        NewDocument();
        // The tab is named after the tune's file, as a piper finds it again.
        if (CChildFrame* child = ActiveChild()) {
            child->Document().SetTitle(QFileInfo(path).completeBaseName());
            child->RefreshTitle();
        }
        return true;
    }
    std::unique_ptr<CCorrievalDoc> doc;
    try {
        doc = LoadScore(absolute);
    } catch (const FileError& e) {
        ShowMessage(QStringLiteral("Could not open %1:\n%2").arg(QDir::toNativeSeparators(path), e.Reason()),
                    MessageKind::Warning);
        return false;
    } catch (const ArchiveError& e) {
        ShowMessage(QStringLiteral("Could not open %1:\nthe file is damaged or is not a Corrieval tune (%2).")
                        .arg(QDir::toNativeSeparators(path), e.Describe()),
                    MessageKind::Warning);
        return false;
    }
    doc->SetPathName(absolute);
    Session().Locked = doc->Locked != 0;
    AddChild(std::move(doc));
    RestartQuickStartTimer();
    return true;
}

void CMainFrame::SetPendingImport(const QString& path) { m_pendingImport = path; }

QString CMainFrame::TakePendingImport() { return std::exchange(m_pendingImport, QString()); }

void CMainFrame::SetAutoZoom(bool on) { m_autoZoom = on; }

bool CMainFrame::AutoZoom() const { return m_autoZoom; }

void CMainFrame::ZoomChanged(const CCorrievalView& view, float zoom)
{
    if (&view == ActiveView())
        m_statusBar->ShowZoom(static_cast<int>(zoom * 100));
}

void CMainFrame::ZoomChosen(int percent)
{
    CCorrievalView* view = ActiveView();
    if (view == nullptr)
        return;
    if (percent < 0)
        view->FitToWidth();
    else
        view->SetZoom(percent);
    m_statusBar->ShowZoom(view->ZoomPercent());
}

void CMainFrame::PlayOrStop()
{
    m_commands->Run(m_transport->IsPlaying() ? command::Stop : command::Play);
}

void CMainFrame::BuildRibbon()
{
    setMenuWidget(m_ribbon);
    m_controls = ribbon::BuildRibbon(*m_ribbon, [this](int id) { return m_commands->Action(id); });
    connect(m_controls.InstrumentGallery, &ribbon::RibbonGallery::ItemChosen, this, [this](int index) {
        if (m_commands->State(command::InstrumentGallery).enabled)
            m_transport->ChooseInstrument(index);
    });
    connect(m_transport.get(), &CTransport::InstrumentShown, m_controls.InstrumentGallery,
            [this](int index) { m_controls.InstrumentGallery->SetFace(index); });
    connect(m_transport.get(), &CTransport::TempoShown, this, [this](int bpm) {
        m_controls.TempoEdit->setText(QStringLiteral("%1 bpm").arg(bpm));
        m_controls.TempoSlider->SetValue(bpm);
    });
    m_controls.TempoEdit->setText(QStringLiteral("74 bpm"));
    m_controls.TempoEdit->setToolTip(QStringLiteral("Tempo in beats per minute, 20 to 200"));
    connect(m_controls.RecentDocuments, &QMenu::aboutToShow, this, &CMainFrame::FillRecentMenu);
    FillPaletteGalleries(*m_palettes, m_controls.PaletteGalleries);
    for (std::size_t g = 0; g < command::PaletteGalleries.size(); ++g) {
        connect(m_controls.PaletteGalleries[g], &ribbon::RibbonGallery::ItemChosen, this,
                [this, id = command::PaletteGalleries[g]] { m_commands->Run(id); });
    }
}

void CMainFrame::FillRecentMenu()
{
    QMenu* menu = m_controls.RecentDocuments;
    menu->clear();
    const QStringList recent = m_recentFiles ? m_recentFiles() : QStringList();
    for (int i = 0; i < recent.size(); ++i) {
        const QString& path = recent[i];
        // Names alone, numbered for the keyboard; the folder is in the tooltip.
        QAction* item = menu->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(QFileInfo(path).fileName()), this,
                                        [this, path] { OpenDocument(path); });
        item->setToolTip(QDir::toNativeSeparators(path));
    }
    menu->setToolTipsVisible(true);
    if (recent.isEmpty())
        menu->addAction(QStringLiteral("(none yet)"))->setEnabled(false);
}

void CMainFrame::ChooseLook(int lookId)
{
    const WaitCursor wait;
    m_look = lookId;
    ApplyApplicationLook(lookId);
    // The ribbon draws through a style sheet made from its palette, which keeps the application's
    // new palette from reaching it by itself: the old sheet goes, and the new palette makes the
    // next one.
    m_ribbon->setStyleSheet(QString());
    m_ribbon->setPalette(QApplication::palette());
    WriteApplicationLook(lookId);
}

void CMainFrame::ShowWindowsMenu()
{
    QMenu menu(this);
    for (CChildFrame* child : Children()) {
        QAction* item = menu.addAction(child->Document().Title(), this, [this, child] { m_mdiArea->setActiveSubWindow(child); });
        item->setCheckable(true);
        item->setChecked(child == ActiveChild());
    }
    if (menu.isEmpty())
        return;
    menu.exec(QCursor::pos());
}

void CMainFrame::TuneImported(CCorrievalView& view, int tempo)
{
    m_follower.FollowAllowed = true;
    if (&view == ActiveView())
        emit m_transport->TempoShown(tempo);
}

CNoteBase* CMainFrame::PalettePrototype(int entry) const
{
    return m_palettes->Prototype(entry);
}

PaletteRange CMainFrame::PaletteEntries(int galleryId) const
{
    return PaletteEntriesOf(*m_palettes, m_controls.PaletteGalleries, galleryId);
}

bool CMainFrame::RestartPlay()
{
    if (!m_transport->IsPlaying())
        return false;
    m_transport->Rewind();
    return true;
}

void CMainFrame::ShowContextMenu(const QPoint& globalPos)
{
    // The ribbon's own actions, so that captions, shortcuts and enabling are the same.
    const std::vector<std::vector<int>> groups{
        {command::Cut, command::Copy, command::Paste, command::Delete},
        {command::Dot, command::CutNote, command::Tie, command::Group, command::Ungroup},
        {command::InsertBar, command::InsertRepeats, command::DeleteRepeats, command::AutoOrganise},
        {command::Properties}};
    m_commands->UpdateAll();
    QMenu menu(this);
    for (const auto& group : groups) {
        if (!menu.isEmpty())
            menu.addSeparator();
        for (const int id : group)
            menu.addAction(m_commands->Action(id));
    }
    menu.exec(globalPos);
}

QString CMainFrame::Folder(const QString& name) const
{
    SettingsStore settings(QString::fromLatin1(SettingsKeyPath));
    QString folder = settings.StringValue(name).value_or(QDir::homePath());
    if (!folder.endsWith(QLatin1Char('/')))
        folder += QLatin1Char('/');
    return folder;
}

void CMainFrame::Remember(const QString& name, const QString& path)
{
    SettingsStore settings(QString::fromLatin1(SettingsKeyPath));
    settings.WriteString(name, QFileInfo(path).absolutePath() + QLatin1Char('/'));
    settings.Sync();
}

void CMainFrame::SubWindowActivated(QMdiSubWindow* window)
{
    auto* child = qobject_cast<CChildFrame*>(window);
    // Losing the focus to a dialog reports no window: the tune stays the active one.
    if (child == nullptr || child == m_activeChild)
        return;
    m_activeChild = child;
    m_transport->ViewActivated();
    m_statusBar->ShowZoom(child->View().ZoomPercent());
    m_follower.LastFollowY = 0;
    m_commands->UpdateAll();
}

void CMainFrame::ChildClosing(CChildFrame& child)
{
    m_transport->ViewClosing(&child.Sequence());
    m_follower.Forget(child.Document());
    if (m_activeChild == &child)
        m_activeChild = nullptr;
}

void CMainFrame::RestartQuickStartTimer()
{
    m_quickStartShown = false;
    m_quickStartTimer.start();
}

void CMainFrame::OnQuickStartTimer()
{
    if (ActiveChild() != nullptr || m_quickStartShown || !isVisible())
        return;
    m_quickStartShown = true;
    auto* chooser = new CQuickStartChooser(m_recentFiles ? m_recentFiles() : QStringList(), this);
    chooser->setAttribute(Qt::WA_DeleteOnClose);
    // A choice brings the offer back once that tune has closed; Close keeps it away.
    connect(chooser, &CQuickStartChooser::NewChosen, this, [this] { m_commands->Run(command::FileNew); });
    connect(chooser, &CQuickStartChooser::OpenChosen, this, [this] { m_commands->Run(command::FileOpen); });
    connect(chooser, &CQuickStartChooser::RecentChosen, this, [this](const QString& path) { OpenDocument(path); });
    chooser->open();
}

void CMainFrame::customEvent(QEvent* event)
{
    if (event->type() == NoteHighlightEvent::Kind) {
        const auto* highlight = static_cast<NoteHighlightEvent*>(event);
        CChildFrame* child = ActiveChild();
        CCorrievalView* view = ActiveView();
        m_follower.Follow(highlight->Note, highlight->On, child != nullptr ? &child->Document() : nullptr, view,
                          [view](int y) { view->KeepInView(static_cast<float>(y)); });
    } else if (event->type() == FollowingStoppedEvent::Kind) {
        m_transport->FollowingStopped();
    }
}

void CMainFrame::closeEvent(QCloseEvent* event)
{
    for (CChildFrame* child : Children()) {
        m_mdiArea->setActiveSubWindow(child);
        if (!child->close()) {
            event->ignore();
            return;
        }
    }
    event->accept();
}

void CMainFrame::ExportWav()
{
    CChildFrame* child = ActiveChild();
    if (child == nullptr)
        return;
    const QString path = AskSavePath(this, *this, QStringLiteral("UserEXP"), QStringLiteral("Export WAV"),
                                     QFileInfo(child->Document().Title()).completeBaseName() + QStringLiteral(".wav"),
                                     QStringLiteral("Wave files (*.wav)|*.wav||"), QStringLiteral(".wav"));
    if (path.isEmpty())
        return;
    const WaitCursor wait;
    m_transport->ExportWav(path);
}

void CMainFrame::ShowUndoSteps()
{
    CCorrievalView* view = ActiveView();
    for (int id : {command::Undo, command::Redo}) {
        QAction* action = m_commands->Action(id);
        QString tip = view == nullptr       ? QString()
                      : id == command::Undo ? view->History().UndoLabel()
                                            : view->History().RedoLabel();
        if (tip.isEmpty())
            tip = action->text();
        if (action->toolTip() != tip)
            action->setToolTip(tip);
    }
}

void CMainFrame::ToggleLock()
{
    CChildFrame* child = ActiveChild();
    if (child == nullptr)
        return;
    CCorrievalDoc& doc = child->Document();
    // The lock is kept in the file, so it is a step of the history like any edit: undoing an
    // earlier step must not quietly undo the lock with it.
    child->View().History().Record(QStringLiteral("Lock"), [&doc] { doc.Locked = doc.Locked != 0 ? 0 : 1; });
    Session().Locked = doc.Locked != 0;
    // The view closes a text area's editor on a tune now locked.
    child->View().OnUpdate();
}

bool CMainFrame::RunCommand(int id)
{
    if (id >= command::StyleFirst && id <= command::StyleLast) {
        ChooseLook(id);
        return true;
    }
    switch (id) {
    // The ribbon's value controls: the transport decides, the frame reads the widget.
    case command::TempoEdit: m_transport->TempoEntered(m_controls.TempoEdit->text()); return true;
    case command::TempoSlider: m_transport->TempoChosen(m_controls.TempoSlider->Value()); return true;
    case command::PartCombo: m_transport->ChoosePart(m_controls.PartCombo->currentIndex() - 1); return true;
    case command::ExportWav: ExportWav(); return true;
    case command::Lock: ToggleLock(); return true;
    case command::ShowMargins:
        Session().ShowMargins = !Session().ShowMargins;
        if (CCorrievalView* view = ActiveView())
            view->viewport()->update();
        return true;
    case command::AutoZoom: m_autoZoom = !m_autoZoom; return true;
    case command::StatusBar: m_statusBar->setVisible(!m_statusBar->isVisible()); return true;
    case command::Windows: ShowWindowsMenu(); return true;
    case command::Link:
        if (m_openLink)
            m_openLink();
        return true;
    default: return false;
    }
}

bool CMainFrame::UpdateCommand(int id, CommandState& state)
{
    CChildFrame* child = ActiveChild();
    if (id >= command::StyleFirst && id <= command::StyleLast) {
        state.enabled = true;
        state.checked = id == m_look;
        return true;
    }
    switch (id) {
    case command::TempoEdit:
    case command::TempoSlider:
    case command::PartCombo:
    case command::ExportWav:
        // Enabled as the transport says; run here, where the file dialog and the ribbon are.
        m_transport->UpdateCommand(id, state);
        return true;
    case command::Lock:
        // A locked tune is one to play from: the lock is offered once it could be played.
        state.enabled = child != nullptr && m_transport->CanLock() && child->Document().HasMusic();
        state.checked = child != nullptr && child->Document().Locked != 0;
        return true;
    case command::ShowMargins:
        state.enabled = true;
        state.checked = Session().ShowMargins;
        return true;
    case command::AutoZoom:
        state.enabled = true;
        state.checked = m_autoZoom;
        return true;
    case command::StatusBar:
        state.enabled = true;
        state.checked = m_statusBar->isVisibleTo(this);
        return true;
    case command::Windows:
        state.enabled = child != nullptr;
        return true;
    case command::Link:
        state.enabled = m_openLink != nullptr;
        return true;
    default: return false;
    }
}

} // namespace corrieval
