#pragma once

#include <QMainWindow>

class QMdiArea;

namespace corrieval {

// The one top-level window: tabbed tunes under the ribbon, the status bar, and what outlives any
// one tune (the mixer and the sound stream).
class CMainFrame : public QMainWindow {
    Q_OBJECT

public:
    explicit CMainFrame(QWidget* parent = nullptr);

private:
    QMdiArea* m_mdiArea;
};

} // namespace corrieval
