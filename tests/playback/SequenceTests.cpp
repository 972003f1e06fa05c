// From the score to play lists: each rule of the walk as a small tune built in code, given, when
// the sequence is built, then what sounds.

#include "notation/FixedNoteGroup.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "playback/PlayTune.h"
#include "playback/SampleBank.h"

#include <gtest/gtest.h>
#include <ostream>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace corrieval {
namespace {

using testing::PlayTune;

// What a play-list record says about sound: when, how long, which note.
struct Sound {
    std::uint32_t Start;
    std::uint32_t Length;
    const CNoteEx* Note;
    bool operator==(const Sound&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Sound& s)
{
    return out << "{" << s.Start << ", " << s.Length << ", note " << static_cast<const void*>(s.Note) << "}";
}

std::vector<Sound> Sounds(const CNoteSampleArray& list)
{
    std::vector<Sound> sounds;
    for (const CNoteSample* record : list)
        sounds.push_back({record->Start, record->Length, record->Note});
    return sounds;
}

std::vector<Sound> Played(const CTuneSequence& sequence, int part = 0)
{
    return Sounds(sequence.PlayList(part));
}

// The notes that sound, in order, without their times.
std::vector<const CNoteEx*> Order(const CTuneSequence& sequence, int part = 0)
{
    std::vector<const CNoteEx*> notes;
    for (const CNoteSample* record : sequence.PlayList(part))
        notes.push_back(record->Note);
    return notes;
}

TEST(SequenceEmpty, GivenNoMusicWhenBuiltThenEveryListIsEmptyAndThereIsNoClock)
{
    CTuneSequence none(nullptr);
    none.Build(nullptr);

    CCorrievalDoc noArea;
    noArea.PageWidth = noArea.PageHeight = 8;
    CTuneSequence bare(&noArea);
    bare.Build(nullptr);

    PlayTune staveless;
    staveless.Area().SetPartCount(0);
    CTuneSequence& noStaves = staveless.Build();

    for (const CTuneSequence* sequence : {&none, &bare, &noStaves}) {
        for (int part = 0; part < CTuneSequence::PartCount; ++part) {
            EXPECT_TRUE(sequence->PlayList(part).empty());
            EXPECT_TRUE(sequence->WrittenList(part).empty());
        }
        EXPECT_EQ(sequence->CurrentTimeSig(), nullptr);
        EXPECT_EQ(sequence->TicksPerSecond(74), 0);
    }
}

TEST(SequenceNotes, GivenCrotchetsWhenBuiltThenTheyFollowOneAnotherWithTheirRecordings)
{
    PlayTune tune;
    CNoteEx& lowG = tune.Add(0, 4, 11);
    CNoteEx& highA = tune.Add(0, 4, 3);
    CNoteEx& d = tune.Add(0, 4, 7);

    const CTuneSequence& sequence = tune.Build();

    EXPECT_EQ(Played(sequence), (std::vector<Sound>{{0, 480, &lowG}, {480, 480, &highA}, {960, 480, &d}}));
    const CNoteSampleArray& play = sequence.PlayList(0);
    const CNoteSampleArray& written = sequence.WrittenList(0);
    ASSERT_EQ(written.size(), 3u);
    for (std::size_t i = 0; i < play.size(); ++i) {
        const std::int32_t index = 11 - play[i]->Note->Pitch;
        EXPECT_EQ(play[i]->SampleIndex, index);
        EXPECT_EQ(play[i]->SampleData, SampleBank::Slot(static_cast<std::size_t>(index)));
        EXPECT_EQ(play[i]->ReadPosition, 0u);
        EXPECT_FALSE(play[i]->Highlighted);
        // The mixer plays its own copies; the written records keep their bar for stamping.
        EXPECT_NE(play[i], written[i]);
        EXPECT_EQ(play[i]->Bar, nullptr);
        EXPECT_EQ(written[i]->Bar, &tune.Bar(0));
    }

    // A pitch outside the scale, from a damaged file, keeps its time and plays silence.
    d.Pitch = 12;
    EXPECT_EQ(tune.Build().PlayList(0).back()->SampleData, nullptr);
}

TEST(SequenceNotes, GivenNotesOutOfListOrderWhenBuiltThenTheySoundInTheOrderOnThePage)
{
    PlayTune tune;
    CBarEx& bar = tune.Bar(0);
    CNoteEx& second = tune.Add(0, 4);
    CNoteEx& first = tune.Add(0, 4);
    const RectF a = second.Bounds();
    second.SetBounds(first.Bounds());
    first.SetBounds(a);
    // A beamed group and a movement give their own notes, which take their places among the rest.
    auto* group = static_cast<CNoteGroupEx*>(bar.AddChild(std::make_unique<CNoteGroupEx>(), false));
    CNoteEx& beamedLater = tune.AddTo(*group, bar, 8);
    CNoteEx& beamedEarlier = tune.AddTo(*group, bar, 8);
    const RectF later = beamedLater.Bounds();
    beamedLater.SetBounds(beamedEarlier.Bounds());
    beamedEarlier.SetBounds(later);
    auto* movement = static_cast<CFixedNoteGroup*>(bar.AddChild(std::make_unique<CFixedNoteGroup>(), false));
    CNoteEx& grace = tune.AddTo(*movement, bar, 64);
    CNoteEx& last = tune.Add(0, 4);

    EXPECT_EQ(Order(tune.Build()),
              (std::vector<const CNoteEx*>{&first, &second, &beamedEarlier, &beamedLater, &grace, &last}));
}

TEST(SequenceTime, GivenSignaturesWhenBuiltThenEveryFullBarHasTheSameLengthPerBeatUnit)
{
    // A crotchet is its share of a 1920-tick bar: 960 in 2/4, 640 in 3/4.
    for (const auto& [sigType, crotchet] : {std::pair{6, 960u}, {7, 640u}, {8, 480u}}) {
        PlayTune tune(1, 1, 1, sigType);
        tune.Add(0, 4);
        EXPECT_EQ(tune.Build().PlayList(0).front()->Length, crotchet) << "signature " << sigType;
    }
    // Gracenotes are the same share of any bar: 20 ticks in 6/8, 80 in 3/2.
    for (const auto& [sigType, grace] : {std::pair{12, 20u}, {4, 80u}}) {
        PlayTune tune(1, 1, 1, sigType);
        tune.AddGracenotes(0, 1);
        EXPECT_EQ(tune.Build().PlayList(0).front()->Length, grace) << "signature " << sigType;
    }
}

TEST(SequenceTime, GivenAChangeOfSignatureWhenBuiltThenItHoldsIntoTheNextSystemAndSetsTheRate)
{
    PlayTune tune(2, 1, 2);
    tune.Add(0, 4);
    tune.Config(1).TimeSig.SetType(12); // 6/8 from the second bar
    tune.Add(1, 4);
    tune.Add(tune.Bar(0, 0, 1), 4);

    const CTuneSequence& sequence = tune.Build();

    const CNoteSampleArray& play = sequence.PlayList(0);
    ASSERT_EQ(play.size(), 3u);
    EXPECT_EQ(play[0]->Length, 480u);
    EXPECT_EQ(play[1]->Length, 320u); // (4 / 6) x 480 for a crotchet of 6/8
    EXPECT_EQ(play[2]->Length, 320u);
    // The rate comes from the signature the walk ended on: 6/8 counts half as many ticks.
    EXPECT_EQ(sequence.CurrentTimeSig(), &tune.Config(1).TimeSig);
    EXPECT_EQ(sequence.TicksPerSecond(74), 296);
}

TEST(SequenceTime, GivenATempoWhenAskedThenTheRateHasNoBeatsInIt)
{
    for (const auto& [sigType, rate74, rate120] :
         {std::tuple{8, 592.0, 960.0}, {1, 592.0, 960.0}, {12, 296.0, 480.0}, {3, 1184.0, 1920.0}}) {
        PlayTune tune(1, 1, 1, sigType);
        tune.Add(0, 4);
        const CTuneSequence& sequence = tune.Build();
        EXPECT_EQ(sequence.TicksPerSecond(74), rate74) << "signature " << sigType;
        EXPECT_EQ(sequence.TicksPerSecond(120), rate120) << "signature " << sigType;
    }
}

TEST(SequenceDuration, GivenDotsCutsAndWeightsWhenBuiltThenLengthsFollowThem)
{
    PlayTune tune;
    CNoteEx& dotted = tune.Add(0, 4);
    dotted.DotCut = CNoteEx::Dotted;
    CNoteEx& cut = tune.Add(0, 4);
    cut.DotCut = CNoteEx::Cut;
    CNoteEx& heavy = tune.Add(0, 4);
    heavy.Weight = 1.4f;

    // 1.4 as a float is a little under 1.4, so the truncated length is 671, not 672.
    EXPECT_EQ(Played(tune.Build()),
              (std::vector<Sound>{{0, 720, &dotted}, {720, 240, &cut}, {960, 671, &heavy}}));
}

TEST(SequenceGracenotes, GivenGracenotesBeforeACrotchetWhenBuiltThenTheyTakeTheirTimeFromIt)
{
    PlayTune tune;
    tune.AddGracenotes(0, 3);
    CNoteEx& crotchet = tune.Add(0, 4);
    CNoteEx& next = tune.Add(0, 4);

    const std::vector<Sound> sounds = Played(tune.Build());

    ASSERT_EQ(sounds.size(), 5u);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(sounds[static_cast<std::size_t>(i)].Length, 40u);
    EXPECT_EQ(sounds[3], (Sound{120, 360, &crotchet}));
    EXPECT_EQ(sounds[4], (Sound{480, 480, &next}));
}

TEST(SequenceGracenotes, GivenANoteSqueezedBelowFortyWhenBuiltThenItSoundsSixtyAndTheNextPaysForIt)
{
    PlayTune tune;
    tune.AddGracenotes(0, 3);
    CNoteEx& semiquaver = tune.Add(0, 16); // 120 ticks, all taken by the gracenotes
    CNoteEx& crotchet = tune.Add(0, 4);

    const std::vector<Sound> sounds = Played(tune.Build());

    ASSERT_EQ(sounds.size(), 5u);
    EXPECT_EQ(sounds[3], (Sound{120, 60, &semiquaver}));
    EXPECT_EQ(sounds[4], (Sound{180, 420, &crotchet}));
}

TEST(SequenceGracenotes, GivenGracenotesLongerThanTheirNoteWhenBuiltThenTheNoteIsShortenedNotWrapped)
{
    // Two gracenotes overdraw a demisemiquaver (60) by 20: it keeps 60 less the 20.
    PlayTune two;
    two.AddGracenotes(0, 2);
    two.Add(0, 32);
    EXPECT_EQ(two.Build().PlayList(0).back()->Length, 40u);

    // Four overdraw it by 100, more than the minimum: nothing is left, rather than four billion.
    PlayTune four;
    four.AddGracenotes(0, 4);
    four.Add(0, 32);
    CNoteEx& crotchet = four.Add(0, 4);
    const CNoteSampleArray& play = four.Build().PlayList(0);
    ASSERT_EQ(play.size(), 6u);
    EXPECT_EQ(play[4]->Length, 0u);
    EXPECT_EQ(play[5]->Note, &crotchet);
    EXPECT_EQ(play[5]->Length, 420u);
}

TEST(SequenceGracenotes, GivenGracenotesEndingABarWhenBuiltThenTheNextBarKeepsItsTime)
{
    PlayTune tune(1, 1, 2);
    tune.Add(0, 4);
    tune.AddGracenotes(0, 2);
    CNoteEx& next = tune.Add(1, 4);

    const CNoteSampleArray& play = tune.Build().PlayList(0);

    EXPECT_EQ(play.back()->Note, &next);
    EXPECT_EQ(play.back()->Length, 480u);
}

TEST(SequenceTies, GivenATieOverABarLineWhenBuiltThenOneRecordCarriesBothLengths)
{
    PlayTune tune(1, 1, 2);
    CNoteEx& a = tune.Add(0, 4);
    CNoteEx& b = tune.Add(0, 4);
    CNoteEx& c = tune.Add(0, 4);
    CNoteEx& tiedFrom = tune.Add(0, 4);
    CNoteEx& tiedTo = tune.Add(1, 4);
    CNoteEx& after = tune.Add(1, 2);
    tune.Tie({&tiedFrom, &tiedTo});

    const CTuneSequence& sequence = tune.Build();

    EXPECT_EQ(Played(sequence),
              (std::vector<Sound>{
                  {0, 480, &a}, {480, 480, &b}, {960, 480, &c}, {1440, 960, &tiedTo}, {2400, 960, &after}}));
    // The bar totals are unchanged: the note after the tie starts where it is written.
    EXPECT_EQ(sequence.WrittenList(0).back()->Start, 2400u);
}

TEST(SequenceTies, GivenAnEmptyBarInsideATieWhenBuiltThenTheTieCarriesOverIt)
{
    PlayTune tune(1, 1, 3);
    tune.Add(0, 2);
    CNoteEx& tiedFrom = tune.Add(0, 2);
    CNoteEx& tiedTo = tune.Add(2, 2);
    tune.Tie({&tiedFrom, &tiedTo});

    EXPECT_EQ(Played(tune.Build()).back(), (Sound{960, 1920, &tiedTo}));
}

TEST(SequenceTies, GivenATieInsideOneBarWhenBuiltThenItIsWrittenWithTheFirstOrLastNote)
{
    // A pair followed by a plain note is credited to the first of the pair.
    PlayTune middle;
    CNoteEx& first = middle.Add(0, 4);
    CNoteEx& second = middle.Add(0, 4);
    CNoteEx& plain = middle.Add(0, 2);
    middle.Tie({&first, &second});
    EXPECT_EQ(Played(middle.Build()), (std::vector<Sound>{{0, 960, &first}, {960, 960, &plain}}));

    // A pair that ends the bar is written at the end with its last note.
    PlayTune end;
    CNoteEx& opening = end.Add(0, 2);
    CNoteEx& from = end.Add(0, 4);
    CNoteEx& to = end.Add(0, 4);
    end.Tie({&from, &to});
    EXPECT_EQ(Played(end.Build()), (std::vector<Sound>{{0, 960, &opening}, {960, 960, &to}}));
}

TEST(SequenceTies, GivenATieToANoteFurtherOnWhenBuiltThenNoTimeIsLost)
{
    // The first note of the bar is tied to a note of the next bar, with a plain note between.
    PlayTune tune(1, 1, 2);
    CNoteEx& tied = tune.Add(0, 2);
    tune.Add(0, 2);
    tune.Add(1, 4);
    CNoteEx& far = tune.Add(1, 4);
    tune.Tie({&tied, &far});

    const CNoteSampleArray& play = tune.Build().PlayList(0);

    std::uint32_t total = 0;
    for (const CNoteSample* record : play)
        total += record->Length;
    EXPECT_EQ(play.front()->Note, &tied);
    EXPECT_EQ(total, 1920u + 960u);
}

TEST(SequenceTies, GivenATieOfThreeWhenBuiltThenItIsATripletOfSeparateTruncatedNotes)
{
    PlayTune tune(1, 1, 1, 7); // 3/4: a crotchet is 640, two thirds of it 426.67
    CNoteEx& a = tune.Add(0, 4);
    CNoteEx& b = tune.Add(0, 4);
    CNoteEx& c = tune.Add(0, 4);
    tune.Tie({&a, &b, &c});

    EXPECT_EQ(Played(tune.Build()), (std::vector<Sound>{{0, 426, &a}, {426, 426, &b}, {852, 426, &c}}));
}

// Four bars of one crotchet each; the test sets the repeat lines and the repeat kinds.
class SequenceRepeats : public ::testing::Test {
protected:
    SequenceRepeats() : tune(1, 1, 4)
    {
        for (int column = 0; column < 4; ++column)
            notes.push_back(&tune.Add(column, 4));
    }

    std::vector<const CNoteEx*> Bars(std::initializer_list<int> columns) const
    {
        std::vector<const CNoteEx*> order;
        for (int column : columns)
            order.push_back(notes[static_cast<std::size_t>(column)]);
        return order;
    }

    PlayTune tune;
    std::vector<CNoteEx*> notes;
};

TEST_F(SequenceRepeats, GivenARepeatWhenBuiltThenItsBarsSoundTwiceWithContiguousStarts)
{
    tune.Config(0).StartRepeat = true;
    tune.Config(1).EndRepeat = true;

    const CTuneSequence& sequence = tune.Build();

    EXPECT_EQ(Order(sequence), Bars({0, 1, 0, 1, 2, 3}));
    for (std::size_t i = 0; i < sequence.PlayList(0).size(); ++i)
        EXPECT_EQ(sequence.PlayList(0)[i]->Start, 480 * i);
    // In the written list each repeat line takes one tick of its own.
    const CNoteSampleArray& written = sequence.WrittenList(0);
    ASSERT_EQ(written.size(), 6u);
    EXPECT_TRUE(written[0]->IsRepeatLine());
    EXPECT_EQ(written[0]->Length, CNoteSample::RepeatStart);
    EXPECT_EQ(written[1]->Start, 1u);
    EXPECT_EQ(written[3]->Length, CNoteSample::RepeatEnd);
    EXPECT_EQ(written[3]->Start, 961u);
    EXPECT_EQ(written[4]->Start, 962u);
}

TEST_F(SequenceRepeats, GivenFirstAndSecondTimeWhenBuiltThenEachSoundsOnItsOwnPass)
{
    tune.Config(0).StartRepeat = true;
    tune.Config(2).EndRepeat = true;
    notes[2]->RepeatKind = 1;
    notes[3]->RepeatKind = 2;

    EXPECT_EQ(Order(tune.Build()), Bars({0, 1, 2, 0, 1, 3}));
}

TEST_F(SequenceRepeats, GivenUnbalancedRepeatLinesWhenBuiltThenTheyDegradeQuietly)
{
    notes[2]->RepeatKind = 1;
    notes[3]->RepeatKind = 2;

    // A start without an end plays once through, as a first time that never ends.
    tune.Config(1).StartRepeat = true;
    EXPECT_EQ(Order(tune.Build()), Bars({0, 1, 2}));

    // An end without a start is ignored: second-time bars sound, first-time bars do not.
    tune.Config(1).StartRepeat = false;
    tune.Config(2).EndRepeat = true;
    EXPECT_EQ(Order(tune.Build()), Bars({0, 1, 3}));

    // A start inside an open repeat is passed over: the repeat goes back to the first start.
    notes[2]->RepeatKind = notes[3]->RepeatKind = 0;
    tune.Config(0).StartRepeat = true;
    tune.Config(1).StartRepeat = true;
    EXPECT_EQ(Order(tune.Build()), Bars({0, 1, 2, 0, 1, 2, 3}));

    // An unknown kind never sounds.
    notes[1]->RepeatKind = 7;
    EXPECT_EQ(Order(tune.Build()), Bars({0, 2, 0, 2, 3}));
}

TEST_F(SequenceRepeats, GivenAMarkerOverTheSecondAndThirdBarsWhenStampedThenPlayFollowsIt)
{
    tune.Config(0).StartRepeat = true;
    tune.Config(2).EndRepeat = true;
    CRepeatTiming marker;
    marker.Area = &tune.Area();
    marker.StartPosition = 0.5f;   // the first time begins at the third bar...
    marker.MiddlePosition = 0.75f; // ...and the second time at the fourth
    marker.EndPosition = 1.0f;
    marker.RepeatId = 3;

    marker.Restamp(tune.Build());

    EXPECT_EQ(notes[2]->RepeatKind, 1);
    EXPECT_EQ(notes[3]->RepeatKind, 2);
    EXPECT_EQ(notes[3]->RepeatId, 3);
    EXPECT_EQ(Order(tune.Build()), Bars({0, 1, 2, 0, 1, 3}));

    // The sequence offers its written notes in order, and stops when asked to.
    std::vector<const CNoteEx*> visited;
    tune.Sequence().VisitPart(0, [&visited](const PlayedNote& played) {
        visited.push_back(played.Note);
        EXPECT_EQ(played.Bar, played.Note->Parent());
        return visited.size() < 2;
    });
    EXPECT_EQ(visited, Bars({0, 1}));
}

// Two bars of two crotchets each in the first part, one bar of a minim and two crotchets in the
// second; the tests choose what is selected.
class SequenceSelection : public ::testing::Test {
protected:
    SequenceSelection() : tune(1, 2, 2)
    {
        for (int column = 0; column < 2; ++column) {
            for (int i = 0; i < 2; ++i)
                notes.push_back(&tune.Add(column, 4));
        }
    }

    PlayTune tune;
    std::vector<CNoteEx*> notes;
    std::vector<CScoObj*> selection;
};

TEST_F(SequenceSelection, GivenOneBarSelectedWhenBuiltThenPlayRunsFromThatBarToTheEnd)
{
    tune.Config(0).StartRepeat = true;
    tune.Config(1).EndRepeat = true;
    selection = {&tune.Bar(1)};

    // From the bar's first note on the first pass, through the repeat, from tick 0.
    EXPECT_EQ(Played(tune.Build(&selection)), (std::vector<Sound>{{0, 480, notes[2]},
                                                                  {480, 480, notes[3]},
                                                                  {960, 480, notes[0]},
                                                                  {1440, 480, notes[1]},
                                                                  {1920, 480, notes[2]},
                                                                  {2400, 480, notes[3]}}));
}

TEST_F(SequenceSelection, GivenARunOfNotesWhenBuiltThenOnlyTheFirstRunSoundsFromTickZero)
{
    selection = {notes[2], notes[1]};
    EXPECT_EQ(Played(tune.Build(&selection)), (std::vector<Sound>{{0, 480, notes[1]}, {480, 480, notes[2]}}));

    // A gap ends the run: the later selected note stays silent, unless gaps are allowed.
    selection = {notes[0], notes[3]};
    EXPECT_EQ(Order(tune.Build(&selection)), (std::vector<const CNoteEx*>{notes[0]}));
    tune.Sequence().AllowGaps = true;
    EXPECT_EQ(Order(tune.Build(&selection)), (std::vector<const CNoteEx*>{notes[0], notes[3]}));
    tune.Sequence().AllowGaps = false;

    // The notes of a selected group count as selected, once some note is.
    CBarEx& bar = tune.Bar(1);
    auto* group = static_cast<CNoteGroupEx*>(bar.AddChild(std::make_unique<CNoteGroupEx>(), false));
    CNoteEx& beamed = tune.AddTo(*group, bar, 8);
    selection = {notes[3], group};
    EXPECT_EQ(Order(tune.Build(&selection)), (std::vector<const CNoteEx*>{notes[3], &beamed}));
}

TEST_F(SequenceSelection, GivenNothingMusicalSelectedWhenBuiltThenTheWholeTunePlays)
{
    CBarEx& bar = tune.Bar(1);
    auto* group = static_cast<CNoteGroupEx*>(bar.AddChild(std::make_unique<CNoteGroupEx>(), false));
    tune.AddTo(*group, bar, 8);
    for (const std::vector<CScoObj*>& chosen :
         {std::vector<CScoObj*>{}, std::vector<CScoObj*>{&tune.Area()}, std::vector<CScoObj*>{group},
          std::vector<CScoObj*>{&tune.Bar(0), &tune.Bar(1)}}) {
        selection = chosen;
        EXPECT_EQ(tune.Build(&selection).PlayList(0).size(), 5u);
    }
}

TEST(SequenceParts, GivenSeveralPartsWhenBuiltThenEachHasItsOwnList)
{
    PlayTune tune(1, 3, 1);
    CNoteEx& top = tune.Add(tune.Bar(0, 0), 2, 10);
    CNoteEx& middle = tune.Add(tune.Bar(0, 1), 4, 8);
    CNoteEx& middle2 = tune.Add(tune.Bar(0, 1), 4, 7);
    CNoteEx& bottom = tune.Add(tune.Bar(0, 2), 1, 11);

    const CTuneSequence& sequence = tune.Build();

    EXPECT_EQ(Played(sequence, 0), (std::vector<Sound>{{0, 960, &top}}));
    EXPECT_EQ(Played(sequence, 1), (std::vector<Sound>{{0, 480, &middle}, {480, 480, &middle2}}));
    EXPECT_EQ(Played(sequence, 2), (std::vector<Sound>{{0, 1920, &bottom}}));
    EXPECT_TRUE(sequence.PlayList(3).empty());
}

TEST(SequenceParts, GivenUnevenOrTooManyStavesWhenBuiltThenAtMostFourPartsPlayWithoutFault)
{
    PlayTune tune(2, 5, 1);
    for (int part = 0; part < 5; ++part)
        tune.Add(tune.Bar(0, part, 0), 4);
    // The second system lost its lower staves: those parts fall silent there.
    tune.Group(1).SetStaveCount(1);
    tune.Add(tune.Bar(0, 0, 1), 4);

    const CTuneSequence& sequence = tune.Build();

    EXPECT_EQ(sequence.PlayList(0).size(), 2u);
    for (int part = 1; part < CTuneSequence::PartCount; ++part)
        EXPECT_EQ(sequence.PlayList(part).size(), 1u);
    EXPECT_THROW(sequence.PlayList(4), std::out_of_range);
}

} // namespace
} // namespace corrieval
