#include "shell/MainFrame.h"

#include <QMdiArea>

namespace corrieval {

CMainFrame::CMainFrame(QWidget* parent) : QMainWindow(parent), m_mdiArea(new QMdiArea(this))
{
    m_mdiArea->setViewMode(QMdiArea::TabbedView);
    m_mdiArea->setTabsClosable(true);
    m_mdiArea->setTabsMovable(true);
    setCentralWidget(m_mdiArea);
    setWindowTitle(QStringLiteral("Corrieval"));
}

CCorrievalView* CMainFrame::NewDocument() { return nullptr; }
bool CMainFrame::OpenDocument(const QString&) { return false; }
void CMainFrame::SetPendingImport(const QString& path) { m_pendingImport = path; }
void CMainFrame::SetAutoZoom(bool on) { m_autoZoom = on; }
bool CMainFrame::AutoZoom() const { return m_autoZoom; }
void CMainFrame::RestartQuickStartTimer() {}

} // namespace corrieval
