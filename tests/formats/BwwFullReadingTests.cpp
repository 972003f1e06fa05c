#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "model/CorrievalDoc.h"
#include "notation/NoteEx.h"
#include "notation/TimeSig.h"
#include "support/RecordingMessages.h"
#include "support/ScoreWalk.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::MusicAreas;
using testing::RecordingMessages;

const QByteArray kHeader = "Bagpipe Reader:1.0\r\n"
                           "\"Tune\",(T,C)\r\n\"March\",(Y,L)\r\n\"Trad.\",(M,R)\r\n\r\n";

// A tune read in one mode; its notes as (code, older stave position), bar after bar.
struct ReadTune {
    ReadTune(const QByteArray& text, bww::Reading mode)
    {
        Log.Mode = mode;
        Doc = ReadBww(text, Log);
    }
    std::vector<std::pair<std::int32_t, std::int32_t>> Notes() const
    {
        std::vector<std::pair<std::int32_t, std::int32_t>> notes;
        for (const auto& bar : Doc->Bars)
            for (const auto& note : bar->Notes)
                notes.emplace_back(note->Code, note->Pitch);
        return notes;
    }
    QStringList Passed() const
    {
        QStringList words;
        for (const bww::PassedWord& passed : Log.PassedWords)
            words << passed.Word;
        return words;
    }

    RecordingMessages Messages;
    bww::ImportLog Log;
    std::unique_ptr<CPipeDoc> Doc;
};

ReadTune Full(const QByteArray& music)
{
    return {kHeader + music, bww::Reading::Full};
}
ReadTune Strict(const QByteArray& music)
{
    return {kHeader + music, bww::Reading::Strict};
}

using Notes = std::vector<std::pair<std::int32_t, std::int32_t>>;
constexpr std::int32_t kGrace = 30;

TEST(BwwFullReading, HeadersNeedNoTextsOfTheirOwn)
{
    const QByteArray noComposer = "Bagpipe Reader:1.0\r\n\"Tune\",(T,C)\r\n\"Reel\",(Y,L)\r\n& E_4 !t";
    const ReadTune full(noComposer, bww::Reading::Full);
    ASSERT_NE(full.Doc, nullptr);
    EXPECT_EQ(full.Doc->CentreText.Text, QStringLiteral("Tune"));
    EXPECT_EQ(full.Doc->LeftText.Text, QStringLiteral("Reel"));
    EXPECT_TRUE(full.Doc->RightText.Text.isEmpty());
    EXPECT_TRUE(full.Messages.Texts.isEmpty());
    EXPECT_EQ(ReadTune(noComposer, bww::Reading::Strict).Doc, nullptr);

    const ReadTune untitled("Bagpipe Reader:1.0\r\n& E_4 !t", bww::Reading::Full);
    ASSERT_NE(untitled.Doc, nullptr);
    EXPECT_EQ(untitled.Doc->CentreText.Text, QStringLiteral("Unknown"));
    // A file of texts alone is a tune without music; a BMW file may give fewer than three texts.
    EXPECT_NE(ReadTune("x \"Tune\",(Y)\r\n", bww::Reading::Full).Doc, nullptr);
    EXPECT_NE(ReadTune("\"Tune\"\n\"Jig\"\n& E_4 !t", bww::Reading::Full).Doc, nullptr);
}

TEST(BwwFullReading, TimeSignaturesAreReadWhereverTheyStand)
{
    // After the key, where the older program never looked for them.
    EXPECT_EQ(Full("& sharpf sharpc C E_4 !t").Doc->TimeSigText, QStringLiteral("."));
    EXPECT_EQ(Full("& sharpf sharpc C_ E_4 !t").Doc->TimeSigText, QStringLiteral("-"));
    EXPECT_TRUE(Strict("& sharpf sharpc C E_4 !t").Doc->TimeSigText.isEmpty());
    EXPECT_EQ(Full("& sharpf sharpc 6_4 E_4 !t").Doc->TimeSigText, QStringLiteral(")"));
    EXPECT_EQ(Strict("& sharpf sharpc 6_4 E_4 !t").Doc, nullptr);
    // One the font has no glyph for is a custom signature; the tune's first one counts.
    const ReadTune eighths = Full("& 3_8 E_4 ! 2_4 E_4 !t");
    EXPECT_EQ(eighths.Doc->CustomBeats, 3);
    EXPECT_EQ(eighths.Doc->CustomUnit, 8);
    const auto score = ConvertToNewDocument(*eighths.Doc, true);
    const CTimeSig& sig = MusicAreas(*score).front()->InitialTimeSig;
    EXPECT_EQ(sig.Type, CTimeSig::Custom);
    EXPECT_EQ(sig.GetBeats(), 3);
    EXPECT_EQ(sig.GetBeatUnit(), 8);
}

TEST(BwwFullReading, StrikesAndSingleGracenotesAreGracenotesAtTheirPitch)
{
    const QByteArray music = "& B_4 strlg B_4 ag C_4 strhg HA_4 fg E_4 !t";
    const Notes full{{2, 21},      {kGrace, 19}, {2, 21},      {kGrace, 20}, {2, 22},
                     {kGrace, 26}, {2, 27},      {kGrace, 25}, {2, 24}};
    EXPECT_EQ(Full(music).Notes(), full);
    // The older program passed them all over.
    const ReadTune strict = Strict(music);
    EXPECT_EQ(strict.Notes().size(), 5u);
    EXPECT_EQ(strict.Passed(), (QStringList{"strlg", "ag", "strhg", "fg"}));
}

TEST(BwwFullReading, MovementsPlayTheirOwnGracenotes)
{
    // A catalogue movement where one plays exactly these gracenotes, else the gracenotes alone.
    const Notes notes = Full("& grp D_4 grpb D_4 hvthrd D_4 hthrd D_4 st2la LA_4 !t").Notes();
    const Notes expected{{82, 19}, {2, 23}, {83, 19},     {2, 23},      {161, 24},    {2, 23},
                         {81, 22}, {2, 23}, {kGrace, 19}, {kGrace, 20}, {kGrace, 19}, {2, 20}};
    EXPECT_EQ(notes, expected);
    // The older program had the two grips the other way round, and no heavy throw.
    const Notes strict = Strict("& grp D_4 grpb D_4 hvthrd D_4 !t").Notes();
    EXPECT_EQ(strict[0].first, 83);
    EXPECT_EQ(strict[2].first, 82);
    EXPECT_EQ(strict.size(), 5u);
}

TEST(BwwFullReading, BracketedTripletsAndTiesJoinTheirMelodyNotes)
{
    const QByteArray triplet = "& ^3s Er_16 gg Dr_16 Cl_16 ^3e ";
    const ReadTune tune = Full(triplet + "^ts B_4 ! B_4 ^te !t");
    ASSERT_EQ(tune.Doc->Ties.size(), 2u);
    const auto& notes = tune.Doc->Bars[0]->Notes;
    EXPECT_EQ(tune.Doc->Ties[0]->First, notes[0]->Id);
    EXPECT_EQ(tune.Doc->Ties[0]->Second, notes[2]->Id);
    EXPECT_EQ(tune.Doc->Ties[0]->Third, notes[3]->Id);
    const CTie& tie = *tune.Doc->Ties[1];
    EXPECT_EQ(tie.Third, 0);
    EXPECT_TRUE(tune.Passed().isEmpty());
    // The older program took the three slots before "^3e", the gracenote among them.
    const ReadTune strict = Strict(triplet + "!t");
    ASSERT_EQ(strict.Doc->Ties.size(), 1u);
    EXPECT_EQ(strict.Doc->Ties[0]->First, strict.Doc->Bars[0]->Notes[1]->Id);
}

TEST(BwwFullReading, WhatAScoreCannotHoldIsListedAndAPauseHoldsItsNote)
{
    const ReadTune tune = Full("& REST_4 naturalc C_4 gg fermatc space E_4 ! fermate E_4 !t");
    EXPECT_EQ(tune.Passed(), (QStringList{"REST_4", "naturalc", "fermate"}));
    ASSERT_EQ(tune.Notes().size(), 4u);
    EXPECT_EQ(tune.Doc->Bars[0]->Notes[0]->Hold, 2.0f);
    EXPECT_EQ(tune.Doc->Bars[0]->Notes[2]->Hold, 1.0f);
    const auto score = ConvertToNewDocument(*tune.Doc, true);
    const auto notes = testing::ChildrenOf<CNoteEx>(testing::BarOf(*MusicAreas(*score).front(), 0, 0));
    ASSERT_FALSE(notes.empty());
    EXPECT_EQ(notes.front()->Weight, 2.0f);
    EXPECT_EQ(Strict("& C_4 fermatc E_4 !t").Passed(), QStringList{"fermatc"});
}

TEST(BwwFullReading, EachTuneOfASetHasItsOwnHeadingsTempoAndMusicArea)
{
    const QByteArray set = kHeader + "TuneTempo,96\r\n& 2_4 E_4 ! D_4 !I\r\n" +
                           "\"Second\",(T,C)\r\n\"Reel\",(Y,L)\r\nTuneTempo,110\r\n& C 4_4 B_4 !t\r\n";
    const ReadTune tune(set, bww::Reading::Full);
    ASSERT_NE(tune.Doc, nullptr);
    EXPECT_EQ(tune.Doc->WrittenTempo, 96);
    ASSERT_EQ(tune.Doc->FollowingTunes.size(), 1u);
    const CPipeDoc& second = *tune.Doc->FollowingTunes[0];
    EXPECT_EQ(second.CentreText.Text, QStringLiteral("Second"));
    EXPECT_TRUE(second.RightText.Text.isEmpty());
    EXPECT_EQ(second.TimeSigText, QStringLiteral("."));
    ASSERT_EQ(second.Bars.size(), 1u);
    EXPECT_EQ(second.Bars[0]->Notes.size(), 1u);

    // Two short tunes share a page, each in a music area of its own.
    const auto score = ConvertToNewDocument(*tune.Doc, true);
    EXPECT_EQ(score->Pages.size(), 1u);
    EXPECT_EQ(MusicAreas(*score).size(), 2u);
    EXPECT_EQ(score->Tempo, 96);
    // Texts after the last tune's music begin no tune.
    const ReadTune trailing(kHeader + "& E_4 !t\r\n\"Arr. by Me\",(M,R)\r\n", bww::Reading::Full);
    EXPECT_TRUE(trailing.Doc->FollowingTunes.empty());
    EXPECT_EQ(trailing.Doc->RightText.Text, QStringLiteral("Trad."));
    // Strictly it is one tune, with the second title passed over.
    EXPECT_TRUE(ReadTune(set, bww::Reading::Strict).Doc->FollowingTunes.empty());
}

} // namespace
} // namespace corrieval
