#include "FreshUser.h"
#include "ProgramRun.h"
#include "editor/CommandIds.h"
#include "model/SessionState.h"
#include "platform/SettingsStore.h"
#include "shell/AppSettings.h"
#include "shell/CorrievalApp.h"
#include "shell/MainFrame.h"

#include <QDir>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

const QString kFirstStart = QStringLiteral("Application started.\r\n"
                                           "Semaphore not present.\r\n"
                                           "Semaphore created.\r\n"
                                           "ReadRegistrySettings.\r\n"
                                           "WriteRegistrySettings.\r\n"
                                           "InitContextMenuManager.\r\n"
                                           "InitKeyboardManager.\r\n"
                                           "InitTooltipManager.\r\n"
                                           "SetTooltipParams.\r\n"
                                           "CMultiDocTemplate.\r\n"
                                           "AddDocTemplate.\r\n");

// One run of the program in this process: start-up, then the end.
void RunOnce(const std::function<void(CCorrievalApp&)>& whileRunning = {})
{
    CCorrievalApp app;
    ASSERT_TRUE(app.InitInstance({}));
    ASSERT_NE(app.Frame(), nullptr);
    if (whileRunning)
        whileRunning(app);
    app.ExitInstance();
}

TEST(Startup, TracesEveryStepInOrderAndRunsAccumulate)
{
    testing::FreshUser user;
    RunOnce();
    EXPECT_EQ(user.Log(), kFirstStart);
    RunOnce();
    EXPECT_EQ(user.Log(), kFirstStart + kFirstStart);
}

TEST(Startup, FirstRunMakesTheDataFolderAndWritesEverySettingWithItsDefault)
{
    testing::FreshUser user;
    RunOnce();
    for (const char* sub : {"Music Scores", "Templates", "Image Library", "Banners", "Instrument Samples"})
        EXPECT_TRUE(QDir(user.DataFolder() + QLatin1Char('/') + QLatin1String(sub)).exists()) << sub;

    const SettingsStore key(QString::fromLatin1(SettingsKeyPath));
    const QString data = user.DataFolder() + QLatin1Char('/');
    EXPECT_EQ(key.StringValue(QStringLiteral("UserSKB")), data + QStringLiteral("Music Scores/"));
    EXPECT_EQ(key.StringValue(QStringLiteral("UserIMP")), data + QStringLiteral("Music Scores/"));
    EXPECT_EQ(key.StringValue(QStringLiteral("UserEXP")), data + QStringLiteral("Music Scores/"));
    EXPECT_EQ(key.StringValue(QStringLiteral("UserGLM")), data);
    EXPECT_EQ(key.IntValue(QStringLiteral("Autozoom")), 0);
    EXPECT_EQ(key.IntValue(QStringLiteral("Margins")), 0);
    EXPECT_EQ(ReadApplicationLook(), 215);
    EXPECT_FALSE(ReadWindowGeometry().isEmpty()) << "the window's place is kept for the next run";
}

TEST(Startup, AutozoomAndMarginsSetByHandTakeEffectOnceTheFrameExists)
{
    testing::FreshUser user;
    SettingsStore key(QString::fromLatin1(SettingsKeyPath));
    key.WriteInt(QStringLiteral("Autozoom"), 1);
    key.WriteInt(QStringLiteral("Margins"), 7);
    key.WriteString(QStringLiteral("UserSKB"), QStringLiteral("/home/piper/tunes/"));
    ASSERT_TRUE(key.Sync().isEmpty());
    Session().ShowMargins = false;

    RunOnce([](CCorrievalApp& app) {
        EXPECT_TRUE(app.Frame()->AutoZoom());
        EXPECT_TRUE(Session().ShowMargins);
        EXPECT_EQ(ReadUserFolders().Skb, QStringLiteral("/home/piper/tunes/"));
        // What the user turns off while it runs is written back at the end.
        app.Frame()->SetAutoZoom(false);
    });
    const SettingsStore after(QString::fromLatin1(SettingsKeyPath));
    EXPECT_EQ(after.IntValue(QStringLiteral("Autozoom")), 0);
    EXPECT_EQ(after.IntValue(QStringLiteral("Margins")), 1);
}

TEST(Startup, TheAppAnswersForItsOwnCommandsOnly)
{
    testing::FreshUser user;
    RunOnce([](CCorrievalApp& app) {
        for (int id : {command::FileNew, command::FileOpen, command::PrintSetup, command::About,
                       command::Exit, command::ImportGlenmarch, command::ImportBww, command::Help}) {
            CommandState state;
            EXPECT_TRUE(app.UpdateCommand(id, state)) << id;
            EXPECT_TRUE(state.enabled) << id;
        }
        // Whatever belongs to the view or the frame passes by, so the route reaches its owner.
        for (int id : {command::FileSave, command::FileClose, command::Print, command::PageSetup,
                       command::Play, command::Copy, command::Link, command::StyleBlue, command::AutoZoom}) {
            CommandState state;
            EXPECT_FALSE(app.UpdateCommand(id, state)) << id;
            EXPECT_FALSE(app.RunCommand(id)) << id;
        }
    });
}

TEST(Startup, OpensTheFilesOfTheCommandLineAndEndsWhenOneCannotBeOpened)
{
    testing::FreshUser user;
    const QString tune = testing::WriteTune(user.DataFolder());

    QProcess opened;
    testing::Start(opened, {QStringLiteral("Reel.bww")}, user.DataFolder(), true);
    ASSERT_TRUE(opened.waitForFinished(30000));
    EXPECT_EQ(opened.exitCode(), 0) << opened.readAllStandardError().constData();
    EXPECT_EQ(testing::NewestRecentFile(), tune);

    QProcess refused;
    testing::Start(refused, {QStringLiteral("Missing.skb")}, user.DataFolder(), true);
    ASSERT_TRUE(refused.waitForFinished(30000));
    EXPECT_EQ(refused.exitCode(), 1);
    EXPECT_TRUE(refused.readAllStandardError().contains("Missing.skb"));
    EXPECT_EQ(testing::NewestRecentFile(), tune) << "a file that did not open is not listed";
}

} // namespace
} // namespace corrieval
