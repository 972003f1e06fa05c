#pragma once

#include <QObject>
#include <QStringList>
#include <functional>

namespace corrieval {

// Lets the user drop tunes on a window: local files that the program opens (scores, templates,
// Glenmarch, BWW and BMW files) are accepted and handed to `open` one by one; anything else is
// refused at the window's edge, so the cursor says so before the drop.
class FileDropFilter : public QObject {
    Q_OBJECT

public:
    using Opener = std::function<void(const QString& path)>;
    // Installs itself on `window` and makes it accept drops.
    FileDropFilter(QWidget& window, Opener open);

    // The files of a drop that would be opened.
    static QStringList OpenableFiles(const QList<QUrl>& urls);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Opener m_open;
};

} // namespace corrieval
