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

} // namespace corrieval
