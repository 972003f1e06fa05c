#include "formats/GlenmarchTune.h"
#include "formats/glenmarch/ConversionRules.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/score/ScoreFile.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TextArea.h"
#include "notation/TieEx.h"
#include "notation/TimeSig.h"
#include "platform/SettingsStore.h"
#include "support/RecordingView.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::GlenmarchTune;

// Older stave positions of the notes used here.
constexpr std::int32_t kLowA = 20;
constexpr std::int32_t kD = 23;
constexpr std::int32_t kE = 24;
// Older codes.
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
        ASSERT_TRUE(m_config.isValid());
        qputenv("CORRIEVAL_CONFIG_DIR", m_config.path().toUtf8());
        SettingsStore key = SettingsStore(QString::fromLatin1(MovementsKeyPath))
                                .Subkey(QStringLiteral("Doublings"))
                                .Subkey(QStringLiteral("Low G"));
        key.WriteString(QStringLiteral("Chars"), QStringLiteral("KKK"));
        key.WriteString(QStringLiteral("RelativeNotePositions"), QStringLiteral("184"));
        key.WriteInt(QStringLiteral("FixedStavePosition"), 0);
        ASSERT_TRUE(key.Sync().isEmpty());
    }
    void TearDown() override { qunsetenv("CORRIEVAL_CONFIG_DIR"); }

    std::unique_ptr<CCorrievalDoc> Convert(GlenmarchTune& tune, bool fromText = false)
    {
        m_source = tune.Reread();
        return ConvertToNewDocument(*m_source, fromText);
    }

    std::unique_ptr<CPipeDoc> m_source;

private:
    QTemporaryDir m_config;
};

CStave& StaveOf(const CStaveArea& area, std::size_t system)
{
    return static_cast<CStave&>(*static_cast<CStaveGroup&>(*area.ChildAt(system)).ChildAt(0));
}

CBarEx& BarOf(const CStaveArea& area, std::size_t system, std::size_t column)
{
    return static_cast<CBarEx&>(*StaveOf(area, system).ChildAt(column));
}

template <class T> std::vector<T*> ChildrenOf(const CGraphObjContainer& container)
{
    std::vector<T*> found;
    for (const auto& child : container.Children()) {
        if (auto* typed = dynamic_cast<T*>(child.get()))
            found.push_back(typed);
    }
    return found;
}

std::vector<CStaveArea*> MusicAreas(const CCorrievalDoc& doc)
{
    std::vector<CStaveArea*> areas;
    for (const auto& page : doc.Pages) {
        const auto found = ChildrenOf<CStaveArea>(*page);
        areas.insert(areas.end(), found.begin(), found.end());
    }
    return areas;
}

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

TEST_F(GlenmarchConversion, HeadingsCarryTheOlderTexts)
{
    GlenmarchTune tune = PlainTune(1, 4);
    tune.Doc.CentreText.Text = QStringLiteral("Scotland\r\nthe Brave");
    tune.Doc.CentreText.PointSize = 12;
    tune.Doc.CentreText.Style = CText::Bold;
    tune.Doc.LeftText.Text = QStringLiteral("Slow March");
    tune.Doc.LeftText.Style = CText::Italic;
    tune.Doc.RightText.Text = QStringLiteral("Trad.");
    tune.Doc.RightText.PointSize = 10;
    tune.Doc.RightText.Style = CText::Underline;
    const auto doc = Convert(tune);

    const CTunePage& page = *doc->Pages.front();
    const auto texts = ChildrenOf<CTextArea>(page);
    ASSERT_EQ(texts.size(), 3u);
    const CTextArea& title = *texts[0];
    EXPECT_EQ(title.Text, QStringLiteral("Scotland - the Brave"));
    EXPECT_EQ(title.Alignment, CTextArea::Centre);
    EXPECT_EQ(title.Font.Height(), -18);
    EXPECT_EQ(title.Font.Weight(), 700);

    const CTextArea& type = *texts[1];
    EXPECT_EQ(type.Text, QStringLiteral("Slow March")); // the capitals stay in the score
    EXPECT_EQ(type.Alignment, CTextArea::Left);
    EXPECT_EQ(type.Font.Height(), -10);
    EXPECT_TRUE(type.Font.Italic());
    EXPECT_GT(type.Bounds().Y, title.Bounds().Bottom());

    const CTextArea& composer = *texts[2];
    EXPECT_EQ(composer.Alignment, CTextArea::Right);
    EXPECT_EQ(composer.Font.Height(), -13);
    EXPECT_TRUE(composer.Font.Underline());
    EXPECT_FLOAT_EQ(composer.Bounds().Right(), page.ContentBox().Right());

    // The type word, in lower case, makes a slow tune of a march.
    EXPECT_EQ(m_source->LeftText.Text, QStringLiteral("slow march"));
    EXPECT_EQ(doc->Tempo, 60);
}

TEST(GlenmarchTempo, SignatureAndTuneTypeSetTheTempo)
{
    const auto typeOf = [](char16_t c) { return CTimeSig::TimeSigFromChar(c); };
    EXPECT_EQ(TempoForTune(typeOf(u'#'), {}), 60);   // 3/4
    EXPECT_EQ(TempoForTune(typeOf(u'&'), {}), 80);   // 6/8
    EXPECT_EQ(TempoForTune(CTimeSig::None, {}), 74); // no signature
    EXPECT_EQ(TempoForTune(typeOf(u'$'), QStringLiteral("strathspey")), 60);
    EXPECT_EQ(TempoForTune(typeOf(u'&'), QStringLiteral("jig")), 120);
    EXPECT_EQ(TempoForTune(typeOf(u'#'), QStringLiteral("slow air")), 60);
    // The words are tried in a fixed order and the last found wins.
    EXPECT_EQ(TempoForTune(typeOf(u'&'), QStringLiteral("slow jig")), 60);
    EXPECT_EQ(TempoForTune(typeOf(u'$'), QStringLiteral("strathspey jig")), 120);
}

TEST(GlenmarchNoteValues, BeamedValuesFollowTheSignatureAndTheDoublingFlag)
{
    const CTimeSig common(1);
    const CTimeSig twoFour(6);
    const CTimeSig sixEight(12);
    const BeamedNoteContext plain{};
    const BeamedNoteContext busy{.BusyBar = true};
    const BeamedNoteContext doubling{.BeatDoubling = true};
    const BeamedNoteContext busyDoubling{.BeatDoubling = true, .BusyBar = true};
    const auto duration = [](std::int32_t code, std::int32_t dot, const CTimeSig& sig,
                             const BeamedNoteContext& c) {
        return BeamedNoteValue(code, dot, sig, c).Duration;
    };

    // Tunes with the flag store beamed notes at half their value.
    EXPECT_EQ(duration(kCrotchet, 0, common, doubling), 8);
    EXPECT_EQ(duration(kQuaver, 1, common, doubling), 16);
    EXPECT_EQ(duration(30, 0, common, doubling), 64); // a gracenote is never doubled
    EXPECT_EQ(duration(kQuaver, 0, common, plain), 8);
    // In 2/4 a plain quaver stays a quaver; a dotted crotchet in a busy bar becomes a semiquaver.
    EXPECT_EQ(duration(kQuaver, 0, twoFour, doubling), 8);
    EXPECT_EQ(duration(kCrotchet, 1, twoFour, busyDoubling), 16);
    // Without the flag, 2/4 halves the short values and lengthens a busy dotted crotchet.
    EXPECT_EQ(duration(kSemiquaver, 0, twoFour, plain), 8);
    EXPECT_EQ(duration(kCrotchet, 1, twoFour, busy), 8);
    // Tunes in eighths halve the quavers and shorter.
    EXPECT_EQ(duration(kQuaver, 0, sixEight, plain), 4);
    EXPECT_EQ(duration(kCrotchet, 0, sixEight, plain), 4);

    // A BWW semiquaver comes out as a cut quaver.
    const BeamedNoteContext text{.FromText = true};
    const NoteValue cut = BeamedNoteValue(kSemiquaver, 0, common, text);
    EXPECT_EQ(cut.Duration, 8);
    EXPECT_EQ(cut.DotCut, CNoteEx::Cut);
    EXPECT_EQ(BeamedNoteValue(kQuaver, 1, common, text).DotCut, CNoteEx::Dotted);
}

TEST_F(GlenmarchConversion, ColumnsFollowTheOlderWidthsAndAnUpbeatTakesFourTenths)
{
    GlenmarchTune tune;
    tune.Doc.BarsPerLine = 4;
    // The first line has an upbeat bar before four bars; the second line three bars, the middle
    // one twice as wide as the others.
    tune.AddNote(tune.AddBar(1, 1, 300), kCrotchet, kE, 100);
    for (int column = 2; column <= 5; ++column)
        tune.AddNote(tune.AddBar(1, column), kCrotchet, kD, 500);
    for (int column = 1; column <= 3; ++column) {
        CBar& bar = tune.AddBar(2, column, column == 2 ? 2000 : 1000);
        tune.AddNote(bar, kCrotchet, kD, 500);
    }
    const auto doc = Convert(tune);
    const CStaveArea& area = *MusicAreas(*doc).front();
    ASSERT_EQ(area.ChildCount(), 2u);

    const CStave& first = StaveOf(area, 0);
    ASSERT_EQ(first.ChildCount(), 5u);
    const float upbeat = BarOf(area, 0, 0).Bounds().Width;
    const float full = BarOf(area, 0, 1).Bounds().Width;
    EXPECT_NEAR(upbeat, 0.4f * full, 1e-4f);
    float sum = 0;
    for (std::size_t c = 0; c < 5; ++c)
        sum += BarOf(area, 0, c).Bounds().Width;
    EXPECT_NEAR(sum, first.ContentBox().Width, 1e-3f);
    EXPECT_NEAR(BarOf(area, 0, 4).Bounds().Right(), first.ContentBox().Right(), 1e-3f);

    // The short line loses the columns it has no bars for.
    const CStave& second = StaveOf(area, 1);
    ASSERT_EQ(second.ChildCount(), 3u);
    EXPECT_GT(BarOf(area, 1, 1).Bounds().Width, BarOf(area, 1, 0).Bounds().Width);
    for (std::size_t c = 0; c < 3; ++c)
        EXPECT_EQ(ChildrenOf<CNoteEx>(BarOf(area, 1, c)).size(), 1u) << c;
}

// The older program started the lines after an upbeat line with one bar over the upbeat column
// and the first column, and left the last column empty.
TEST_F(GlenmarchConversion, LinesStartingWithABarOverTwoColumnsLoseTheUpbeatColumn)
{
    GlenmarchTune tune;
    tune.Doc.BarsPerLine = 4;
    tune.AddNote(tune.AddBar(1, 1, 400), kCrotchet, kE, 100);
    for (int column = 2; column <= 5; ++column)
        tune.AddNote(tune.AddBar(1, column, 1900), kCrotchet, kD, 500);
    for (int line = 2; line <= 3; ++line) {
        tune.AddNote(tune.AddBar(line, 1, 2300), kCrotchet, kD, 500);
        for (int column = 2; column <= 4; ++column)
            tune.AddNote(tune.AddBar(line, column, 1900), kCrotchet, kD, 500);
    }
    const auto doc = Convert(tune);
    const CStaveArea& area = *MusicAreas(*doc).front();
    ASSERT_EQ(area.ChildCount(), 3u);
    EXPECT_EQ(StaveOf(area, 0).ChildCount(), 5u);
    for (std::size_t system = 1; system <= 2; ++system) {
        ASSERT_EQ(StaveOf(area, system).ChildCount(), 4u) << system;
        // Four bars of one width: the wide first bar is a bar like the others.
        for (std::size_t column = 1; column < 4; ++column)
            EXPECT_NEAR(BarOf(area, system, column).Bounds().Width, BarOf(area, system, 0).Bounds().Width,
                        1e-4f);
    }
}

TEST_F(GlenmarchConversion, APartLaidOutByTheImportBecomesSystemsOfFourBars)
{
    GlenmarchTune tune;
    CPart& part = tune.AddPart(1, 9);
    part.AnacrusisState = CPart::Upbeat;
    tune.Doc.LayOutPart(1);
    for (const auto& bar : tune.Doc.Bars)
        bar->AddNote(kCrotchet, bar->Left + 100, bar->Top, tune.Doc);
    const auto doc = ConvertToNewDocument(tune.Doc, true);

    const CStaveArea& area = *MusicAreas(*doc).front();
    ASSERT_EQ(area.ChildCount(), 2u);
    ASSERT_EQ(StaveOf(area, 0).ChildCount(), 5u);
    EXPECT_NEAR(BarOf(area, 0, 0).Bounds().Width, 0.4f * BarOf(area, 0, 1).Bounds().Width, 1e-4f);
    ASSERT_EQ(StaveOf(area, 1).ChildCount(), 4u);
    for (std::size_t column = 0; column < 4; ++column)
        EXPECT_EQ(ChildrenOf<CNoteEx>(BarOf(area, 1, column)).size(), 1u) << column;
}

TEST_F(GlenmarchConversion, NotesBeamsAndMovementsComeAcross)
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
    const auto doc = Convert(tune);

    const CBarEx& converted = BarOf(*MusicAreas(*doc).front(), 0, 0);
    const auto movements = ChildrenOf<CFixedNoteGroup>(converted);
    ASSERT_EQ(movements.size(), 1u);
    EXPECT_EQ(movements[0]->Name, QStringLiteral("Low G"));
    EXPECT_EQ(movements[0]->GetNoteCount(), 3);

    const auto notes = ChildrenOf<CNoteEx>(converted);
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(notes[0]->Pitch, 10); // Low A
    EXPECT_EQ(notes[0]->Duration, 4);

    const auto beams = ChildrenOf<CNoteGroupEx>(converted);
    ASSERT_EQ(beams.size(), 1u);
    const auto beamed = ChildrenOf<CNoteEx>(*beams[0]);
    ASSERT_EQ(beamed.size(), 3u);
    // The tune has the beat doubling flag, as every tune before schema 4: the stored value doubles,
    // and the beam then adds the one beam the older codes leave out.
    EXPECT_EQ(beamed[0]->Duration, 32);
    EXPECT_EQ(beamed[1]->DotCut, CNoteEx::Dotted);
    EXPECT_EQ(beamed[1]->Pitch, 6); // E
    EXPECT_FALSE(beamed[0]->Stemmed);

    // In playing order: the movement, the note, the beam.
    EXPECT_LT(movements[0]->GetBounds().X, notes[0]->GetBounds().X);
    EXPECT_LT(notes[0]->GetBounds().X, beams[0]->GetBounds().X);
}

TEST_F(GlenmarchConversion, TiesJoinTheirNotesAcrossBars)
{
    GlenmarchTune tune = PlainTune(1, 2);
    CBar& first = *tune.Doc.Bars[0];
    CBar& second = *tune.Doc.Bars[1];
    const CNote& held = tune.AddNote(first, kCrotchet, kD, 800);
    tune.Tie(held, *second.Notes[0]);
    const CNote& a = tune.AddNote(second, kQuaver, kD, 600);
    const CNote& b = tune.AddNote(second, kQuaver, kE, 700);
    const CNote& c = tune.AddNote(second, kQuaver, kD, 800);
    tune.Beam(second, {&a, &b, &c});
    tune.Tie(a, b, &c);
    const auto doc = Convert(tune);

    ASSERT_EQ(doc->Ties.size(), 2u);
    const CTieEx& tie = *doc->Ties[0];
    ASSERT_EQ(tie.Notes.size(), 2u);
    const CStaveArea& area = *MusicAreas(*doc).front();
    EXPECT_EQ(tie.Notes[0]->Parent(), &BarOf(area, 0, 0));
    EXPECT_EQ(tie.Notes[1]->Parent(), &BarOf(area, 0, 1));
    EXPECT_EQ(tie.Notes[1]->Tie, &tie);

    const CTieEx& triplet = *doc->Ties[1];
    EXPECT_EQ(triplet.Notes.size(), 3u);
    EXPECT_EQ(triplet.TieValue, 3);
    EXPECT_NE(triplet.Id, tie.Id);
    // The tune's first note is in no tie.
    EXPECT_EQ(ChildrenOf<CNoteEx>(BarOf(area, 0, 0)).front()->Tie, nullptr);
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

    const CStaveArea& area = *MusicAreas(*doc).front();
    const CBarEx& first = BarOf(area, 1, 1);
    const CBarEx& second = BarOf(area, 1, 2);
    const CBarEx& after = BarOf(area, 1, 3);
    EXPECT_EQ(BarOf(area, 1, 0).Config->RepeatEnding, CBarConfig::NoEnding);
    EXPECT_EQ(first.Config->RepeatEnding, CBarConfig::FirstTime);
    EXPECT_EQ(second.Config->RepeatEnding, CBarConfig::SecondTime);
    ASSERT_EQ(area.RepeatMarkers.size(), 1u);
    EXPECT_EQ(first.RepeatTiming, area.RepeatMarkers[0].get());
    EXPECT_EQ(first.RepeatTiming->RepeatId, 1);
    EXPECT_EQ(first.RepeatTiming->StartStave, 1);

    const auto kindOf = [](const CBarEx& bar) { return ChildrenOf<CNoteEx>(bar).front()->RepeatKind; };
    EXPECT_EQ(kindOf(BarOf(area, 1, 0)), 0);
    EXPECT_EQ(kindOf(first), 1);
    EXPECT_EQ(ChildrenOf<CNoteEx>(first).front()->RepeatId, 1);
    EXPECT_EQ(kindOf(second), 2);
    // The end of the repeat closes the section.
    EXPECT_EQ(after.Config->RepeatEnding, CBarConfig::NoEnding);
    EXPECT_EQ(kindOf(after), 0);
}

TEST_F(GlenmarchConversion, LongTunesGoOnToNewPages)
{
    GlenmarchTune tune = PlainTune(12, 2);
    tune.Doc.TimeSigText = QStringLiteral("#");
    const auto doc = Convert(tune);
    ASSERT_EQ(doc->Pages.size(), 2u);
    const auto areas = MusicAreas(*doc);
    ASSERT_EQ(areas.size(), 2u);
    EXPECT_EQ(areas[0]->ChildCount() + areas[1]->ChildCount(), 12u);
    EXPECT_TRUE(areas[0]->ShowTimeSig);
    EXPECT_FALSE(areas[1]->ShowTimeSig);
    EXPECT_EQ(areas[0]->InitialTimeSig.Type, 7);
    EXPECT_EQ(areas[1]->InitialTimeSig.Type, 7);
    EXPECT_TRUE(doc->Pages[1]->Bounds().Contains(areas[1]->Bounds().X, areas[1]->Bounds().Y));
    EXPECT_LE(areas[0]->Bounds().Bottom(), doc->Pages[0]->Bounds().Bottom());
}

TEST_F(GlenmarchConversion, ABwwTuneWritesItsValuesAsStored)
{
    GlenmarchTune tune = PlainTune(1, 1);
    CBar& bar = *tune.Doc.Bars[0];
    const CNote& a = tune.AddNote(bar, kSemiquaver, kD, 600);
    const CNote& b = tune.AddNote(bar, kSemiquaver, kE, 700);
    tune.Beam(bar, {&a, &b});
    const auto doc = Convert(tune, true);
    EXPECT_EQ(m_source->BeatDoubling, 0);
    const auto beams = ChildrenOf<CNoteGroupEx>(BarOf(*MusicAreas(*doc).front(), 0, 0));
    ASSERT_EQ(beams.size(), 1u);
    for (const CNoteEx* note : ChildrenOf<CNoteEx>(*beams[0])) {
        EXPECT_EQ(note->Duration, 16);
        EXPECT_EQ(note->DotCut, CNoteEx::Cut);
    }
}

TEST_F(GlenmarchConversion, TheConvertedScoreSavesAndReadsBack)
{
    GlenmarchTune tune = PlainTune(3, 4);
    CBar& bar = *tune.Doc.BarAt(1, 2);
    const CNote& a = tune.AddNote(bar, kQuaver, kD, 600);
    const CNote& b = tune.AddNote(bar, kQuaver, kE, 700);
    tune.Beam(bar, {&a, &b});
    tune.Tie(*tune.Doc.BarAt(1, 1)->Notes[0], *bar.Notes[0]);
    tune.AddNote(bar, kLowGDoubling, 19, 900);
    const auto doc = Convert(tune);

    const QByteArray bytes = StoreScore(*doc, QStringLiteral("tune.skb"));
    const auto read = ReadScore(bytes, QStringLiteral("tune.skb"));
    EXPECT_EQ(StoreScore(*read, QStringLiteral("tune.skb")), bytes);
    EXPECT_EQ(read->Ties.size(), 1u);
    EXPECT_EQ(read->Ties[0]->Notes.size(), 2u);
}

TEST_F(GlenmarchConversion, TheImportGoesIntoTheActiveViewOnly)
{
    GlenmarchTune tune = PlainTune(1, 2);
    ConvertIntoActiveView(tune.Reread(), false); // no view: nothing to convert into

    CCorrievalDoc doc;
    doc.OnNewDocument();
    testing::RecordingView view;
    view.Doc = &doc;
    ConvertIntoActiveView(tune.Reread(), false);
    ASSERT_EQ(MusicAreas(doc).size(), 1u);
    EXPECT_EQ(StaveOf(*MusicAreas(doc).front(), 0).ChildCount(), 2u);
    EXPECT_NE(std::find(view.Invalidated.begin(), view.Invalidated.end(), doc.Pages.front().get()),
              view.Invalidated.end());
}

} // namespace
} // namespace corrieval
