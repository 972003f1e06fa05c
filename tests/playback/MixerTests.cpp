// The mixer's arithmetic, with bank slots filled with known patterns: where each note's words
// land, how parts are summed, the loop inside a recording, the end of a tune, reset and the
// highlight that the screen follows.

#include "playback/PlayTune.h"
#include "playback/SampleMixer.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <utility>

namespace corrieval {
namespace {

using testing::PlayTune;

class RecordingListener : public HighlightListener {
public:
    void NoteHighlight(CNoteEx* note, bool on) override { Calls.emplace_back(note, on); }
    void FollowingStopped() override { ++Stopped; }

    std::vector<std::pair<const CNoteEx*, bool>> Calls;
    int Stopped = 0;
};

class Mixer : public ::testing::Test {
protected:
    // At 120 bpm in 4/4 the rate is 960 ticks a second, and a crotchet of 480 ticks is 22,050
    // words exactly.
    static constexpr std::uint32_t kCrotchetWords = 22050;

    // Never 0, so that silence shows, and with a period that does not divide the loop length.
    static std::int16_t Word(std::size_t slot, std::uint32_t index)
    {
        return static_cast<std::int16_t>(slot * 3000 + index % 2999 + 1);
    }

    void SetUp() override
    {
        for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot) {
            std::int16_t* words = SampleBank::Slot(slot);
            for (std::uint32_t i = 0; i < SampleBank::FilledWords; ++i)
                words[i] = Word(slot, i);
        }
        mixer.SetHighlightListener(&listener);
    }

    static void Fill(std::size_t slot, std::int16_t value)
    {
        std::fill_n(SampleBank::Slot(slot), SampleBank::FilledWords, value);
    }

    void Start(PlayTune& tune, std::int32_t tempo = 120)
    {
        mixer.SetSequence(&tune.Sequence());
        mixer.SetTempo(tempo);
        mixer.Reset(false);
    }

    void PlayToEnd()
    {
        do
            Pull(20000);
        while (result == PlayOk);
    }

    // Pulls `count` words; `result` and `produced` report what the pull said.
    std::vector<std::int16_t> Pull(std::uint32_t count)
    {
        std::vector<std::int16_t> words(count, 0x5555);
        produced = count;
        result = mixer.Pull(words.data(), produced);
        return words;
    }

    CSampleMixer mixer;
    RecordingListener listener;
    PlayResult result = PlayOk;
    std::uint32_t produced = 0;
};

TEST_F(Mixer, GivenTwoCrotchetsWhenPulledThenTheSecondFollowsTheFirstExactlyInWords)
{
    // At 120 bpm a crotchet is 22,050 words; at 74 bpm, with 592 ticks a second, it is
    // trunc(480 / 592 x 44100) = 35,756.
    for (const auto& [tempo, crotchet] : {std::pair{120, kCrotchetWords}, {74, 35756u}}) {
        PlayTune tune;
        tune.Add(0, 4, 11); // Low G, slot 0
        tune.Add(0, 4, 10); // Low A, slot 1
        Start(tune, tempo);

        const std::vector<std::int16_t> words = Pull(40000);

        EXPECT_EQ(result, PlayOk);
        EXPECT_EQ(produced, 40000u);
        EXPECT_EQ(words[0], Word(0, 0));
        EXPECT_EQ(words[crotchet - 1], Word(0, crotchet - 1)) << tempo << " bpm";
        EXPECT_EQ(words[crotchet], Word(1, 0)) << tempo << " bpm";
        EXPECT_EQ(words[39999], Word(1, 39999 - crotchet));
    }
}

TEST_F(Mixer, GivenALongNoteWhenItReachesTheLoopLengthThenItsRecordingStartsAgain)
{
    PlayTune tune;
    CNoteEx& note = tune.Add(0, 1, 7); // a semibreve of weight 2: 3840 ticks, 176,400 words
    note.Weight = 2.0f;
    Start(tune);

    const std::vector<std::int16_t> words = Pull(140000);

    const std::uint32_t loop = CSampleMixer::LoopWords;
    EXPECT_EQ(words[loop - 1], Word(4, loop - 1));
    EXPECT_EQ(words[loop], Word(4, 0));
    EXPECT_EQ(words[loop + 1], Word(4, 1));
}

TEST_F(Mixer, GivenEveryPartWhenMixedThenPartsAreHalvedAndSummedWithWrapAround)
{
    const auto mixOf = [this](int parts, std::int16_t level) {
        Fill(8, level);
        PlayTune tune(1, parts, 1);
        for (int part = 0; part < parts; ++part)
            tune.Add(tune.Bar(0, part), 4, 3);
        Start(tune);
        mixer.SetPart(0);
        return Pull(100)[50];
    };
    // Two parts at full scale use the whole range: each is halved first.
    EXPECT_EQ(mixOf(2, 32767), 32766);
    // Halving truncates towards zero, so -1 gives 0 and two of them stay silent.
    EXPECT_EQ(mixOf(2, -1), 0);
    EXPECT_EQ(mixOf(2, -3), -2);
    // Four parts above half scale wrap round; there is no clipping.
    EXPECT_EQ(mixOf(4, 20000), static_cast<std::int16_t>(40000 - 65536));
}

TEST_F(Mixer, GivenOnePartChosenWhenMixedThenItIsHeardAloneAtFullLevel)
{
    PlayTune tune(1, 2, 1);
    tune.Add(tune.Bar(0, 0), 4, 11);
    tune.Add(tune.Bar(0, 1), 4, 10);
    Start(tune);

    mixer.SetPart(2);
    EXPECT_EQ(Pull(10)[5], Word(1, 5));

    // A part that the tune does not have is silence.
    mixer.Reset(false);
    mixer.SetPart(3);
    for (std::int16_t word : Pull(1000))
        ASSERT_EQ(word, 0);
}

TEST_F(Mixer, GivenTheEndOfTheFirstPartWhenPulledThenThatPullFailsWithAFullCountAndTheNextIsSilent)
{
    // One crotchet (480 ticks) pulled 4,410 words (100 ms, 96 ticks) at a time. The record is
    // dropped once the position has passed its end: at the seventh pull, which starts at 576.
    // A second part that runs longer is cut off with the first.
    for (int heard : {1, 3}) {
        PlayTune tune(1, 2, 1);
        tune.Add(tune.Bar(0, 0), 4, 11);
        tune.Add(tune.Bar(0, 1), 1, 10);
        Start(tune);
        mixer.SetPart(heard);
        for (int pull = 1; pull <= 6; ++pull) {
            Pull(4410);
            ASSERT_EQ(result, PlayOk) << "pull " << pull;
            ASSERT_EQ(produced, 4410u);
        }
        Pull(4410);
        EXPECT_EQ(result, PlayFailed);
        EXPECT_EQ(produced, 4410u);

        const std::vector<std::int16_t> after = Pull(4410);
        EXPECT_EQ(result, PlayFailed);
        EXPECT_EQ(produced, 0u);
        EXPECT_EQ(std::count(after.begin(), after.end(), 0), 4410);
    }
}

TEST_F(Mixer, GivenMoreNotesThanThePartTakesInWhenPulledThenTheRestWaitForALaterPull)
{
    // 32 demisemiquavers of 60 ticks, 2,756 words each; a part takes in 30 records at most.
    PlayTune tune;
    for (int i = 0; i < 32; ++i)
        tune.Add(0, 32, 11 - i % 2);
    Start(tune);

    const std::vector<std::int16_t> words = Pull(32 * 2756);

    EXPECT_EQ(words[29 * 2756], Word(1, 0));
    EXPECT_EQ(words[30 * 2756 - 1], Word(1, 2755));
    EXPECT_EQ(words[30 * 2756], 0);
    EXPECT_EQ(words.back(), 0);
}

TEST_F(Mixer, GivenNoClockOrNoPlaceToWriteWhenPulledThenNothingIsPlayed)
{
    PlayTune tune;
    tune.Add(0, 4, 11);
    Start(tune, 0);
    Pull(100);
    EXPECT_EQ(result, PlayFailed);
    EXPECT_EQ(produced, 0u);

    mixer.SetTempo(120);
    mixer.Reset(false);
    std::uint32_t count = 10;
    EXPECT_EQ(mixer.Pull(nullptr, count), PlayBadArgument);
    EXPECT_EQ(count, 0u);

    CSampleMixer unbound;
    unbound.Reset(false);
    unbound.Reset(true);
    std::vector<std::int16_t> words(10, 1);
    count = 10;
    EXPECT_EQ(unbound.Pull(words.data(), count), PlayFailed);
    EXPECT_EQ(unbound.TicksPerSecond(), 0);
}

TEST_F(Mixer, GivenAResetWhenPulledAgainThenPlayStartsFromTheTopWithTheScoreAsItIsNow)
{
    PlayTune tune;
    tune.Add(0, 4, 11);
    Start(tune);
    mixer.SetLoop(true);
    const std::vector<std::int16_t> first = Pull(3000);
    Pull(3000);

    mixer.Reset(true);
    EXPECT_EQ(listener.Stopped, 1);
    mixer.Reset(false);
    EXPECT_EQ(Pull(3000), first);
    EXPECT_TRUE(mixer.Loop());

    // A finished tune starts again after a reset; an edit since is heard.
    PlayToEnd();
    static_cast<CNoteEx&>(*tune.Bar(0).ChildAt(0)).Pitch = 3;
    mixer.Reset(false);
    EXPECT_EQ(Pull(10)[0], Word(8, 0));
    EXPECT_EQ(result, PlayOk);
}

TEST_F(Mixer, GivenElapsedTimeWhenFollowedThenOneNoteOfTheFirstPartIsLitAtATime)
{
    PlayTune tune(1, 2, 1);
    CNoteEx& a = tune.Add(0, 4);
    CNoteEx& b = tune.Add(0, 4);
    tune.Add(0, 4);
    CNoteEx& d = tune.Add(0, 4);
    tune.Add(tune.Bar(0, 1), 1);
    Start(tune);
    mixer.SetPart(2); // highlighting follows the first part whichever is heard
    using Calls = std::vector<std::pair<const CNoteEx*, bool>>;

    mixer.UpdateHighlight(0);
    EXPECT_EQ(listener.Calls, (Calls{{&a, true}}));

    // Twice the ticks of the elapsed time, against the word clock: 480 ticks come at 250 ms.
    mixer.UpdateHighlight(249);
    EXPECT_EQ(listener.Calls.size(), 1u);
    mixer.UpdateHighlight(250);
    EXPECT_EQ(listener.Calls, (Calls{{&a, true}, {&a, false}, {&b, true}}));

    // A late tick passes over notes that have gone by without lighting them.
    listener.Calls.clear();
    mixer.UpdateHighlight(760);
    EXPECT_EQ(listener.Calls, (Calls{{&b, false}, {&d, true}}));

    // A stop leaves nothing lit.
    listener.Calls.clear();
    mixer.Reset(true);
    EXPECT_EQ(listener.Calls, (Calls{{&d, false}}));
    for (const CNoteSample* record : tune.Sequence().PlayList(0))
        EXPECT_FALSE(record->Highlighted);

    // When the last note has gone by it is put out and nothing else is lit.
    mixer.Reset(false);
    mixer.UpdateHighlight(0);
    mixer.UpdateHighlight(760);
    listener.Calls.clear();
    mixer.UpdateHighlight(1000);
    EXPECT_EQ(listener.Calls, (Calls{{&d, false}}));

    // Once the tune has finished the screen is no longer followed.
    mixer.Reset(false);
    PlayToEnd();
    listener.Calls.clear();
    mixer.UpdateHighlight(0);
    EXPECT_TRUE(listener.Calls.empty());
}

} // namespace
} // namespace corrieval
