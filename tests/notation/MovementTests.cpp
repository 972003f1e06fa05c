#include "model/BarEx.h"
#include "notation/FixedNoteGroup.h"
#include "notation/MovementCatalogue.h"
#include "notation/MovementFromCode.h"
#include "notation/NoteEx.h"
#include "notation/TieEx.h"
#include "platform/MovementDefinitions.h"
#include "platform/SettingsStore.h"
#include "support/RecordingMessages.h"
#include "support/RecordingPainter.h"
#include "support/TempConfigDir.h"

#include <QSet>

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace corrieval {
namespace {

std::vector<NotePitch> Pitches(const CFixedNoteGroup& group)
{
    std::vector<NotePitch> pitches;
    for (const auto& child : group.Children())
        pitches.push_back(static_cast<const CNoteEx&>(*child).Pitch);
    return pitches;
}

std::vector<float> Weights(const CFixedNoteGroup& group)
{
    std::vector<float> weights;
    for (const auto& child : group.Children())
        weights.push_back(static_cast<const CNoteEx&>(*child).Weight);
    return weights;
}

const CNoteEx& Note(const CFixedNoteGroup& group, std::size_t i)
{
    return static_cast<const CNoteEx&>(*group.ChildAt(i));
}

// Held by pointer: a copy of a group is a Clone, which changes the notes' roles.
std::unique_ptr<CFixedNoteGroup> Built(const QString& name, const QString& chars, const QString& positions)
{
    auto group = std::make_unique<CFixedNoteGroup>(name);
    group->BuildNotes(chars, positions, 0, 0);
    return group;
}

TEST(Movement, BuildNotesPlacesEachGracenoteOnItsDigit)
{
    CFixedNoteGroup doubling("Low G");
    doubling.BuildNotes("KKK", "184", 1, 7);
    EXPECT_EQ(Pitches(doubling), (std::vector<NotePitch>{4, 11, 7}));
    for (const auto& child : doubling.Children()) {
        const auto& note = static_cast<const CNoteEx&>(*child);
        EXPECT_EQ(note.Duration, 256);
        EXPECT_TRUE(note.GraceHead);
        EXPECT_FALSE(note.Stemmed);
        EXPECT_EQ(note.HeadChar.Code, CNoteEx::GraceHeadGlyph);
        EXPECT_EQ(note.RepeatKind, 1);
        EXPECT_EQ(note.RepeatId, 7);
        EXPECT_EQ(note.Parent(), &doubling);
    }
    // Without a repeat section the id is not kept.
    CFixedNoteGroup plain("Low G");
    plain.BuildNotes("KKK", "184", 0, 7);
    EXPECT_EQ(Note(plain, 0).RepeatId, 0);

    // One digit: a whole stemmed gracenote rather than a bare head under beams.
    const auto single = Built("Half Doubling on High G", "K", "2");
    ASSERT_EQ(single->GetNoteCount(), 1);
    EXPECT_EQ(Note(*single, 0).Pitch, 5);
    EXPECT_TRUE(Note(*single, 0).Stemmed);
    EXPECT_FALSE(Note(*single, 0).GraceHead);
    EXPECT_EQ(Note(*single, 0).HeadChar.Code, 75);
}

TEST(Movement, MismatchedOrOutOfRangeDefinitionsStayOnTheStave)
{
    EXPECT_EQ(Pitches(*Built("Low G", "KKK", "84")), (std::vector<NotePitch>{3, 3, 3}));
    EXPECT_EQ(Pitches(*Built("Low G", "KK", "84444")), (std::vector<NotePitch>{3, 3}));
    EXPECT_EQ(Pitches(*Built("x", "KKK", "9x0")), (std::vector<NotePitch>{11, 3, 3}));
    EXPECT_EQ(Built("x", "", "184")->GetNoteCount(), 0);
    // A character that is no note of the font still gives a gracenote of the movement.
    EXPECT_EQ(Note(*Built("x", "?!", "12"), 0).Duration, 256);
}

TEST(Movement, WeightsFollowTheExactDisplayName)
{
    EXPECT_EQ(Weights(*Built("Throw On D", "KKKK", "8450")), (std::vector<float>{1.65f, 0.6f, 0.75f, 1.0f}));
    EXPECT_EQ(Weights(*Built("Throw on D", "KKK", "845")), (std::vector<float>{2.1f, 0.45f, 0.45f}));
    EXPECT_EQ(Weights(*Built("throw on d", "KKK", "845")), (std::vector<float>{1.0f, 1.0f, 1.0f}));
    EXPECT_EQ(Weights(*Built("Half Doubling on High G", "KK", "12")), (std::vector<float>{1.0f, 1.0f}));
    EXPECT_EQ(Weights(*Built("Cadence (3)", "KK", "03")), (std::vector<float>{2.1f, 0.45f}));
}

TEST(Movement, CatalogueNamesAreUniqueAndCodesLookUp)
{
    QSet<QString> names;
    for (const MovementRow& row : MovementRows()) {
        if (row.Name == nullptr)
            continue;
        EXPECT_FALSE(names.contains(row.Name)) << row.Name;
        names.insert(row.Name);
    }
    const CodeInfo crotchet = LookUpCode(2);
    EXPECT_EQ(crotchet.Kind, CodeKind::Note);
    EXPECT_EQ(crotchet.Duration, 4);
    EXPECT_EQ(LookUpCode(31).Duration, 64);
    EXPECT_EQ(LookUpCode(5).Kind, CodeKind::Refused);
    EXPECT_EQ(LookUpCode(5).Token, "minhd");
    EXPECT_EQ(LookUpCode(103).Kind, CodeKind::Refused);
    EXPECT_EQ(LookUpCode(103).Token, "flat");
    // The deliberate offset at the end of the doublings.
    EXPECT_EQ(LookUpCode(62).Token, "dbhg-b");
    EXPECT_EQ(LookUpCode(62).Name, "Half Doubling on High G");
    EXPECT_EQ(LookUpCode(63).Name, "High A");
    for (const std::uint32_t unknown : {7u, 64u, 125u, 177u, 0xFFFFFFFFu}) {
        EXPECT_EQ(LookUpCode(unknown).Kind, CodeKind::Unknown);
        EXPECT_EQ(LookUpCode(unknown).Token, "??");
    }
    EXPECT_EQ(MovementCategory(63), "Doublings");
    EXPECT_EQ(MovementCategory(103), "Embellishments");
    EXPECT_EQ(MovementCategory(176), "Piobaireachd");
}

// Pitch names as a piper writes them.
NotePitch PitchOf(const QString& name)
{
    static const std::map<QString, NotePitch> pitches{{"HA", 3}, {"HG", 4}, {"F", 5},   {"E", 6},  {"D", 7},
                                                      {"C", 8},  {"B", 9},  {"LA", 10}, {"LG", 11}};
    return pitches.at(name);
}

TEST(Movement, ShippedDefinitionsGiveTheGracenotesPipersPlay)
{
    const testing::TempConfigDir config;
    ASSERT_EQ(InstallMovementDefinitions(), "");
    const struct {
        const char* Category;
        const char* Name;
        const char* Pitches;
    } samples[] = {
        {"Doublings", "Low G", "HG LG D"},
        {"Doublings", "F Back Gracenote", "HA F HG"},
        {"Doublings", "Half Doubling on High G", "F"},
        {"Doublings", "High A", "HA HG"},
        {"Embellishments", "Throw On D", "LG D C"},
        {"Embellishments", "Birl with G gracenote", "HG LA LG LA LG"},
        {"Embellishments", "Shake on B with E, back gracenote", "HA B E B LG"},
        {"Embellishments", "E Strike", "HG E LA"},
        {"Piobaireachd", "Throw on D", "LG D C"},
        {"Piobaireachd", "Endari/Dre/Edri", "E LA F LA"},
        {"Piobaireachd", "Chedari", "F E HG E F E"},
        {"Piobaireachd", "Crunluath", "LG D LG E LA F LA"},
    };
    for (const auto& sample : samples) {
        SCOPED_TRACE(sample.Name);
        const MovementDefinition definition = ReadMovementDefinition(sample.Category, sample.Name);
        ASSERT_TRUE(definition.Usable());
        std::vector<NotePitch> expected;
        for (const QString& name : QString(sample.Pitches).split(' '))
            expected.push_back(PitchOf(name));
        EXPECT_EQ(Pitches(*Built(sample.Name, definition.Chars, definition.RelativeNotePositions)), expected);
    }
}

TEST(Movement, EveryCatalogueMovementHasADefinitionOfItsLengthInCodeOrder)
{
    const testing::TempConfigDir config;
    ASSERT_EQ(InstallMovementDefinitions(), "");
    std::map<QString, QStringList> expectedOrder;
    for (const MovementRow& row : MovementRows()) {
        if (row.Name == nullptr)
            continue;
        const QString category = MovementCategory(row.Code);
        expectedOrder[category] << row.Name;
        SCOPED_TRACE(row.Name);
        const MovementDefinition definition = ReadMovementDefinition(category, row.Name);
        ASSERT_TRUE(definition.Usable());
        EXPECT_EQ(static_cast<std::size_t>(definition.Chars.size()), row.Weights.size());
        EXPECT_EQ(definition.RelativeNotePositions.size(), definition.Chars.size());
    }
    for (const auto& [category, names] : expectedOrder) {
        QStringList shipped;
        for (const PaletteEntry& entry : ReadPalette(category))
            shipped << entry.Name;
        EXPECT_EQ(shipped, names);
    }
}

class MovementFromCodeTest : public ::testing::Test {
protected:
    testing::TempConfigDir Config;
    testing::RecordingMessages Messages;
    CBarEx Bar;
    MovementMade Made{"before", 9};
};

TEST_F(MovementFromCodeTest, APlainCodeMakesANoteThatJoinsTheTie)
{
    CTieEx tie;
    MovementFromCode({2, 24, 1}, Bar, 1.5f, 2.0f, 0.6f, &tie, {2, 5}, Made);
    ASSERT_EQ(Bar.ChildCount(), 1u);
    const auto* note = dynamic_cast<const CNoteEx*>(Bar.ChildAt(0));
    ASSERT_NE(note, nullptr);
    EXPECT_EQ(note->Bounds(), (RectF{1.5f, 2.0f, 0.156f, 0.6f}));
    EXPECT_EQ(note->Pitch, 6);
    EXPECT_EQ(note->Duration, 4);
    EXPECT_EQ(note->HeadChar.Code, 38);
    EXPECT_EQ(note->DotCut, CNoteEx::Dotted);
    EXPECT_EQ(note->RepeatKind, 2);
    EXPECT_EQ(note->RepeatId, 5);
    EXPECT_EQ(note->Tie, &tie);
    EXPECT_EQ(Made.NoteCount, 1);

    MovementFromCode({30, 10, 0}, Bar, 2.5f, 2.0f, 0.6f, nullptr, {}, Made);
    const auto* grace = dynamic_cast<const CNoteEx*>(Bar.ChildAt(1));
    ASSERT_NE(grace, nullptr);
    EXPECT_EQ(grace->HeadChar.Code, 43);
    EXPECT_EQ(grace->Pitch, LowestPitch); // a position below the stave is clamped
    EXPECT_TRUE(Messages.Texts.isEmpty());
}

TEST_F(MovementFromCodeTest, AMovementCodeBuildsItsDefinition)
{
    ASSERT_EQ(InstallMovementDefinitions(), "");
    MovementFromCode({85, 24, 0}, Bar, 1.0f, 2.0f, 0.6f, nullptr, {1, 3}, Made);
    ASSERT_EQ(Bar.ChildCount(), 1u);
    const auto* group = dynamic_cast<const CFixedNoteGroup*>(Bar.ChildAt(0));
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->Name, "Taorluath on D");
    EXPECT_EQ(Pitches(*group), (std::vector<NotePitch>{11, 9, 11, 6}));
    EXPECT_EQ(group->GetRepeatLink().Kind, 1);
    EXPECT_EQ(group->GetRepeatLink().Id, 3);
    EXPECT_NEAR(group->Bounds().Width, 4 * 0.078f, 1e-6);
    EXPECT_EQ(Made.Name, "Taorluath on D");
    EXPECT_EQ(Made.NoteCount, 4);
}

TEST_F(MovementFromCodeTest, RefusedAndUnknownCodesAreReportedAndAddNothing)
{
    ASSERT_EQ(InstallMovementDefinitions(), "");
    MovementFromCode({103, 24, 0}, Bar, 1.0f, 2.0f, 0.6f, nullptr, {}, Made);
    MovementFromCode({5, 24, 0}, Bar, 1.0f, 2.0f, 0.6f, nullptr, {}, Made);
    MovementFromCode({500, 24, 0}, Bar, 1.0f, 2.0f, 0.6f, nullptr, {}, Made);
    EXPECT_EQ(Messages.Texts, (QStringList{"Unknown note type [flat]. This will be ignored.",
                                           "Unknown note type [minhd]. This will be ignored.",
                                           "Unknown note type [??]. This will be ignored."}));
    EXPECT_EQ(Bar.ChildCount(), 0u);
    EXPECT_EQ(Made.Name, "before");
    EXPECT_EQ(Made.NoteCount, 9);
    // The lookup still ran, under a name that holds no definition.
    const SettingsStore movements(QString::fromLatin1(MovementsKeyPath));
    EXPECT_TRUE(movements.Subkey("Embellishments").SubkeyNames().contains("unknown"));
}

TEST_F(MovementFromCodeTest, AMovementWithoutAUsableDefinitionAddsNothing)
{
    MovementFromCode({52, 24, 0}, Bar, 1.0f, 2.0f, 0.6f, nullptr, {}, Made);
    {
        // Defined, but kept out of conversions.
        SettingsStore d =
            SettingsStore(QString::fromLatin1(MovementsKeyPath)).Subkey("Doublings").Subkey("D");
        d.WriteString("Chars", "KKK");
        d.WriteString("RelativeNotePositions", "143");
        ASSERT_EQ(d.Sync(), "");
    }
    MovementFromCode({52, 24, 0}, Bar, 1.0f, 2.0f, 0.6f, nullptr, {}, Made);
    EXPECT_EQ(Bar.ChildCount(), 0u);
    EXPECT_EQ(Made.NoteCount, 9);
    EXPECT_TRUE(Messages.Texts.isEmpty());
    EXPECT_EQ(ReadMovementDefinition("Doublings", "D").FixedStavePosition, -1);
}

// A movement in a music box 19 units of 0.03 inch high, as a stave holds it.
constexpr float kU = 0.03f;
constexpr float kLeft = 1.0f;
constexpr float kTop = 2.0f;

std::unique_ptr<CFixedNoteGroup> DrawnMovement(const QString& chars, const QString& positions,
                                               testing::RecordingPainter& painter)
{
    auto group = Built("Low G", chars, positions);
    group->SetBounds(kLeft, kTop, 0.1f * static_cast<float>(chars.size()), 19 * kU);
    group->Draw(painter, OutputMode::Screen);
    return group;
}

struct Segment {
    QPointF From;
    QPointF To;
};

std::vector<Segment> Segments(const QPainterPath& path)
{
    std::vector<Segment> segments;
    for (int i = 1; i < path.elementCount(); ++i) {
        if (path.elementAt(i).isLineTo())
            segments.push_back({path.elementAt(i - 1), path.elementAt(i)});
    }
    return segments;
}

TEST(MovementDrawing, HeadsLandOnTheirPitchesWithStemsUpToThreeBeams)
{
    testing::RecordingPainter painter;
    const auto group = DrawnMovement("KKK", "084", painter); // High A, Low G, D
    const auto fills = painter.Of(testing::PaintCall::Kind::FillPath);
    const auto strokes = painter.Of(testing::PaintCall::Kind::StrokePath);
    ASSERT_EQ(fills.size(), 1u);
    ASSERT_EQ(strokes.size(), 2u);
    const float cell = 2 * (group->Bounds().Width / 3) / 3;

    std::vector<Segment> stems;
    std::vector<Segment> ledgers;
    for (const Segment& s : Segments(strokes[0].Path))
        (s.From.x() == s.To.x() ? stems : ledgers).push_back(s);
    ASSERT_EQ(stems.size(), 3u);
    ASSERT_EQ(ledgers.size(), 1u); // High A only
    const float beamTop = kTop + 19 * kU / 40;

    for (std::size_t i = 0; i < 3; ++i) {
        const NotePitch pitch = Note(*group, i).Pitch;
        const double line = kTop + pitch * kU;
        SCOPED_TRACE(::testing::Message() << "note " << i);
        // The ink of the head in its own cell is centred on the note's stave position.
        QPainterPath strip;
        strip.addRect(kLeft + cell * static_cast<float>(i), kTop - 5 * kU, cell, 30 * kU);
        const QRectF head = fills[0].Path.intersected(strip).boundingRect();
        EXPECT_NEAR(head.center().y(), line, 0.15 * kU);
        // The stem rises from the head's middle, at its right, to the top beam.
        EXPECT_NEAR(stems[i].To.y(), line, 1e-5);
        EXPECT_NEAR(stems[i].From.y(), beamTop, 1e-5);
        EXPECT_NEAR(stems[i].From.x(), head.right(), 0.1 * kU);
    }
    EXPECT_NEAR(ledgers[0].From.y(), kTop + 3 * kU, 1e-5);

    // Three beams at the top, each reaching the next stem; the last note has stubs.
    const std::vector<Segment> beams = Segments(strokes[1].Path);
    ASSERT_EQ(beams.size(), 9u);
    EXPECT_NEAR(beams[0].From.y(), beamTop, 1e-5);
    EXPECT_NEAR(beams[2].From.y(), beamTop + 2 * kU / 1.75f, 1e-5);
    EXPECT_GT(beams[0].To.x(), stems[1].From.x());
    EXPECT_LT(beams[8].To.x(), stems[2].From.x() + kU);
    EXPECT_FLOAT_EQ(strokes[1].Stroke.Width, 1.5f * strokes[0].Stroke.Width);
}

TEST(MovementDrawing, ASingleGracenoteHasBeamStubsButNoStem)
{
    testing::RecordingPainter painter;
    DrawnMovement("K", "2", painter);
    const auto strokes = painter.Of(testing::PaintCall::Kind::StrokePath);
    ASSERT_EQ(strokes.size(), 2u);
    EXPECT_TRUE(Segments(strokes[0].Path).empty());
    EXPECT_EQ(Segments(strokes[1].Path).size(), 3u);
}

TEST(MovementDrawing, HitsOnHeadsAndLinesAndRubberBandOnTheLines)
{
    testing::RecordingPainter painter;
    const auto group = DrawnMovement("KKK", "184", painter);
    const RectF head = Note(*group, 0).HeadRect;
    EXPECT_TRUE(group->HitTestNote(head.X + head.Width / 2, head.Y + head.Height / 2));
    // On the top beam, between two heads.
    const QRectF lines = group->StemPath.boundingRect();
    EXPECT_TRUE(group->HitTestNote(static_cast<float>(lines.center().x()), static_cast<float>(lines.top())));
    EXPECT_FALSE(group->HitTestNote(kLeft - kU, kTop + 7 * kU));

    const auto x = static_cast<float>(lines.x());
    const auto y = static_cast<float>(lines.y());
    const auto w = static_cast<float>(lines.width());
    const auto h = static_cast<float>(lines.height());
    EXPECT_TRUE(group->IsWithin(x, y, w, h));
    EXPECT_FALSE(group->IsWithin(x + kU, y, w, h));
    EXPECT_FALSE(CFixedNoteGroup().IsWithin(-10, -10, 20, 20)); // never drawn
}

TEST(MovementDrawing, ToolbarImageShowsTheStaveOnlyBehindSeveralNotes)
{
    for (const auto& [chars, positions, staveLines] :
         {std::tuple{"KKK", "184", 5}, std::tuple{"K", "2", 0}}) {
        const auto group = Built("Low G", chars, positions);
        testing::RecordingPainter painter;
        group->DrawToolbarImage(painter, 0, 0, 32, 32, true);
        int horizontal = 0;
        for (const Segment& s : Segments(painter.Of(testing::PaintCall::Kind::StrokePath).front().Path))
            horizontal += s.From.y() == s.To.y() && s.To.x() - s.From.x() == 32 ? 1 : 0;
        EXPECT_EQ(horizontal, staveLines) << chars;
        EXPECT_EQ(painter.Of(testing::PaintCall::Kind::StrokePath).front().Stroke.Argb, 0xFF202080u);
    }
}

TEST(Movement, CloneCopiesNotesAndNameButNotPlaceOrColour)
{
    CBarEx bar;
    auto* group = static_cast<CFixedNoteGroup*>(bar.AppendNote(std::make_unique<CFixedNoteGroup>("Birl")));
    group->BuildNotes("KKKK", "7878", 0, 0);
    group->SetMargins(0.1f);
    group->SetColour(CNoteBase::SelectedColour);
    static_cast<CNoteEx*>(group->ChildAt(1))->Weight = 0.5f;

    const auto copy = group->Clone();
    const auto& clone = static_cast<const CFixedNoteGroup&>(*copy);
    EXPECT_EQ(clone.Name, "Birl");
    EXPECT_EQ(Pitches(clone), Pitches(*group));
    EXPECT_EQ(Weights(clone), Weights(*group));
    EXPECT_EQ(clone.Parent(), nullptr);
    EXPECT_EQ(clone.ChildAt(0)->Parent(), &clone);
    EXPECT_EQ(clone.Colour(), CNoteBase::PlainColour);
    EXPECT_EQ(clone.LeftMargin, 0.0f);
    EXPECT_EQ(clone.Bounds(), group->Bounds());
}

TEST(Movement, RepeatLinkIsTheFirstNotes)
{
    const auto group = Built("Birl", "KKKK", "7878");
    group->SetRepeatLink(2, 4);
    EXPECT_EQ(group->GetRepeatLink().Kind, 2);
    EXPECT_EQ(group->GetRepeatLink().Id, 4);
    EXPECT_EQ(Note(*group, 1).RepeatKind, 0);
    EXPECT_EQ(CFixedNoteGroup().GetRepeatLink().Kind, 0);
    group->SetBounds(0, 0, 0, 1.0f);
    EXPECT_FLOAT_EQ(group->GetDefaultWidth(), 0.5f); // from the height when there is no width
}

} // namespace
} // namespace corrieval
