#pragma once

#include <QDialog>

namespace corrieval {

// Offered when no tune is open: a new tune, an open dialog, or one of the recent tunes.
class CQuickStartChooser : public QDialog {
    Q_OBJECT

public:
    CQuickStartChooser(const QStringList& recentFiles, QWidget* parent = nullptr);

signals:
    void NewChosen();
    void OpenChosen();
    void RecentChosen(const QString& path);
};

} // namespace corrieval
