#include "FreshUser.h"
#include "ProgramRun.h"
#include "shell/SingleInstance.h"

#include <QLocalSocket>
#include <QSignalSpy>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::NewestRecentFile;
using testing::Start;
using testing::WaitUntil;

bool Listening()
{
    QLocalSocket socket;
    socket.connectToServer(SingleInstance::ServerName());
    return socket.waitForConnected(100);
}

TEST(SingleInstance, ABareSecondStartSaysSoAndLeavesTheFirstAlone)
{
    testing::FreshUser user;
    SingleInstance first;
    ASSERT_TRUE(first.TryBecomeFirst());

    QProcess second;
    Start(second, {});
    ASSERT_TRUE(second.waitForFinished(30000));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_TRUE(QString::fromUtf8(second.readAllStandardError())
                    .contains(QStringLiteral("Tormaven Software Ltd: Corrieval is already running on this "
                                             "computer.\nClick its button in the task bar to activate it.")));
    EXPECT_EQ(user.Log(),
              QStringLiteral("Application started.\r\nApplication terminated abnormally [SEM].\r\n"));
    EXPECT_TRUE(Listening());
}

TEST(SingleInstance, FilesOfASecondStartGoToTheRunningCopyWithTheirWholePaths)
{
    testing::FreshUser user;
    SingleInstance first;
    ASSERT_TRUE(first.TryBecomeFirst());
    QSignalSpy arrived(&first, &SingleInstance::FilesArrived);

    QProcess second;
    Start(second, {QStringLiteral("Reel.skb"), QStringLiteral("../Jig and Reel.bww")}, user.DataFolder());
    ASSERT_TRUE(arrived.wait(30000));
    ASSERT_TRUE(second.waitForFinished(30000));
    EXPECT_EQ(second.exitCode(), 0) << second.readAllStandardError().constData();
    const QDir folder(user.DataFolder());
    EXPECT_EQ(arrived.front().front().toStringList(),
              QStringList({folder.absoluteFilePath(QStringLiteral("Reel.skb")),
                           QDir::cleanPath(folder.absoluteFilePath(QStringLiteral("../Jig and Reel.bww")))}));
}

TEST(SingleInstance, TheRunningProgramOpensWhatASecondStartHandsOver)
{
    testing::FreshUser user;
    QProcess first;
    Start(first, {});
    ASSERT_TRUE(WaitUntil(Listening)) << "the program did not start";

    const QString tune = testing::WriteTune(user.DataFolder());
    QProcess second;
    Start(second, {tune});
    ASSERT_TRUE(second.waitForFinished(30000));
    EXPECT_EQ(second.exitCode(), 0);

    EXPECT_TRUE(WaitUntil([&] { return NewestRecentFile() == tune; })) << NewestRecentFile().toStdString();
    first.kill();
    first.waitForFinished();
}

TEST(SingleInstance, AFolderTooDeepForASocketStillTakesHandOvers)
{
    testing::FreshUser user;
    const QString deep =
        qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/") + QString(120, QLatin1Char('r'));
    qputenv("XDG_RUNTIME_DIR", deep.toUtf8());
    SingleInstance first;
    ASSERT_TRUE(first.TryBecomeFirst());
    QSignalSpy arrived(&first, &SingleInstance::FilesArrived);
    QProcess second;
    Start(second, {QStringLiteral("/t/Reel.skb")});
    ASSERT_TRUE(arrived.wait(30000));
    ASSERT_TRUE(second.waitForFinished(30000));
    EXPECT_EQ(second.exitCode(), 0);
}

TEST(SingleInstance, AHandOverWithNoCopyListeningFailsAtConnect)
{
    testing::FreshUser user;
    EXPECT_EQ(SingleInstance::HandOver({QStringLiteral("/t/Reel.skb")}), QStringLiteral("CONNECT"));
}

TEST(SingleInstance, TheMarkOfACopyThatDiedIsTakenOver)
{
    testing::FreshUser user;
    QProcess crashed;
    Start(crashed, {});
    ASSERT_TRUE(WaitUntil(Listening)) << "the program did not start";
    EXPECT_FALSE(SingleInstance().TryBecomeFirst());

    crashed.kill();
    ASSERT_TRUE(crashed.waitForFinished());
    SingleInstance next;
    EXPECT_TRUE(next.TryBecomeFirst());
    EXPECT_TRUE(Listening()) << "the dead copy's socket is replaced";
}

} // namespace
} // namespace corrieval
