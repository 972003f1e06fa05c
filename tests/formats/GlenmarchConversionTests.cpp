#include "formats/GlenmarchTune.h"
#include "formats/glenmarch/ConversionRules.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "model/BarConfig.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TextArea.h"
#include "notation/TieEx.h"
#include "notation/TimeSig.h"
#include "platform/SettingsStore.h"
#include "support/ScoreRoundTrip.h"
#include "support/ScoreWalk.h"
#include "support/TempConfigDir.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::BarOf;
using testing::ChildrenOf;
using testing::GlenmarchTune;
using testing::MusicAreas;
using testing::Reloaded;
using testing::StaveOf;

// Older stave positions and codes of the notes used here.
constexpr std::int32_t kLowA = 20;
constexpr std::int32_t kD = 23;
constexpr std::int32_t kE = 24;
constexpr std::int32_t kCrotchet = 2;
constexpr std::int32_t kQuaver = 3;
constexpr std::int32_t kSemiquaver = 4;
constexpr std::int32_t kLowGDoubling = 40;

// Conversion builds movements from the definitions in the settings store: each test gets a store
// of its own with one definition in it.
class GlenmarchConversion : public ::testing::Test {
protected:
    void SetUp() override
    {
        SettingsStore key = SettingsStore(QString::fromLatin1(MovementsKeyPath))
                                .Subkey(QStringLiteral("Doublings"))
                                .Subkey(QStringLiteral("Low G"));
        key.WriteString(QStringLiteral("Chars"), QStringLiteral("KKK"));
        key.WriteString(QStringLiteral("RelativeNotePositions"), QStringLiteral("184"));
        key.WriteInt(QStringLiteral("FixedStavePosition"), 0);
        ASSERT_TRUE(key.Sync().isEmpty());
    }

    // Through the file first, so that the tune is read as a .glm import reads it.
    static std::unique_ptr<CCorrievalDoc> Convert(GlenmarchTune& tune)
    {
        return ConvertToNewDocument(*tune.Reread(), false);
    }

    testing::TempConfigDir m_config;
};

// A tune of `lines` lines of `perLine` bars, each bar with one crotchet on D.
GlenmarchTune PlainTune(int lines, int perLine)
{
    GlenmarchTune tune;
    tune.Doc.BarsPerLine = perLine;
    tune.Doc.TimeSigText = QStringLiteral("$");
    for (int line = 1; line <= lines; ++line) {
        for (int column = 1; column <= perLine; ++column)
            tune.AddNote(tune.AddBar(line, column), kCrotchet, kD, 500);
    }
    return tune;
}

TEST_F(GlenmarchConversion, HeadingsComeAcrossAndLongTunesGoOnToNewPages)
{
    GlenmarchTune tune = PlainTune(12, 2);
    tune.Doc.TimeSigText = QStringLiteral("&");
    tune.Doc.CentreText.Text = QStringLiteral("Scotland\r\nthe Brave");
    tune.Doc.CentreText.PointSize = 12;
    tune.Doc.CentreText.Style = CText::Bold;
    tune.Doc.LeftText.Text = QStringLiteral("Slow March");
    tune.Doc.LeftText.Style = CText::Italic;
    tune.Doc.RightText.PointSize = 10;
    tune.Doc.RightText.Style = CText::Underline;
    const auto doc = Convert(tune);

    ASSERT_EQ(doc->Pages.size(), 2u);
    const CTunePage& page = *doc->Pages.front();
    const auto texts = ChildrenOf<CTextArea>(page);
    ASSERT_EQ(texts.size(), 3u);
    EXPECT_TRUE(ChildrenOf<CTextArea>(*doc->Pages[1]).empty());
    EXPECT_EQ(std::tuple(texts[0]->Alignment, texts[1]->Alignment, texts[2]->Alignment),
              std::tuple(CTextArea::Centre, CTextArea::Left, CTextArea::Right));
    // A line break in a heading becomes a dash; the point sizes are scaled up.
    EXPECT_EQ(texts[0]->Text, QStringLiteral("Scotland - the Brave"));
    EXPECT_EQ(std::tuple(texts[0]->Font.Height(), texts[0]->Font.Weight()), std::tuple(-18, 700));
    EXPECT_EQ(texts[1]->Text, QStringLiteral("Slow March")); // the capitals stay in the score
    EXPECT_TRUE(texts[1]->Font.Italic());
    EXPECT_TRUE(texts[2]->Font.Underline());
    EXPECT_FLOAT_EQ(texts[2]->Bounds().Right(), page.ContentBox().Right());
    // The type word, read in lower case, slows the tune from the 80 of 6/8.
    EXPECT_EQ(doc->Tempo, 60);

    const auto areas = MusicAreas(*doc);
    ASSERT_EQ(areas.size(), 2u);
    EXPECT_EQ(areas[0]->ChildCount() + areas[1]->ChildCount(), 12u);
    EXPECT_GT(areas[0]->Bounds().Y, texts[1]->Bounds().Bottom());
    EXPECT_LE(areas[0]->Bounds().Bottom(), page.Bounds().Bottom());
    EXPECT_TRUE(doc->Pages[1]->Bounds().Contains(areas[1]->Bounds().X, areas[1]->Bounds().Y));
    // Only the first page shows the signature, but both keep it for playing.
    EXPECT_TRUE(areas[0]->ShowTimeSig);
    EXPECT_FALSE(areas[1]->ShowTimeSig);
    EXPECT_EQ(areas[1]->InitialTimeSig.Type, CTimeSig::TimeSigFromChar(u'&'));
}

TEST(GlenmarchTempo, SignatureAndTuneTypeSetTheTempo)
{
    const auto typeOf = [](char16_t c) { return CTimeSig::TimeSigFromChar(c); };
    EXPECT_EQ(TempoForTune(CTimeSig::None, {}), 74);
    EXPECT_EQ(TempoForTune(typeOf(u'&'), QStringLiteral("jig")), 120);
    // The words are tried in a fixed order and the last found wins.
    EXPECT_EQ(TempoForTune(typeOf(u'&'), QStringLiteral("slow jig")), 60);
    EXPECT_EQ(TempoForTune(typeOf(u'$'), QStringLiteral("strathspey jig")), 120);
}

TEST(GlenmarchNoteValues, BeamedValuesFollowTheSignatureAndTheDoublingFlag)
{
    const CTimeSig common(1);
    const CTimeSig twoFour(6);
    const auto duration = [](std::int32_t code, std::int32_t dot, const CTimeSig& sig,
                             const BeamedNoteContext& c) {
        return BeamedNoteValue(code, dot, sig, c).Duration;
    };
    // Tunes with the flag store beamed notes at half their value; a gracenote is never doubled.
    EXPECT_EQ(duration(kQuaver, 1, common, {.BeatDoubling = true}), 16);
    EXPECT_EQ(duration(30, 0, common, {.BeatDoubling = true}), 64);
    EXPECT_EQ(duration(kQuaver, 0, common, {}), 8);
    // In 2/4 a plain quaver stays a quaver; a dotted crotchet in a busy bar becomes a semiquaver.
    EXPECT_EQ(duration(kQuaver, 0, twoFour, {.BeatDoubling = true}), 8);
    EXPECT_EQ(duration(kCrotchet, 1, twoFour, {.BeatDoubling = true, .BusyBar = true}), 16);
    // Without the flag, 2/4 halves the short values and lengthens a busy dotted crotchet.
    EXPECT_EQ(duration(kSemiquaver, 0, twoFour, {}), 8);
    EXPECT_EQ(duration(kCrotchet, 1, twoFour, {.BusyBar = true}), 8);
    // Tunes in eighths halve the quavers and shorter.
    EXPECT_EQ(duration(kQuaver, 0, CTimeSig(12), {}), 4);
    // A BWW semiquaver comes out as a cut quaver.
    const NoteValue cut = BeamedNoteValue(kSemiquaver, 0, common, {.FromText = true});
    EXPECT_EQ(std::tuple(cut.Duration, cut.DotCut), std::tuple(8, CNoteEx::Cut));
}

// The older program started the lines after an upbeat line with one bar over the upbeat column
// and the first, and left the last column empty; such a line must not keep a stray column.
TEST_F(GlenmarchConversion, ColumnsFollowTheOlderWidthsAndAnUpbeatTakesFourTenths)
{
    GlenmarchTune tune;
    tune.Doc.BarsPerLine = 4;
    tune.AddNote(tune.AddBar(1, 1, 400), kCrotchet, kE, 100);
    for (int column = 2; column <= 5; ++column)
        tune.AddNote(tune.AddBar(1, column, 1900), kCrotchet, kD, 500);
    tune.AddNote(tune.AddBar(2, 1, 2300), kCrotchet, kD, 500);
    for (int column = 2; column <= 4; ++column)
        tune.AddNote(tune.AddBar(2, column, 1900), kCrotchet, kD, 500);
    for (int column = 1; column <= 3; ++column)
        tune.AddNote(tune.AddBar(3, column, 1900), kCrotchet, kD, 500);
    const auto doc = Convert(tune);
    const CStaveArea& area = *MusicAreas(*doc).front();
    ASSERT_EQ(area.ChildCount(), 3u);

    const CStave& first = StaveOf(area, 0);
    ASSERT_EQ(first.ChildCount(), 5u);
    EXPECT_NEAR(BarOf(area, 0, 0).Bounds().Width, 0.4f * BarOf(area, 0, 1).Bounds().Width, 1e-4f);
    float sum = 0;
    for (std::size_t c = 0; c < 5; ++c)
        sum += BarOf(area, 0, c).Bounds().Width;
    EXPECT_NEAR(sum, first.ContentBox().Width, 1e-3f);
    EXPECT_NEAR(BarOf(area, 0, 4).Bounds().Right(), first.ContentBox().Right(), 1e-3f);

    // Four bars of one width: the wide first bar is a bar like the others.
    ASSERT_EQ(StaveOf(area, 1).ChildCount(), 4u);
    for (std::size_t column = 1; column < 4; ++column)
        EXPECT_NEAR(BarOf(area, 1, column).Bounds().Width, BarOf(area, 1, 0).Bounds().Width, 1e-4f);

    // The short line loses the columns it has no bars for.
    ASSERT_EQ(StaveOf(area, 2).ChildCount(), 3u);
    for (std::size_t c = 0; c < 3; ++c)
        EXPECT_EQ(ChildrenOf<CNoteEx>(BarOf(area, 2, c)).size(), 1u) << c;
}

TEST_F(GlenmarchConversion, PartsLaidOutByTheStrictImportBecomeSystemsOfFourBars)
{
    GlenmarchTune tune;
    tune.Doc.ReadStrictly = true;
    tune.AddPart(1, 9).AnacrusisState = CPart::Upbeat;
    tune.Doc.LayOutPart(1);
    tune.AddPart(2, 4);
    tune.Doc.LayOutPart(2);
    // The upbeat and four bars on the first line, then columns 2 to 5 under the four; the next
    // part on a line of its own, in columns 1 to 4.
    const auto columnsOf = [&tune](std::int32_t line) {
        QString columns;
        for (const auto& bar : tune.Doc.Bars)
            columns += bar->Line == line ? QString::number(bar->Column) : QString();
        return columns;
    };
    EXPECT_EQ(columnsOf(1), QStringLiteral("12345"));
    EXPECT_EQ(columnsOf(2), QStringLiteral("2345"));
    EXPECT_EQ(columnsOf(3), QStringLiteral("1234"));
    EXPECT_EQ(tune.Doc.TotalBarCount, 13);

    // The second line has no bar under the upbeat: its system leaves that column out.
    for (const auto& bar : tune.Doc.Bars)
        bar->AddNote(kCrotchet, bar->Left + 100, bar->Top, tune.Doc);
    const auto doc = ConvertToNewDocument(tune.Doc, true);
    const CStaveArea& area = *MusicAreas(*doc).front();
    ASSERT_EQ(area.ChildCount(), 3u);
    for (std::size_t system = 0; system < 3; ++system)
        EXPECT_EQ(StaveOf(area, system).ChildCount(), system == 0 ? 5u : 4u) << system;
    EXPECT_EQ(ChildrenOf<CNoteEx>(BarOf(area, 1, 0)).size(), 1u);
}

TEST_F(GlenmarchConversion, NotesBeamsMovementsAndTiesComeAcross)
{
    GlenmarchTune tune;
    tune.Doc.TimeSigText = QStringLiteral("$");
    CBar& bar = tune.AddBar(1, 1);
    tune.AddNote(bar, kLowGDoubling, 19, 100);
    tune.AddNote(bar, kCrotchet, kLowA, 200);
    const CNote& a = tune.AddNote(bar, kQuaver, kD, 500);
    const CNote& b = tune.AddNote(bar, kQuaver, kE, 600, 1);
    const CNote& c = tune.AddNote(bar, kQuaver, kD, 700);
    tune.Beam(bar, {&a, &b, &c});
    tune.Tie(tune.AddNote(bar, kCrotchet, kD, 800), tune.AddNote(tune.AddBar(1, 2), kCrotchet, kD, 500));
    tune.Tie(a, b, &c);
    const auto doc = Convert(tune);

    const CStaveArea& area = *MusicAreas(*doc).front();
    const CBarEx& converted = BarOf(area, 0, 0);
    const auto movements = ChildrenOf<CFixedNoteGroup>(converted);
    ASSERT_EQ(movements.size(), 1u);
    EXPECT_EQ(std::pair(movements[0]->Name, movements[0]->GetNoteCount()),
              std::pair(QStringLiteral("Low G"), 3));
    const auto notes = ChildrenOf<CNoteEx>(converted);
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_EQ(std::pair(notes[0]->Pitch, notes[0]->Duration), std::pair(10, 4)); // a Low A crotchet
    const auto beams = ChildrenOf<CNoteGroupEx>(converted);
    ASSERT_EQ(beams.size(), 1u);
    const auto beamed = ChildrenOf<CNoteEx>(*beams[0]);
    ASSERT_EQ(beamed.size(), 3u);
    // The tune has the beat doubling flag, as every tune before schema 4: the stored value doubles,
    // and the beam then adds the one beam the older codes leave out.
    EXPECT_EQ(beamed[0]->Duration, 32);
    EXPECT_EQ(beamed[1]->DotCut, CNoteEx::Dotted);
    EXPECT_FALSE(beamed[0]->Stemmed);
    // In playing order: the movement, the note, the beam.
    EXPECT_LT(movements[0]->GetBounds().X, notes[0]->GetBounds().X);
    EXPECT_LT(notes[0]->GetBounds().X, beams[0]->GetBounds().X);

    // The ties come in the order of their first notes: the triplet, then the tie over the bar line.
    ASSERT_EQ(doc->Ties.size(), 2u);
    const CTieEx& tie = *doc->Ties[1];
    ASSERT_EQ(tie.Notes.size(), 2u);
    EXPECT_EQ(tie.Notes[0], notes[1]);
    EXPECT_EQ(tie.Notes[1]->Parent(), &BarOf(area, 0, 1));
    EXPECT_EQ(tie.Notes[1]->Tie, &tie);
    const CTieEx& triplet = *doc->Ties[0];
    EXPECT_EQ(triplet.Notes.size(), 3u);
    EXPECT_EQ(triplet.TieValue, 3);
    EXPECT_EQ(notes[0]->Tie, nullptr);
    // The converted score stores and reads back to the same bytes, the movement with it.
    const auto read = Reloaded(*doc);
    EXPECT_EQ(ChildrenOf<CFixedNoteGroup>(BarOf(*MusicAreas(*read).front(), 0, 0)).size(), 1u);

    // Imported into a score that kept tie 2 of two after the first was undone, the new ties must
    // not reuse its id: on reading back, the notes would join whichever tie of that id came first.
    CCorrievalDoc into;
    into.OnNewDocument();
    into.Ties.push_back(std::make_unique<CTieEx>());
    into.Ties.back()->Id = 2;
    ConvertPipeDoc(*tune.Reread(), into, false);
    ASSERT_EQ(into.Ties.size(), 3u);
    EXPECT_EQ(std::pair(into.Ties[1]->Id, into.Ties[2]->Id), std::pair(3, 4));
}

TEST_F(GlenmarchConversion, AFirstAndSecondTimeEndingMarksItsBarsAndNotes)
{
    GlenmarchTune tune = PlainTune(2, 4);
    CBar& firstTime = *tune.Doc.BarAt(2, 2);
    firstTime.BarKind = CBar::SecondTimeFollows;
    tune.Doc.BarAt(2, 3)->BarKind = CBar::EndOfRepeat;
    CPart& part = tune.AddPart(1, 8);
    part.EndingKind = CPart::FirstAndSecondTime;
    part.FirstTimeBar = firstTime.Notes[0]->Id;
    const auto doc = Convert(tune);

    // The bars of the second line: before the ending, first time, second time, and after the end
    // of the repeat, which closes the section.
    const CStaveArea& area = *MusicAreas(*doc).front();
    const auto endingOf = [&area](std::size_t column) { return BarOf(area, 1, column).Config->RepeatEnding; };
    const auto kindOf = [&area](std::size_t column) {
        return ChildrenOf<CNoteEx>(BarOf(area, 1, column)).front()->RepeatKind;
    };
    EXPECT_EQ(std::tuple(endingOf(0), endingOf(1), endingOf(2), endingOf(3)),
              std::tuple(CBarConfig::NoEnding, CBarConfig::FirstTime, CBarConfig::SecondTime,
                         CBarConfig::NoEnding));
    EXPECT_EQ(std::tuple(kindOf(0), kindOf(1), kindOf(2), kindOf(3)), std::tuple(0, 1, 2, 0));
    const CBarEx& first = BarOf(area, 1, 1);
    EXPECT_EQ(ChildrenOf<CNoteEx>(first).front()->RepeatId, 1);
    ASSERT_EQ(area.RepeatMarkers.size(), 1u);
    EXPECT_EQ(first.RepeatTiming, area.RepeatMarkers[0].get());
    EXPECT_EQ(first.RepeatTiming->StartStave, 1);
}

// Importing with no score open has nothing to convert into, and must not fail.
TEST_F(GlenmarchConversion, WithNoActiveViewTheImportIsDropped)
{
    ConvertIntoActiveView(PlainTune(1, 2).Reread(), false);
}

} // namespace
} // namespace corrieval
