#pragma once

#include "editor/CommandTarget.h"
#include "shell/MessageBoxSink.h"

#include <QObject>
#include <QStringList>
#include <memory>

class QPrinter;

namespace corrieval {

class CMainFrame;
class RecentFiles;
class SingleInstance;

// The process object: brings the program up in a fixed order, traced in "corrlog.log", refuses a
// second copy (handing its files to the first), keeps the per-user settings and owns the file
// commands that need no open tune. The main frame routes commands to it last.
class CCorrievalApp : public QObject, public CommandTarget {
    Q_OBJECT

public:
    CCorrievalApp();
    ~CCorrievalApp() override;

    // The one application of the process, null outside its life.
    static CCorrievalApp* Instance();

    // Start-up with the files of the command line. False ends the process at once: a second copy,
    // or a file of the command line that could not be opened.
    bool InitInstance(const QStringList& files);
    // Writes the settings back and lets go of the running copy's mark. Returns the exit status.
    int ExitInstance();
    // The exit status when InitInstance gave false: 0 when the files went to the running copy.
    int RefusedStatus() const { return m_refusedStatus; }

    CMainFrame* Frame() const { return m_frame.get(); }
    RecentFiles& Recent() const { return *m_recent; }
    // The printer whose paper and settings Print setup chose; asked of the print system the first
    // time it is wanted, not at every start.
    QPrinter& Printer();
    // The folder the process started in, against which command-line names are read.
    const QString& StartDirectory() const { return m_startDirectory; }

    void ReadRegistrySettings();
    void WriteRegistrySettings();

    // CommandTarget: New, Open, the imports, Print setup, About, Help and Exit.
    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;

private:
    bool RunSecondInstance(const QStringList& files);
    void OnFileNew();
    void OnFileOpen();
    void OnImport(int id);
    void OnPrintSetup();
    void OnAbout();

    MessageBoxSink m_messages{QStringLiteral("Corrieval")};
    MessageSink* m_previousSink = nullptr;
    QString m_startDirectory;
    std::unique_ptr<SingleInstance> m_instance;
    std::unique_ptr<RecentFiles> m_recent;
    std::unique_ptr<QPrinter> m_printer;
    std::unique_ptr<CMainFrame> m_frame;
    bool m_frameShown = false;
    int m_refusedStatus = 1;
};

} // namespace corrieval
