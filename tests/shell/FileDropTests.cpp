#include "shell/FileDropFilter.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

QList<QUrl> Urls(const QStringList& items)
{
    QList<QUrl> urls;
    for (const QString& item : items)
        urls << (item.contains(QLatin1String("://")) ? QUrl(item) : QUrl::fromLocalFile(item));
    return urls;
}

TEST(FileDrop, TakesLocalTunesOnly)
{
    EXPECT_EQ(
        FileDropFilter::OpenableFiles(Urls({"/t/a.skb", "/t/b.SKT", "/t/c.glm", "/t/d.bww", "/t/e.BMW",
                                            "/t/f.skp", "/t/g.txt", "/t/skb", "https://example.org/h.skb"})),
        QStringList({"/t/a.skb", "/t/b.SKT", "/t/c.glm", "/t/d.bww", "/t/e.BMW"}));
}

TEST(FileDrop, ADropOnTheWindowOpensEachTuneOnceTheDropIsOver)
{
    QWidget window;
    QStringList opened;
    new FileDropFilter(window, [&](const QString& path) { opened << path; });
    EXPECT_TRUE(window.acceptDrops());

    QMimeData data;
    data.setUrls(Urls({"/t/a.bww", "/t/notes.txt", "/t/b.skb"}));
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &enter);
    EXPECT_TRUE(enter.isAccepted());

    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_TRUE(opened.isEmpty()) << "not while the drag source waits";
    QApplication::processEvents();
    EXPECT_EQ(opened, QStringList({"/t/a.bww", "/t/b.skb"}));

    QMimeData text;
    text.setUrls(Urls({"/t/notes.txt"}));
    QDragEnterEvent refused(QPoint(5, 5), Qt::CopyAction, &text, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&window, &refused);
    EXPECT_FALSE(refused.isAccepted());
}

} // namespace
} // namespace corrieval
