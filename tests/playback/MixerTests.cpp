// The mixer's arithmetic, with bank slots filled with known patterns: where each note's words
// land, how parts are summed, the loop inside a recording and the end of a tune.

#include "playback/PlayTune.h"
#include "playback/SampleMixer.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <tuple>
#include <utility>

namespace corrieval {
namespace {

using testing::PlayTune;

class Mixer : public ::testing::Test {
protected:
    // Never 0, so that silence shows, and with a period that does not divide the loop length.
    static std::int16_t Word(std::size_t slot, std::uint32_t index)
    {
        return static_cast<std::int16_t>(slot * 3000 + index % 2999 + 1);
    }

    void SetUp() override
    {
        for (std::size_t slot = 0; slot < SampleBank::SlotCount; ++slot) {
            for (std::uint32_t i = 0; i < SampleBank::FilledWords; ++i)
                SampleBank::Slot(slot)[i] = Word(slot, i);
        }
    }

    // At 120 bpm in 4/4 the rate is 960 ticks a second, and a crotchet of 480 ticks is 22,050
    // words exactly.
    void Start(PlayTune& tune, std::int32_t tempo = 120)
    {
        mixer.SetSequence(&tune.Sequence());
        mixer.SetTempo(tempo);
        mixer.Reset(false);
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
    PlayResult result = PlayOk;
    std::uint32_t produced = 0;
};

TEST_F(Mixer, GivenTwoCrotchetsWhenPulledThenTheSecondFollowsTheFirstExactlyInWords)
{
    // At 74 bpm, with 592 ticks a second, a crotchet is trunc(480 / 592 x 44100) = 35,756 words.
    for (const auto& [tempo, crotchet] : {std::pair{120, 22050u}, {74, 35756u}}) {
        PlayTune tune;
        tune.Add(0, 4, 11); // Low G, slot 0
        tune.Add(0, 4, 10); // Low A, slot 1
        Start(tune, tempo);

        const std::vector<std::int16_t> words = Pull(40000);

        EXPECT_EQ(result, PlayOk);
        EXPECT_EQ(produced, 40000u);
        EXPECT_EQ(words[crotchet - 1], Word(0, crotchet - 1)) << tempo << " bpm";
        EXPECT_EQ(words[crotchet], Word(1, 0)) << tempo << " bpm";
        EXPECT_EQ(words[39999], Word(1, 39999 - crotchet));
    }
}

TEST_F(Mixer, GivenALongNoteWhenItReachesTheLoopLengthThenItsRecordingStartsAgain)
{
    PlayTune tune;
    tune.Add(0, 1, 7).Weight = 2.0f; // 3840 ticks, 176,400 words
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
        std::fill_n(SampleBank::Slot(8), SampleBank::FilledWords, level);
        PlayTune tune(1, parts, 1);
        for (int part = 0; part < parts; ++part)
            tune.Add(tune.Bar(0, part), 4, 3);
        Start(tune);
        mixer.SetPart(0);
        return Pull(100)[50];
    };
    // Two parts at full scale use the whole range: each is halved first. Halving truncates
    // towards zero, so -1 gives 0 and two of them stay silent. Four parts above half scale wrap
    // round; there is no clipping.
    for (const auto& [parts, level, mixed] :
         {std::tuple{2, 32767, 32766}, {2, -1, 0}, {2, -3, -2}, {4, 20000, 40000 - 65536}})
        EXPECT_EQ(mixOf(parts, static_cast<std::int16_t>(level)), mixed) << parts << " x " << level;
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
        for (int pull = 1; pull <= 7; ++pull) {
            Pull(4410);
            ASSERT_EQ(result, pull < 7 ? PlayOk : PlayFailed) << "pull " << pull;
            ASSERT_EQ(produced, 4410u);
        }
        const std::vector<std::int16_t> after = Pull(4410);
        EXPECT_EQ(result, PlayFailed);
        EXPECT_EQ(produced, 0u);
        EXPECT_EQ(std::count(after.begin(), after.end(), 0), 4410);
    }
}

} // namespace
} // namespace corrieval
