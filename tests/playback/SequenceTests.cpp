// From the score to play lists: each rule of the walk as a small tune built in code, given, when
// the sequence is built, then what sounds.

#include "notation/FixedNoteGroup.h"
#include "playback/PlayTune.h"
#include "playback/SampleBank.h"

#include <array>
#include <gtest/gtest.h>
#include <ostream>
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
using Sounds = std::vector<Sound>;

std::ostream& operator<<(std::ostream& out, const Sound& s)
{
    return out << "{" << s.Start << ", " << s.Length << ", note " << static_cast<const void*>(s.Note) << "}";
}

// The first part's play list.
Sounds Played(const CTuneSequence& sequence)
{
    Sounds sounds;
    for (const CNoteSample* record : sequence.PlayList(0))
        sounds.push_back({record->Start, record->Length, record->Note});
    return sounds;
}

TEST(SequenceNotes, GivenNotesWhenBuiltThenTheyFollowOneAnotherWithTheirLengthsAndRecordings)
{
    PlayTune tune;
    CNoteEx& dotted = tune.Add(0, 4, 11);
    dotted.DotCut = CNoteEx::Dotted;
    CNoteEx& cut = tune.Add(0, 4, 3);
    cut.DotCut = CNoteEx::Cut;
    CNoteEx& heavy = tune.Add(0, 4, 7);
    heavy.Weight = 1.4f;

    const CTuneSequence& sequence = tune.Build();

    // 1.4 as a float is a little under 1.4, so the truncated length is 671, not 672.
    EXPECT_EQ(Played(sequence), (Sounds{{0, 720, &dotted}, {720, 240, &cut}, {960, 671, &heavy}}));
    const CNoteSampleArray& play = sequence.PlayList(0);
    EXPECT_EQ(play[0]->SampleData, SampleBank::Slot(0)); // Low G, the first recording
    EXPECT_EQ(play[1]->SampleData, SampleBank::Slot(8)); // High A, the ninth
    // The mixer plays its own copies; the written records keep their bar for stamping.
    EXPECT_NE(play[0], sequence.WrittenList(0)[0]);
    EXPECT_EQ(sequence.WrittenList(0)[0]->Bar, &tune.Bar(0));

    // A pitch outside the scale, from a damaged file, keeps its time and plays silence.
    heavy.Pitch = 12;
    EXPECT_EQ(tune.Build().PlayList(0).back()->SampleData, nullptr);
}

TEST(SequenceTime, GivenSignaturesAndAChangeWhenBuiltThenNoteLengthsAndTheRateFollowThem)
{
    // A crotchet is its share of a 1920-tick bar: 960 in 2/4, 640 in 3/4; gracenotes are the same
    // share of any bar: 20 ticks in 6/8, 80 in 3/2. The rate at a tempo has no beats in it: 6/8
    // counts half the ticks of 4/4 or common time, 3/2 twice.
    const std::tuple<int, int, std::uint32_t, double> signatures[] = {{6, 4, 960, 592},  {7, 4, 640, 592},
                                                                      {8, 4, 480, 592},  {1, 4, 480, 592},
                                                                      {12, 64, 20, 296}, {4, 64, 80, 1184}};
    for (const auto& [sigType, duration, length, rate] : signatures) {
        PlayTune tune(1, 1, 1, sigType);
        tune.Add(0, duration);
        const CTuneSequence& sequence = tune.Build();
        EXPECT_EQ(sequence.PlayList(0).front()->Length, length) << "signature " << sigType;
        EXPECT_EQ(sequence.TicksPerSecond(74), rate) << "signature " << sigType;
    }

    // A change to 6/8 from the second bar holds into the next system, where a crotchet is
    // (4 / 6) x 480, and the rate is that of the signature the walk ended on.
    PlayTune tune(2, 1, 2);
    CNoteEx& first = tune.Add(0, 4);
    tune.Config(1).TimeSig.SetType(12);
    CNoteEx& second = tune.Add(1, 4);
    CNoteEx& third = tune.Add(tune.Bar(0, 0, 1), 4);
    const CTuneSequence& sequence = tune.Build();
    EXPECT_EQ(Played(sequence), (Sounds{{0, 480, &first}, {480, 320, &second}, {800, 320, &third}}));
    EXPECT_EQ(sequence.CurrentTimeSig(), &tune.Config(1).TimeSig);
    EXPECT_EQ(sequence.TicksPerSecond(74), 296);
}

TEST(SequenceGracenotes, GivenGracenotesBeforeANoteWhenBuiltThenTheyTakeTheirTimeFromIt)
{
    // Gracenotes of 40 ticks each, then a note and a crotchet: {start, length} of those two. A
    // note left under 40 sounds 60 and the crotchet pays for it; one the gracenotes overdraw
    // keeps 60 less the overdraw, and nothing, rather than four billion, when that is more.
    using Span = std::pair<std::uint32_t, std::uint32_t>;
    for (const auto& [graces, duration, note, next] : {std::tuple{3, 4, Span{120, 360}, Span{480, 480}},
                                                       {3, 16, Span{120, 60}, Span{180, 420}},
                                                       {2, 32, Span{80, 40}, Span{120, 420}},
                                                       {4, 32, Span{160, 0}, Span{160, 420}}}) {
        PlayTune tune;
        tune.AddGracenotes(0, graces);
        tune.Add(0, duration);
        tune.Add(0, 4);
        const Sounds sounds = Played(tune.Build());
        ASSERT_EQ(sounds.size(), static_cast<std::size_t>(graces) + 2);
        for (int i = 0; i < graces; ++i)
            EXPECT_EQ(sounds[static_cast<std::size_t>(i)].Length, 40u);
        const Sound& melody = sounds[sounds.size() - 2];
        EXPECT_EQ(Span(melody.Start, melody.Length), note) << graces << " before 1/" << duration;
        EXPECT_EQ(Span(sounds.back().Start, sounds.back().Length), next)
            << graces << " before 1/" << duration;
    }

    // Gracenotes at the end of a bar take nothing from the next bar.
    PlayTune ending(1, 1, 2);
    ending.Add(0, 4);
    ending.AddGracenotes(0, 2);
    CNoteEx& next = ending.Add(1, 4);
    EXPECT_EQ(Played(ending.Build()).back(), (Sound{560, 480, &next}));
}

TEST(SequenceGracenotes, GivenAMovementNeverDrawnWhenBuiltThenItsGracenotesSoundWhereItStands)
{
    // A tune straight from an import or a file has never been drawn, so the movement's gracenotes
    // still stand wherever they were made; the play order must come from the movement's place.
    PlayTune tune;
    CBarEx& bar = tune.Bar(0);
    CNoteEx& first = tune.Add(bar, 4);
    auto movement = std::make_unique<CFixedNoteGroup>(QStringLiteral("Doubling"));
    movement->BuildNotes(QStringLiteral("!!"), QStringLiteral("37"), 0, 0);
    movement->SetBounds(first.Bounds().Right() + 0.02f, bar.Bounds().Y, 0.1f, bar.Bounds().Height);
    auto* placed = static_cast<CFixedNoteGroup*>(bar.AddChild(std::move(movement), false));
    CNoteEx& second = tune.Add(bar, 4);
    second.SetBounds(placed->Bounds().Right() + 0.02f, bar.Bounds().Y, 0.04f, bar.Bounds().Height);
    const Sounds sounds = Played(tune.Build());
    ASSERT_EQ(sounds.size(), 4u);
    EXPECT_EQ(sounds[0].Note, &first);
    EXPECT_EQ(sounds[1].Note, placed->ChildAt(0));
    EXPECT_EQ(sounds[2].Note, placed->ChildAt(1));
    EXPECT_EQ(sounds[3].Note, &second);
}

TEST(SequenceTies, GivenATieOverABarLineWhenBuiltThenOneRecordCarriesBothLengths)
{
    PlayTune tune(1, 1, 2);
    CNoteEx& a = tune.Add(0, 2);
    CNoteEx& b = tune.Add(0, 4);
    CNoteEx& tiedFrom = tune.Add(0, 4);
    CNoteEx& tiedTo = tune.Add(1, 4);
    CNoteEx& after = tune.Add(1, 2);
    tune.Tie({&tiedFrom, &tiedTo});

    const CTuneSequence& sequence = tune.Build();

    EXPECT_EQ(Played(sequence),
              (Sounds{{0, 960, &a}, {960, 480, &b}, {1440, 960, &tiedTo}, {2400, 960, &after}}));
    // The bar totals are unchanged: the note after the tie starts where it is written.
    EXPECT_EQ(sequence.WrittenList(0).back()->Start, 2400u);

    // An empty bar inside a tie is carried over.
    PlayTune gap(1, 1, 3);
    gap.Add(0, 2);
    CNoteEx& from = gap.Add(0, 2);
    CNoteEx& to = gap.Add(2, 2);
    gap.Tie({&from, &to});
    EXPECT_EQ(Played(gap.Build()).back(), (Sound{960, 1920, &to}));

    // A tie from the first note of a bar to one further on in the next, over plain notes, loses
    // no time.
    PlayTune far(1, 1, 2);
    CNoteEx& first = far.Add(0, 2);
    far.Add(0, 2);
    far.Add(1, 4);
    far.Tie({&first, &far.Add(1, 4)});
    std::uint32_t total = 0;
    for (const Sound& sound : Played(far.Build()))
        total += sound.Length;
    EXPECT_EQ(total, 1920u + 960u);
}

TEST(SequenceTies, GivenATieInsideOneBarWhenBuiltThenItIsWrittenWithTheFirstOrLastNoteOrAsATriplet)
{
    // A pair followed by a plain note is credited to the first of the pair.
    PlayTune middle;
    CNoteEx& first = middle.Add(0, 4);
    CNoteEx& second = middle.Add(0, 4);
    CNoteEx& plain = middle.Add(0, 2);
    middle.Tie({&first, &second});
    EXPECT_EQ(Played(middle.Build()), (Sounds{{0, 960, &first}, {960, 960, &plain}}));

    // A pair that ends the bar is written at the end with its last note.
    PlayTune end;
    CNoteEx& opening = end.Add(0, 2);
    CNoteEx& from = end.Add(0, 4);
    CNoteEx& to = end.Add(0, 4);
    end.Tie({&from, &to});
    EXPECT_EQ(Played(end.Build()), (Sounds{{0, 960, &opening}, {960, 960, &to}}));

    // A tie of three is a triplet of separate notes, truncated: in 3/4 two thirds of 640 is 426.67.
    PlayTune three(1, 1, 1, 7);
    CNoteEx& a = three.Add(0, 4);
    CNoteEx& b = three.Add(0, 4);
    CNoteEx& c = three.Add(0, 4);
    three.Tie({&a, &b, &c});
    EXPECT_EQ(Played(three.Build()), (Sounds{{0, 426, &a}, {426, 426, &b}, {852, 426, &c}}));
}

// Four bars of one crotchet each, with the repeat lines and repeat kinds of each case; the bars
// in the order they sound.
TEST(SequenceRepeats, GivenRepeatLinesAndTimeBarsWhenBuiltThenEachPassPlaysItsBars)
{
    struct Case {
        const char* What;
        std::vector<int> Starts;
        int End;
        std::array<int, 4> Kinds;
        std::vector<std::size_t> Order;
    };
    const Case cases[] = {
        {"a repeat", {0}, 1, {}, {0, 1, 0, 1, 2, 3}},
        {"first and second time", {0}, 2, {0, 0, 1, 2}, {0, 1, 2, 0, 1, 3}},
        // A start without an end plays once through, as a first time that never ends.
        {"a start alone", {1}, -1, {0, 0, 1, 2}, {0, 1, 2}},
        // An end without a start is ignored: second-time bars sound, first-time bars do not.
        {"an end alone", {}, 2, {0, 0, 1, 2}, {0, 1, 3}},
        // A start inside an open repeat is passed over: the repeat goes back to the first start.
        {"two starts", {0, 1}, 2, {}, {0, 1, 2, 0, 1, 2, 3}},
        {"an unknown kind, never heard", {0, 1}, 2, {0, 7, 0, 0}, {0, 2, 0, 2, 3}},
    };
    for (const Case& c : cases) {
        PlayTune tune(1, 1, 4);
        std::vector<const CNoteEx*> bars;
        for (int column = 0; column < 4; ++column) {
            CNoteEx& note = tune.Add(column, 4);
            note.RepeatKind = c.Kinds[static_cast<std::size_t>(column)];
            bars.push_back(&note);
        }
        for (const int column : c.Starts)
            tune.Config(column).StartRepeat = true;
        if (c.End >= 0)
            tune.Config(c.End).EndRepeat = true;
        // Each pass follows on from the last without a gap.
        Sounds expected;
        for (std::uint32_t i = 0; i < c.Order.size(); ++i)
            expected.push_back({480 * i, 480, bars[c.Order[i]]});
        EXPECT_EQ(Played(tune.Build()), expected) << c.What;
    }
}

} // namespace
} // namespace corrieval
