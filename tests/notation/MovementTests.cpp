// Movements: their gracenotes built from definitions and from the codes of older files, and where
// heads, stems and beams are drawn.

#include "model/BarEx.h"
#include "notation/FixedNoteGroup.h"
#include "notation/MovementFromCode.h"
#include "notation/NoteEx.h"
#include "notation/TieEx.h"
#include "platform/MovementDefinitions.h"
#include "platform/SettingsStore.h"
#include "support/RecordingMessages.h"
#include "support/RecordingPainter.h"
#include "support/TempConfigDir.h"

#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <tuple>
#include <vector>

namespace corrieval {
namespace {

const CNoteEx& Note(const CScoObj& group, std::size_t i)
{
    return static_cast<const CNoteEx&>(*static_cast<const CGraphObjContainer&>(group).ChildAt(i));
}

template <class T> std::vector<T> Each(const CFixedNoteGroup& group, T CNoteEx::*field)
{
    std::vector<T> values;
    for (std::size_t i = 0; i < group.ChildCount(); ++i)
        values.push_back(Note(group, i).*field);
    return values;
}
std::vector<NotePitch> Pitches(const CFixedNoteGroup& group)
{
    return Each(group, &CNoteEx::Pitch);
}

// Held by pointer: a copy of a group is a Clone, which changes the notes' roles.
std::unique_ptr<CFixedNoteGroup> Built(const QString& name, const QString& chars, const QString& positions,
                                       std::int32_t repeatKind = 0, std::int32_t repeatId = 0)
{
    auto group = std::make_unique<CFixedNoteGroup>(name);
    group->BuildNotes(chars, positions, repeatKind, repeatId);
    return group;
}

TEST(Movement, BuildNotesPlacesEachGracenoteOnItsDigit)
{
    const auto doubling = Built("Low G", "KKK", "184", 1, 7);
    EXPECT_EQ(Pitches(*doubling), (std::vector<NotePitch>{4, 11, 7}));
    EXPECT_EQ(Each(*doubling, &CNoteEx::RepeatId), (std::vector<std::int32_t>{7, 7, 7}));
    EXPECT_TRUE(Note(*doubling, 0).GraceHead && !Note(*doubling, 0).Stemmed);
    EXPECT_EQ(Note(*Built("Low G", "KKK", "184", 0, 7), 0).RepeatId, 0); // kept only in a section

    // One digit: a whole stemmed gracenote rather than a bare head under beams.
    const auto single = Built("Half Doubling on High G", "K", "2");
    ASSERT_EQ(single->GetNoteCount(), 1);
    EXPECT_EQ(Note(*single, 0).Pitch, 5);
    EXPECT_TRUE(Note(*single, 0).Stemmed && !Note(*single, 0).GraceHead);

    // Mismatched or out-of-range definitions stay on the stave.
    EXPECT_EQ(Pitches(*Built("Low G", "KKK", "84")), (std::vector<NotePitch>{3, 3, 3}));
    EXPECT_EQ(Pitches(*Built("Low G", "KK", "84444")), (std::vector<NotePitch>{3, 3}));
    EXPECT_EQ(Pitches(*Built("x", "KKK", "9x0")), (std::vector<NotePitch>{11, 3, 3}));
    EXPECT_EQ(Built("x", "", "184")->GetNoteCount(), 0);
    // A character that is no note of the font still gives a gracenote of the movement.
    EXPECT_EQ(Note(*Built("x", "?!", "12"), 0).Duration, 256);
}

TEST(Movement, ShippedDefinitionsGiveTheGracenotesPipersPlay)
{
    const testing::TempConfigDir config;
    ASSERT_EQ(InstallMovementDefinitions(), "");
    // Pitch names as a piper writes them.
    const std::map<QString, NotePitch> pitch{{"HA", 3}, {"HG", 4}, {"F", 5},   {"E", 6},  {"D", 7},
                                             {"C", 8},  {"B", 9},  {"LA", 10}, {"LG", 11}};
    const std::tuple<const char*, const char*, const char*> samples[] = {
        {"Doublings", "Low G", "HG LG D"},
        {"Doublings", "Half Doubling on High G", "F"},
        {"Embellishments", "Throw On D", "LG D C"},
        {"Embellishments", "Birl with G gracenote", "HG LA LG LA LG"},
        {"Embellishments", "Shake on B with E, back gracenote", "HA B E B LG"},
        {"Piobaireachd", "Endari/Dre/Edri", "E LA F LA"},
        {"Piobaireachd", "Crunluath", "LG D LG E LA F LA"},
    };
    for (const auto& [category, name, pitches] : samples) {
        SCOPED_TRACE(name);
        const MovementDefinition definition = ReadMovementDefinition(category, name);
        ASSERT_TRUE(definition.Usable());
        std::vector<NotePitch> expected;
        for (const QString& written : QString(pitches).split(' '))
            expected.push_back(pitch.at(written));
        EXPECT_EQ(Pitches(*Built(name, definition.Chars, definition.RelativeNotePositions)), expected);
    }
}

class MovementFromCodeTest : public ::testing::Test {
protected:
    void Convert(std::uint32_t code, std::int32_t position = 24, std::int32_t dot = 0, CTieEx* tie = nullptr,
                 RepeatLink repeat = {})
    {
        MovementFromCode({code, position, dot}, Bar, 1.5f, 2.0f, 0.6f, tie, repeat, Definitions, Made);
    }
    testing::TempConfigDir Config;
    testing::RecordingMessages Messages;
    CBarEx Bar;
    MovementDefinitionCache Definitions;
    MovementMade Made{"before", 9};
};

TEST_F(MovementFromCodeTest, PlainCodesMakeNotesAndMovementCodesBuildTheirDefinition)
{
    ASSERT_EQ(InstallMovementDefinitions(), "");
    CTieEx tie;
    Convert(2, 24, 1, &tie, {2, 5});
    EXPECT_EQ(Made.NoteCount, 1);
    Convert(30, 10); // a gracenote written below the stave
    Convert(85, 24, 0, nullptr, {1, 3});
    ASSERT_EQ(Bar.ChildCount(), 3u);
    const CNoteEx& note = Note(Bar, 0);
    EXPECT_EQ(note.Bounds(), (RectF{1.5f, 2.0f, 0.156f, 0.6f}));
    EXPECT_EQ(std::tuple(note.Pitch, note.Duration, note.DotCut), std::tuple(6, 4, CNoteEx::Dotted));
    EXPECT_EQ(std::tuple(note.RepeatKind, note.RepeatId, note.Tie), std::tuple(2, 5, &tie));
    EXPECT_EQ(Note(Bar, 1).HeadChar.Code, 43);
    EXPECT_EQ(Note(Bar, 1).Pitch, LowestPitch); // clamped

    const auto& group = dynamic_cast<const CFixedNoteGroup&>(*Bar.ChildAt(2));
    EXPECT_EQ(Pitches(group), (std::vector<NotePitch>{11, 9, 11, 6}));
    EXPECT_EQ(std::tuple(group.GetRepeatLink().Kind, group.GetRepeatLink().Id), std::tuple(1, 3));
    EXPECT_NEAR(group.Bounds().Width, 4 * 0.078f, 1e-6);
    EXPECT_EQ(std::tuple(Made.Name, Made.NoteCount), std::tuple(QString("Taorluath on D"), 4));
    EXPECT_TRUE(Messages.Texts.isEmpty());
}

TEST_F(MovementFromCodeTest, CodesThatCannotBeBuiltAddNothingAndKeepTheLastCount)
{
    // Refused and unknown codes are reported; a missing definition is not.
    Convert(52);
    for (const std::uint32_t code : {103u, 5u, 500u})
        Convert(code);
    EXPECT_EQ(Messages.Texts, (QStringList{"Unknown note type [flat]. This will be ignored.",
                                           "Unknown note type [minhd]. This will be ignored.",
                                           "Unknown note type [??]. This will be ignored."}));
    // Defined without a fixed stave position, which keeps it out of conversions.
    SettingsStore d = SettingsStore(QString::fromLatin1(MovementsKeyPath)).Subkey("Doublings").Subkey("D");
    d.WriteString("Chars", "KKK");
    d.WriteString("RelativeNotePositions", "143");
    ASSERT_EQ(d.Sync(), "");
    Convert(52);
    EXPECT_EQ(Bar.ChildCount(), 0u);
    EXPECT_EQ(std::tuple(Made.Name, Made.NoteCount), std::tuple(QString("before"), 9));
    EXPECT_EQ(Messages.Texts.size(), 3);
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

std::vector<std::pair<QPointF, QPointF>> Segments(const QPainterPath& path)
{
    std::vector<std::pair<QPointF, QPointF>> segments;
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

    std::vector<std::pair<QPointF, QPointF>> stems;
    std::vector<std::pair<QPointF, QPointF>> ledgers;
    for (const auto& s : Segments(strokes[0].Path))
        (s.first.x() == s.second.x() ? stems : ledgers).push_back(s);
    ASSERT_EQ(stems.size(), 3u);
    ASSERT_EQ(ledgers.size(), 1u); // High A only
    EXPECT_NEAR(ledgers[0].first.y(), kTop + 3 * kU, 1e-5);
    const float beamTop = kTop + 19 * kU / 40;

    for (std::size_t i = 0; i < 3; ++i) {
        SCOPED_TRACE(::testing::Message() << "note " << i);
        const double line = kTop + Note(*group, i).Pitch * kU;
        // The ink of the head in its own cell is centred on the note's stave position.
        QPainterPath strip;
        strip.addRect(kLeft + cell * static_cast<float>(i), kTop - 5 * kU, cell, 30 * kU);
        const QRectF head = fills[0].Path.intersected(strip).boundingRect();
        EXPECT_NEAR(head.center().y(), line, 0.15 * kU);
        // The stem rises from the head's middle, at its right, to the top beam.
        EXPECT_NEAR(stems[i].second.y(), line, 1e-5);
        EXPECT_NEAR(stems[i].first.y(), beamTop, 1e-5);
        EXPECT_NEAR(stems[i].first.x(), head.right(), 0.1 * kU);
    }

    // Three beams at the top, each reaching the next stem; the last note has stubs.
    const auto beams = Segments(strokes[1].Path);
    ASSERT_EQ(beams.size(), 9u);
    EXPECT_NEAR(beams[0].first.y(), beamTop, 1e-5);
    EXPECT_NEAR(beams[2].first.y(), beamTop + 2 * kU / 1.75f, 1e-5);
    EXPECT_GT(beams[0].second.x(), stems[1].first.x());
    EXPECT_LT(beams[8].second.x(), stems[2].first.x() + kU);
    EXPECT_FLOAT_EQ(strokes[1].Stroke.Width, 1.5f * strokes[0].Stroke.Width);

    // A single gracenote has beam stubs but no stem.
    painter.Clear();
    DrawnMovement("K", "2", painter);
    const auto single = painter.Of(testing::PaintCall::Kind::StrokePath);
    ASSERT_EQ(single.size(), 2u);
    EXPECT_TRUE(Segments(single[0].Path).empty());
    EXPECT_EQ(Segments(single[1].Path).size(), 3u);
}

} // namespace
} // namespace corrieval
