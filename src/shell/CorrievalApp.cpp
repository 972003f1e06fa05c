#include "shell/CorrievalApp.h"

#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "model/CorrievalDoc.h"
#include "model/SessionState.h"
#include "notation/MusicFont.h"
#include "platform/DataFolder.h"
#include "platform/MovementDefinitions.h"
#include "platform/PrinterPaper.h"
#include "platform/QtAudioDevice.h"
#include "shell/AppLog.h"
#include "shell/AppLook.h"
#include "shell/AppSettings.h"
#include "shell/FileDropFilter.h"
#include "shell/FileDialogs.h"
#include "shell/MainFrame.h"
#include "shell/RecentFiles.h"
#include "shell/ShippedData.h"
#include "shell/SingleInstance.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QIcon>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPrinter>
#include <QScreen>
#include <algorithm>
#include <array>

namespace corrieval {

namespace {
CCorrievalApp* g_app = nullptr;

// A Glenmarch tune is titled after its file: no folder, nothing from the last full stop on.
QString ImportTitle(const QString& path)
{
    const QString name = QFileInfo(path).fileName();
    const qsizetype stop = name.lastIndexOf(QLatin1Char('.'));
    return stop < 0 ? name : name.left(stop);
}

// The commands the application answers for; RunCommand has a case for each.
constexpr std::array kOwnCommands{command::FileNew,   command::FileOpen,   command::ImportGlenmarch,
                                  command::ImportBww, command::PrintSetup, command::About,
                                  command::Help,      command::Exit};

void WarnIfAny(const QString& problem)
{
    if (!problem.isEmpty())
        ShowMessage(problem, MessageKind::Warning);
}
} // namespace

CCorrievalApp::CCorrievalApp() : m_previousSink(SetMessageSink(&m_messages))
{
    g_app = this;
}

CCorrievalApp::~CCorrievalApp()
{
    m_frame.reset();
    SetMessageSink(m_previousSink);
    g_app = nullptr;
}

CCorrievalApp* CCorrievalApp::Instance()
{
    return g_app;
}

// The log traces the steps of start-up in their order, and logs are compared across runs and
// versions. Steps that Qt needs no counterpart for (the manager set-ups, the document template)
// still write their line where the step stood.
bool CCorrievalApp::InitInstance(const QStringList& files)
{
    // Nothing to set up for common controls, OLE or control containers. The settings key is fixed
    // (ProductKeyPath); the look and the recent list come from it, the look first so that even a
    // refused second start speaks in it.
    ApplyApplicationLook(ReadApplicationLook());
    m_recent = std::make_unique<RecentFiles>();
    m_startDirectory = QDir::currentPath();
    QStringList paths;
    for (const QString& file : files)
        paths << QDir::cleanPath(QDir(m_startDirectory).absoluteFilePath(file));

    // The data folder is made first, so that the first run's log has a place.
    const QString folderProblem = PrepareDataFolder();
    AppendLog("Application started.\r\n");

    // A lock file is tested and taken in one step where a semaphore took two; both lines stand.
    m_instance = std::make_unique<SingleInstance>();
    if (!m_instance->TryBecomeFirst())
        return RunSecondInstance(paths);
    AppendLog("Semaphore not present.\r\n");
    AppendLog("Semaphore created.\r\n");
    WarnIfAny(folderProblem);

    ReadRegistrySettings();
    AppendLog("ReadRegistrySettings.\r\n");
    // New tunes take the locale's paper; the printer's is asked for only when printing wants it.
    platform::UseDefaultPrinterPaper();
    WriteRegistrySettings();
    AppendLog("WriteRegistrySettings.\r\n");
    // At first run the shipped movement definitions fill the galleries' store.
    WarnIfAny(InstallMovementDefinitions());

    // Context menus, shortcuts and tooltips need no managers in Qt.
    AppendLog("InitContextMenuManager.\r\n");
    AppendLog("InitKeyboardManager.\r\n");
    AppendLog("InitTooltipManager.\r\n");
    AppendLog("SetTooltipParams.\r\n");
    // The frame makes the documents and their views itself; every tune needs the music font.
    WarnIfAny(LoadMusicFont());
    AppendLog("CMultiDocTemplate.\r\n");
    AppendLog("AddDocTemplate.\r\n");

    m_frame = std::make_unique<CMainFrame>([] { return std::make_unique<platform::QtAudioDevice>(); },
                                           DataSubfolder(QStringLiteral("Instrument Samples")));
    m_frame->SetApplicationCommands(this);
    m_frame->SetRecentFiles([this] { return m_recent->Paths(); });
    m_frame->SetLinkOpener(&OpenStatusBarLink);
    connect(m_frame.get(), &CMainFrame::FileUsed, m_recent.get(), &RecentFiles::Add);
    connect(m_frame.get(), &CMainFrame::FileFailed, m_recent.get(), &RecentFiles::Remove);
    // Now the frame exists, "Autozoom" and "Margins" are taken as well.
    ReadRegistrySettings();

    const QIcon icon =
        QIcon::fromTheme(QStringLiteral("corrieval"), QIcon(QStringLiteral(":/corrieval.svg")));
    QApplication::setWindowIcon(icon);
    m_frame->setWindowIcon(icon);

    new FileDropFilter(*m_frame, [this](const QString& path) { m_frame->OpenDocument(path); });
    connect(m_instance.get(), &SingleInstance::FilesArrived, this, [this](const QStringList& arrived) {
        for (const QString& path : arrived)
            m_frame->OpenDocument(path);
        m_frame->setWindowState(m_frame->windowState() & ~Qt::WindowMinimized);
        m_frame->raise();
        m_frame->activateWindow();
    });

    // A bare start opens nothing; quick start offers what to do.
    for (const QString& path : paths)
        if (!m_frame->OpenDocument(path))
            return false;

    if (const QByteArray geometry = ReadWindowGeometry();
        !geometry.isEmpty() && m_frame->restoreGeometry(geometry))
        m_frame->show();
    else {
        // Where no window manager honours "maximised" (a bare X server), the window still takes
        // the whole screen.
        if (const QScreen* screen = QGuiApplication::primaryScreen())
            m_frame->setGeometry(screen->availableGeometry());
        m_frame->showMaximized();
    }
    m_frameShown = true;
    m_frame->RestartQuickStartTimer();
    return true;
}

bool CCorrievalApp::RunSecondInstance(const QStringList& files)
{
    if (files.isEmpty()) {
        MessageBoxSink(QStringLiteral("Tormaven Software Ltd"))
            .Show(QStringLiteral("Corrieval is already running on this computer.\n"
                                 "Click its button in the task bar to activate it."),
                  MessageKind::Plain);
    } else if (const QString stage = SingleInstance::HandOver(files); !stage.isEmpty()) {
        ShowMessage(QStringLiteral("Could not use DDEML on:\r\n") + files.join(QStringLiteral("\r\n")) +
                        QStringLiteral(" [") + stage + QLatin1Char(']'),
                    MessageKind::OkCancel);
    } else {
        m_refusedStatus = 0;
    }
    AppendLog("Application terminated abnormally [SEM].\r\n");
    return false;
}

int CCorrievalApp::ExitInstance()
{
    if (m_frame) {
        WriteRegistrySettings();
        // A window that never showed (a file of the command line could not be opened) keeps the
        // place of the run before.
        if (m_frameShown)
            WriteWindowGeometry(m_frame->saveGeometry());
    }
    m_frame.reset();
    m_instance.reset();
    return 0;
}

QPrinter& CCorrievalApp::Printer()
{
    if (!m_printer)
        m_printer = std::make_unique<QPrinter>();
    return *m_printer;
}

void CCorrievalApp::ReadRegistrySettings()
{
    ReadUserFolders();
    if (m_frame) {
        const ViewSettings view = ReadViewSettings();
        m_frame->SetAutoZoom(view.AutoZoom);
        Session().ShowMargins = view.Margins;
    }
}

// The folders are written as they change, by the frame's dialogs as well as the app's, so only
// the view settings are left to write.
void CCorrievalApp::WriteRegistrySettings()
{
    if (m_frame)
        WriteViewSettings({m_frame->AutoZoom(), Session().ShowMargins});
}

bool CCorrievalApp::RunCommand(int id)
{
    switch (id) {
    case command::FileNew:
        OnFileNew();
        break;
    case command::FileOpen:
        OnFileOpen();
        break;
    case command::ImportGlenmarch:
    case command::ImportBww:
        OnImport(id);
        break;
    case command::PrintSetup:
        OnPrintSetup();
        break;
    case command::About:
        OnAbout();
        break;
    case command::Help:
        OpenUserGuide();
        break;
    case command::Exit:
        m_frame->close();
        break;
    default:
        return false;
    }
    return true;
}

bool CCorrievalApp::UpdateCommand(int id, CommandState& state)
{
    // All of them work with or without an open tune.
    if (std::find(kOwnCommands.begin(), kOwnCommands.end(), id) == kOwnCommands.end())
        return false;
    state.enabled = true;
    return true;
}

void CCorrievalApp::OnFileNew()
{
    m_frame->NewDocument();
    m_frame->RestartQuickStartTimer();
}

void CCorrievalApp::OnFileOpen()
{
    const QString path = QFileDialog::getOpenFileName(
        m_frame.get(), QString(), ReadUserFolders().Skb,
        QtFileFilter(QStringLiteral("Corrieval files (*.skb)|*.skb|Corrieval templates (*.skt)|*.skt||")));
    if (path.isEmpty())
        return;
    RememberUserFolder(QStringLiteral("UserSKB"), path);
    m_frame->OpenDocument(path);
    m_frame->RestartQuickStartTimer();
}

void CCorrievalApp::OnImport(int id)
{
    const bool glenmarch = id == command::ImportGlenmarch;
    const UserFolders folders = ReadUserFolders();
    // The BWW filter's words say "Glenmarch" too, as they always have.
    const QString filter = glenmarch ? QStringLiteral("Glenmarch files (*.glm)|*.glm||")
                                     : QStringLiteral("Glenmarch files (*.bmw;*.bww)|*.bmw;*.bww||");
    const QString path = QFileDialog::getOpenFileName(
        m_frame.get(), QString(), glenmarch ? folders.Glm : folders.Imp, QtFileFilter(filter));
    if (path.isEmpty())
        return;
    RememberUserFolder(glenmarch ? QStringLiteral("UserGLM") : QStringLiteral("UserIMP"), path);
    m_frame->SetPendingImport(path);
    CCorrievalView* view = m_frame->NewDocument();
    if (glenmarch && view != nullptr) {
        view->Document()->SetTitle(ImportTitle(path));
        for (CChildFrame* child : m_frame->Children())
            if (&child->View() == view)
                child->RefreshTitle();
    }
    m_frame->RestartQuickStartTimer();
}

void CCorrievalApp::OnPrintSetup()
{
    QPageSetupDialog dialog(&Printer(), m_frame.get());
    dialog.exec();
}

void CCorrievalApp::OnAbout()
{
    QMessageBox::about(m_frame.get(), QStringLiteral("About Corrieval"),
                       QStringLiteral("Corrieval %1\nNotation editor and sampled player for Great Highland "
                                      "Bagpipe music.\n\nTormaven Software Ltd")
                           .arg(QCoreApplication::applicationVersion()));
}

} // namespace corrieval
