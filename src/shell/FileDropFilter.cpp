#include "shell/FileDropFilter.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace corrieval {

namespace {
bool Openable(const QString& path)
{
    static const QStringList suffixes{QStringLiteral("skb"), QStringLiteral("skt"), QStringLiteral("glm"),
                                      QStringLiteral("bww"), QStringLiteral("bmw")};
    return suffixes.contains(QFileInfo(path).suffix().toLower());
}
} // namespace

FileDropFilter::FileDropFilter(QWidget& window, Opener open) : QObject(&window), m_open(std::move(open))
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

QStringList FileDropFilter::OpenableFiles(const QList<QUrl>& urls)
{
    QStringList files;
    for (const QUrl& url : urls)
        if (url.isLocalFile() && Openable(url.toLocalFile()))
            files << url.toLocalFile();
    return files;
}

bool FileDropFilter::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
        auto* drag = static_cast<QDragMoveEvent*>(event);
        if (!OpenableFiles(drag->mimeData()->urls()).isEmpty())
            drag->acceptProposedAction();
        else
            drag->ignore();
        return true;
    }
    if (event->type() == QEvent::Drop) {
        auto* drop = static_cast<QDropEvent*>(event);
        const QStringList files = OpenableFiles(drop->mimeData()->urls());
        if (files.isEmpty())
            return false;
        drop->acceptProposedAction();
        // Opened once the drop is over: a message about a damaged file must not hold the drag
        // source waiting.
        QMetaObject::invokeMethod(
            this,
            [this, files] {
                for (const QString& file : files)
                    m_open(file);
            },
            Qt::QueuedConnection);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace corrieval
