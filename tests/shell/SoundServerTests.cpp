// Play through a real sound server: a private PulseAudio daemon with a null sink, started by the
// test. The window's side of play (the stream on the frame, highlights posted to it, the note
// coloured and given its colour back) must work with the real output, not only the null one.

#include "ShellTestSupport.h"
#include "editor/CommandIds.h"
#include "formats/score/ScoreFile.h"
#include "notation/NoteEx.h"
#include "platform/QtAudioDevice.h"
#include "shell/CommandTable.h"
#include "shell/MainFrame.h"
#include "shell/NoteFollower.h"
#include "shell/Transport.h"
#include "support/PulseDaemon.h"
#include "support/RecordingMessages.h"
#include "support/ScoreWalk.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace corrieval;
using namespace corrieval::testing;

TEST(SoundServer, ATunePlaysToTheEndWithItsNotesLitInTurn)
{
    if (!PulseDaemon::Installed() || !SamplesPresent())
        GTEST_SKIP() << "needs pulseaudio, parec, pactl and the instrument recordings";
    PulseDaemon daemon;
    ASSERT_TRUE(daemon.Ready());
    qputenv("PULSE_SERVER", daemon.Address().toUtf8());
    RecordingMessages messages;

    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("tune.skb"));
    auto tune = SmallTune(1, 2);
    tune->Tempo = 200;
    SaveScore(*tune, path);

    {
        CMainFrame frame([] { return std::make_unique<platform::QtAudioDevice>(); }, SamplesFolder());
        ASSERT_TRUE(frame.OpenDocument(path));
        ASSERT_TRUE(frame.Commands().State(command::Play).enabled)
            << messages.Texts.join(u'\n').toStdString();
        CCorrievalDoc& doc = frame.ActiveChild()->Document();
        auto& first = *BarOf(*MusicAreas(doc)[0], 0, 0).ChildAt(0);
        auto& second = *BarOf(*MusicAreas(doc)[0], 0, 0).ChildAt(1);
        const auto colourOf = [](CScoObj& note) { return dynamic_cast<CNoteEx&>(note).Colour(); };
        const std::uint32_t plain = colourOf(first);

        frame.Commands().Run(command::Play);
        ASSERT_TRUE(frame.Transport().IsPlaying());
        EXPECT_TRUE(SpinUntil([&] { return colourOf(first) == NoteFollower::PlayColour; }));
        EXPECT_TRUE(SpinUntil([&] { return colourOf(second) == NoteFollower::PlayColour; }));
        EXPECT_EQ(colourOf(first), plain);
        // The end of the tune drains the buffer, stops, and leaves no note lit.
        EXPECT_TRUE(SpinUntil([&] { return !frame.Transport().IsPlaying(); }, 10000));
        EXPECT_TRUE(SpinUntil([&] { return colourOf(second) == plain && !frame.Transport().Following(); }));
        doc.SetModifiedFlag(false);
    }
    qunsetenv("PULSE_SERVER");
    EXPECT_TRUE(messages.Texts.isEmpty()) << messages.Texts.join(u'\n').toStdString();
}
