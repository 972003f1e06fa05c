#include "FreshUser.h"
#include "shell/RecentFiles.h"

#include <QSignalSpy>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

QString Tune(int n)
{
    return QStringLiteral("/home/piper/tunes/Tune %1.skb").arg(n);
}

TEST(RecentFiles, KeepsTheSixNewestFirstOverRuns)
{
    testing::FreshUser user;
    {
        RecentFiles recent;
        EXPECT_TRUE(recent.Paths().isEmpty());
        for (int n = 1; n <= 8; ++n)
            recent.Add(Tune(n));
        // Opening one again moves it to the front rather than listing it twice.
        recent.Add(Tune(5));
    }
    const RecentFiles nextRun;
    EXPECT_EQ(nextRun.Paths(), QStringList({Tune(5), Tune(8), Tune(7), Tune(6), Tune(4), Tune(3)}));
}

TEST(RecentFiles, ForgetsAFileThatCouldNotBeOpenedAndSaysWhenItChanges)
{
    testing::FreshUser user;
    RecentFiles recent;
    QSignalSpy changed(&recent, &RecentFiles::Changed);
    recent.Add(Tune(1));
    recent.Add(Tune(2));
    recent.Remove(Tune(1));
    recent.Remove(Tune(9)); // not listed: nothing changes
    EXPECT_EQ(changed.count(), 3);
    EXPECT_EQ(RecentFiles().Paths(), QStringList{Tune(2)});
}

TEST(RecentFiles, ShowsNamesWithoutFoldersAndKeepsPathsWhole)
{
    testing::FreshUser user;
    RecentFiles recent;
    recent.Add(QStringLiteral("relative/Reel.skb"));
    EXPECT_TRUE(QFileInfo(recent.Paths().front()).isAbsolute());
    EXPECT_EQ(RecentFiles::DisplayName(Tune(3)), QStringLiteral("Tune 3.skb"));
}

} // namespace
} // namespace corrieval
