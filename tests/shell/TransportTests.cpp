// The Play category's state machine against the null sound device: what each command does and
// when it is offered, looping, and the highlight that follows the playing note.

#include "ShellTestSupport.h"
#include "editor/CommandIds.h"
#include "model/Stave.h"
#include "notation/NoteEx.h"
#include "playback/TuneSequence.h"
#include "shell/NoteFollower.h"
#include "shell/Transport.h"
#include "support/RecordingMessages.h"
#include "support/RecordingView.h"
#include "support/ScoreWalk.h"

#include <gtest/gtest.h>

using namespace corrieval;
using namespace corrieval::testing;

namespace {

class Highlights final : public HighlightListener {
public:
    void NoteHighlight(CNoteEx* note, bool on) override { Events.push_back({note, on}); }
    void FollowingStopped() override { ++Stops; }
    std::vector<std::pair<CNoteEx*, bool>> Events;
    int Stops = 0;
};

class TransportTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        if (!SamplesPresent())
            GTEST_SKIP() << "needs the instrument recordings in " << SamplesFolder().toStdString();
        transport = std::make_unique<CTransport>(NullDevice, SamplesFolder(), highlights);
        transport->ChooseInstrument(0);
        transport->SetBindingProvider([this] { return PlayBinding{doc.get(), sequence.get(), &selection}; });
    }

    bool Enabled(int id)
    {
        CommandState state;
        EXPECT_TRUE(transport->UpdateCommand(id, state));
        return state.enabled;
    }

    std::unique_ptr<CCorrievalDoc> doc = SmallTune();
    std::unique_ptr<CTuneSequence> sequence = std::make_unique<CTuneSequence>(doc.get());
    std::vector<CScoObj*> selection;
    Highlights highlights;
    std::unique_ptr<CTransport> transport;
};

} // namespace

TEST_F(TransportTest, PlayPauseResumeStopAndRewindOfferWhatEachStateAllows)
{
    ASSERT_TRUE(transport->CanPlay());
    EXPECT_FALSE(Enabled(command::Stop));
    EXPECT_FALSE(Enabled(command::Pause));

    transport->Play();
    EXPECT_TRUE(transport->IsPlaying());
    EXPECT_TRUE(transport->Following());
    EXPECT_TRUE(Enabled(command::Stop));
    EXPECT_FALSE(Enabled(command::Play));
    EXPECT_FALSE(Enabled(command::Loop));
    EXPECT_FALSE(Enabled(command::InstrumentGallery));

    transport->Pause();
    EXPECT_TRUE(transport->IsPaused());
    EXPECT_FALSE(transport->IsPlaying());
    // While paused only Play leads on; tempo and part may change for the next start.
    EXPECT_TRUE(Enabled(command::Play));
    EXPECT_FALSE(Enabled(command::Stop));
    EXPECT_FALSE(Enabled(command::Rewind));
    EXPECT_TRUE(Enabled(command::TempoEdit));

    transport->Play();
    EXPECT_FALSE(transport->IsPaused());
    EXPECT_TRUE(transport->IsPlaying());

    transport->Rewind();
    EXPECT_TRUE(transport->IsPlaying());

    transport->Stop();
    EXPECT_FALSE(transport->IsPlaying());
    EXPECT_FALSE(transport->Following());
    EXPECT_TRUE(Enabled(command::Play));
}

TEST_F(TransportTest, ATempoOutsideTwentyToTwoHundredIsRefusedAndTheTuneKeepsItsOwn)
{
    RecordingMessages messages;
    std::vector<int> shown;
    QObject::connect(transport.get(), &CTransport::TempoShown, [&](int bpm) { shown.push_back(bpm); });

    EXPECT_EQ(transport->TempoEntered(QStringLiteral("90 bpm")), 90);
    EXPECT_EQ(doc->Tempo, 90);
    EXPECT_TRUE(doc->IsModified());
    for (const char* refused : {"19", "201", "fast", ""}) {
        EXPECT_EQ(transport->TempoEntered(QString::fromLatin1(refused)), 90) << refused;
        EXPECT_EQ(doc->Tempo, 90);
    }
    ASSERT_EQ(messages.Texts.size(), 4);
    EXPECT_EQ(messages.Texts[0],
              QStringLiteral("The tempo must be a whole number of beats per minute from 20 to 200."));
    EXPECT_EQ(shown, (std::vector<int>{90, 90, 90, 90, 90}));

    transport->TempoChosen(120);
    EXPECT_EQ(doc->Tempo, 120);
}

TEST_F(TransportTest, ALoopedTuneStartsAgainAtTheIdleUpdateAfterItEndsAndAStopEndsIt)
{
    doc = SmallTune(1, 1);
    sequence = std::make_unique<CTuneSequence>(doc.get());
    transport->ViewActivated();
    transport->TempoChosen(200);
    transport->ToggleLoop();
    EXPECT_TRUE(transport->LoopSet());
    transport->Play();

    // The idle update sees the buffer playing, then, once it has drained, starts play again.
    int restarts = 0;
    bool sawStop = false;
    ASSERT_TRUE(SpinUntil(
        [&] {
            const bool before = transport->IsPlaying();
            CommandState state;
            transport->UpdateCommand(command::Play, state);
            sawStop = sawStop || !before;
            if (!before && transport->IsPlaying())
                ++restarts;
            return restarts >= 2;
        },
        15000));
    EXPECT_TRUE(sawStop);

    transport->Stop();
    CommandState state;
    transport->UpdateCommand(command::Play, state);
    EXPECT_FALSE(transport->IsPlaying()) << "a stop by the user does not restart";
}

TEST_F(TransportTest, AnotherTuneBecomingActiveStopsPlayShowsItsTempoAndOffersWhatItCanPlay)
{
    std::vector<int> shown;
    QObject::connect(transport.get(), &CTransport::TempoShown, [&](int bpm) { shown.push_back(bpm); });
    transport->Play();
    ASSERT_TRUE(transport->IsPlaying());

    auto other = SmallTune();
    other->Tempo = 96;
    CTuneSequence otherSequence(other.get());
    transport->SetBindingProvider([&] { return PlayBinding{other.get(), &otherSequence, nullptr}; });
    transport->ViewActivated();
    EXPECT_FALSE(transport->IsPlaying());
    EXPECT_EQ(transport->Mixer().Sequence(), &otherSequence);
    EXPECT_EQ(shown, std::vector<int>{96});

    // The window going away lets go of its lists before they are freed.
    transport->ViewClosing(&otherSequence);
    EXPECT_EQ(transport->Mixer().Sequence(), nullptr);

    // A tune with nothing to play offers no play, but the instrument may still be chosen.
    doc = std::make_unique<CCorrievalDoc>();
    doc->OnNewDocument();
    sequence = std::make_unique<CTuneSequence>(doc.get());
    transport->SetBindingProvider([this] { return PlayBinding{doc.get(), sequence.get(), &selection}; });
    transport->ViewActivated();
    EXPECT_FALSE(transport->CanPlay());
    EXPECT_FALSE(Enabled(command::Play));
    EXPECT_FALSE(Enabled(command::ExportWav));
    EXPECT_TRUE(Enabled(command::InstrumentGallery));
}

TEST_F(TransportTest, PlayHighlightsTheNotesInTurnAndAStopLeavesNoneLit)
{
    transport->Play();
    ASSERT_TRUE(SpinUntil([&] {
        QCoreApplication::processEvents();
        return highlights.Events.size() >= 3;
    }));
    EXPECT_TRUE(highlights.Events[0].second);
    EXPECT_FALSE(highlights.Events[1].second) << "the first note goes out before the second lights";
    EXPECT_EQ(highlights.Events[1].first, highlights.Events[0].first);
    transport->Stop();
    EXPECT_GE(highlights.Stops, 1);
}

TEST(NoteFollower, ColoursThePlayingNoteOfItsOwnTuneAndGivesItsColourBack)
{
    auto doc = SmallTune();
    RecordingView view;
    view.Doc = doc.get();
    auto& note = dynamic_cast<CNoteEx&>(*BarOf(*MusicAreas(*doc)[0], 0, 0).ChildAt(0));
    note.SetColour(0xFF112233);
    NoteFollower follower;
    std::vector<int> scrolled;
    const auto scrollTo = [&](int y) { scrolled.push_back(y); };

    follower.Follow(&note, true, doc.get(), &view, scrollTo);
    EXPECT_EQ(note.Colour(), NoteFollower::PlayColour);
    follower.Follow(&note, false, doc.get(), &view, scrollTo);
    EXPECT_EQ(note.Colour(), 0xFF112233u);
    EXPECT_EQ(view.Invalidated.size(), 2u);

    // The stave is scrolled to once, not again for each note on it.
    const CStave& stave = *note.FindAncestor<CStave>();
    const int y = static_cast<int>(stave.Bounds().Y + stave.TopMargin);
    if (y == 0)
        EXPECT_TRUE(scrolled.empty());
    else
        EXPECT_EQ(scrolled, std::vector<int>{y});

    // A note of another tune, and any note while following is off, keeps its colour.
    auto other = SmallTune();
    follower.Follow(&note, true, other.get(), &view, scrollTo);
    EXPECT_EQ(note.Colour(), 0xFF112233u);
    follower.FollowAllowed = false;
    follower.Follow(&note, true, doc.get(), &view, scrollTo);
    EXPECT_EQ(note.Colour(), 0xFF112233u);
}
