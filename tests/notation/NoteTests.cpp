// Single notes and beamed groups: where a note's head and ledger line stand, dragging, what the
// group and ungroup commands do to the notes, and where stems and beams are drawn with the music
// font's real head widths.

#include "fixtures/ScoreFixtures.h"
#include "notation/GroupCommands.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TieEx.h"
#include "support/RecordingPainter.h"
#include "support/RecordingView.h"
#include "support/ScoreWalk.h"

#include <array>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace corrieval {
namespace {

using testing::PaintCall;
using testing::RecordingPainter;

constexpr float kNear = 1e-5f;
constexpr float kPen = 0.004f;
constexpr std::size_t kNotes = 6;

TEST(Note, HeadSitsOnItsPositionWithALedgerLineOnlyForHighA)
{
    for (NotePitch pitch = HighestPitch; pitch <= LowestPitch; ++pitch) {
        SCOPED_TRACE(::testing::Message() << "pitch " << pitch);
        // A note alone in a music box 0.95 high at x = 1, as a bar holds it.
        CNoteEx note(4);
        note.Pitch = pitch;
        note.SetBounds(1, 2, 0.4f, 0.95f);
        RecordingPainter painter;
        note.Draw(painter, OutputMode::Screen);
        const float u = note.ContentBox().Height / 19;
        const float line = note.ContentBox().Y + static_cast<float>(pitch) * u;
        // One gap high, from a quarter gap above the line, centred across the note's box.
        EXPECT_NEAR(note.HeadRect.Y, line - u / 2, kNear);
        EXPECT_NEAR(note.HeadRect.X + note.HeadRect.Width / 2, 1.2f, kNear);
        EXPECT_EQ(note.LedgerPath.isEmpty(), pitch != HighestPitch);
        EXPECT_TRUE(note.HitTestNote(1.2f, line));
    }
}

// A stave of two bars of six crotchets, laid out by the tune fixture, in a document with a view.
class NoteGroups : public ::testing::Test {
protected:
    void SetUp() override
    {
        doc = fixtures::BuildTune(
            {.Groups = 1, .Parts = 1, .Columns = 2, .NotesPerBar = kNotes, .Title = false});
        view.Doc = doc.get();
        stave = &testing::StaveOf(*testing::MusicAreas(*doc).front(), 0);
        bar = static_cast<CBarEx*>(stave->ChildAt(0));
        for (std::size_t i = 0; i < kNotes; ++i) // the fixture keeps a bar's notes in order from the left
            n.push_back(static_cast<CNoteEx*>(bar->ChildAt(i)));
    }

    // A group as paste builds one, of the first notes with these durations.
    CNoteGroupEx& Beam(const std::vector<NoteDuration>& durations)
    {
        auto group = std::make_unique<CNoteGroupEx>();
        for (std::size_t i = 0; i < durations.size(); ++i) {
            n[i]->Duration = durations[i];
            group->AddChild(bar->RemoveChild(n[i], false), false);
        }
        return *static_cast<CNoteGroupEx*>(bar->AddChild(std::move(group), true));
    }

    float BeamLine() const { return stave->ContentBox().Y + stave->Positions()[17]; }
    float Unit() const { return stave->ContentBox().Height / 19; }
    // The lines drawn with a pen of the given width: stems are twice the pen, beams four times.
    static std::vector<PaintCall> LinesOf(const RecordingPainter& painter, float width)
    {
        std::vector<PaintCall> lines = painter.Of(PaintCall::Kind::Line);
        std::erase_if(lines, [width](const PaintCall& c) { return c.Stroke.Width != width; });
        return lines;
    }

    std::unique_ptr<CCorrievalDoc> doc;
    testing::RecordingView view;
    CStave* stave = nullptr;
    CBarEx* bar = nullptr;
    std::vector<CNoteEx*> n; // the notes of the first bar, left to right
};

TEST_F(NoteGroups, DraggingTakesTheBarAndPitchUnderThePointUnlessTiedOrGrouped)
{
    auto& second = static_cast<CBarEx&>(*stave->ChildAt(1));
    const RectF target = second.ContentBox();
    const float x = target.X + target.Width / 2;
    const float y = second.Bounds().Y + second.Bounds().Height * 9 / 19;
    CTieEx tie;
    tie.AddNote(n[1]);
    const RectF tied = n[1]->Bounds();
    EXPECT_EQ(n[1]->DragTo(x, y), (PointF{0, 0}));
    EXPECT_EQ(n[1]->Bounds(), tied);
    n[1]->Tie = nullptr;

    GroupNotes({n[2], n[3]});
    EXPECT_EQ(n[2]->DragTo(x, y), (PointF{0, 0})); // a note of a group cannot leave its bar
    EXPECT_EQ(n[2]->Parent()->Parent(), bar);

    EXPECT_GT(n[0]->DragTo(x, y).X, 0.5f);
    EXPECT_EQ(n[0]->Parent(), &second);
    EXPECT_EQ(n[0]->Pitch, 9);
}

TEST_F(NoteGroups, GroupingBeamsCrotchetsToDemisemiquaversInPageOrder)
{
    n[0]->Duration = 2;
    n[1]->Duration = 64;
    n[3]->Duration = 8;
    n[4]->Duration = 32;
    for (CNoteEx* note : {n[4], n[2], n[0], n[1], n[3]})
        note->SetSelected(true);
    const float left = n[0]->Bounds().X;
    const float right = n[4]->Bounds().Right();

    CNoteGroupEx* group = GroupNotes(view.Selection);
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(group->Parent(), bar);
    // The minim and the gracenote stay out; each note in gains a beam.
    EXPECT_EQ(group->Notes(), (std::vector<CNoteEx*>{n[2], n[3], n[4]}));
    EXPECT_EQ(n[0]->Parent(), bar);
    EXPECT_EQ(n[1]->Parent(), bar);
    EXPECT_EQ((std::vector<NoteDuration>{n[2]->Duration, n[3]->Duration, n[4]->Duration}),
              (std::vector<NoteDuration>{8, 16, 32}));
    EXPECT_EQ(n[2]->HeadChar.Code, CNoteEx::MelodyHeadGlyph); // the group draws the stem
    EXPECT_EQ(view.Selection, (std::vector<CScoObj*>{group}));
    // The stored rectangle encloses the selection.
    EXPECT_EQ(group->Bounds().X, left);
    EXPECT_NEAR(group->Bounds().Width, right - left, kNear);

    EXPECT_EQ(GroupNotes({n[0], n[1]}), nullptr);
}

TEST_F(NoteGroups, GroupingAgainAddsABeamUpToThree)
{
    CNoteGroupEx* group = GroupNotes({n[0], n[1]});
    for (int press = 0; press < 3; ++press)
        EXPECT_EQ(GroupNotes({group}), nullptr);
    EXPECT_EQ(n[0]->Duration, 32);
    GroupNotes({n[2], n[3]});
    EXPECT_EQ(GroupNotes({n[3]}), nullptr); // a note of a group gains a beam on its own
    EXPECT_EQ(n[3]->Duration, 16);
    EXPECT_EQ(n[2]->Duration, 8);
    // A note picked twice joins once.
    EXPECT_EQ(GroupNotes({n[4], n[5], n[4]})->Notes(), (std::vector<CNoteEx*>{n[4], n[5]}));
    EXPECT_EQ(n[4]->Duration, 8);
    EXPECT_EQ(bar->ChildCount(), kNotes - 3);
}

TEST_F(NoteGroups, UngroupingTakesOffABeamAndQuaversLeaveAsCrotchets)
{
    GroupNotes({n[4], n[5]});
    UngroupNotes(view.Selection);
    EXPECT_EQ(bar->ChildCount(), kNotes); // the group is gone
    EXPECT_TRUE(view.Selection.empty());
    EXPECT_EQ(n[4]->Parent(), bar);
    EXPECT_EQ(n[4]->Duration, 4);
    EXPECT_TRUE(n[4]->Stemmed);
    EXPECT_EQ(n[4]->HeadChar.Code, 38);

    CNoteGroupEx* group = GroupNotes({n[0], n[1], n[2]});
    GroupNotes({group});
    UngroupNotes({group});
    EXPECT_EQ(group->ChildCount(), 3u);
    UngroupNotes({n[1]});
    EXPECT_EQ(n[1]->Parent(), bar);
    EXPECT_EQ(group->Notes(), (std::vector<CNoteEx*>{n[0], n[2]}));

    // The last note goes too, still a quaver; a cut means nothing without a beam.
    n[0]->DotCut = CNoteEx::Cut;
    n[2]->DotCut = CNoteEx::Dotted;
    UngroupNotes({n[0]});
    EXPECT_EQ(bar->ChildCount(), kNotes);
    EXPECT_EQ(n[0]->DotCut, CNoteEx::Plain);
    EXPECT_EQ(n[2]->Parent(), bar);
    EXPECT_EQ(n[2]->HeadChar.Code, 39);
    EXPECT_EQ(n[2]->DotCut, CNoteEx::Dotted);
}

// Each case gives the segments note by note, separated by "|", one letter a level: F a full beam
// to the next note, L and R stubs to the left and right, "-" none. A cut's stub is one level up.
struct BeamCase {
    const char* Name;
    std::vector<NoteDuration> Durations;
    std::vector<std::int32_t> DotCuts;
    std::string Segments;
};

class Beaming : public NoteGroups, public ::testing::WithParamInterface<BeamCase> {};

TEST_P(Beaming, StemsAndBeamsLieWhereTheRulesPutThem)
{
    CNoteGroupEx& group = Beam(GetParam().Durations);
    for (std::size_t i = 0; i < GetParam().DotCuts.size(); ++i)
        n[i]->DotCut = GetParam().DotCuts[i];
    group.SetColour(0xFF112233);
    RecordingPainter painter;
    group.Draw(painter, OutputMode::Screen);

    const std::size_t count = GetParam().Durations.size();
    const std::vector<PaintCall> stems = LinesOf(painter, 2 * kPen);
    const std::vector<PaintCall> heads = painter.Of(PaintCall::Kind::FillPath);
    ASSERT_EQ(stems.size(), count);
    ASSERT_EQ(heads.size(), count);
    EXPECT_GT(BeamLine(), stave->ContentBox().Y + 12 * Unit()); // below Low G's head
    for (std::size_t i = 0; i < count; ++i) {
        SCOPED_TRACE(::testing::Message() << "stem " << i);
        const RectF head = n[i]->HeadRect;
        EXPECT_EQ(stems[i].X1, head.X);
        EXPECT_EQ(stems[i].X2, head.X);
        EXPECT_FLOAT_EQ(stems[i].Y1, BeamLine());
        EXPECT_FLOAT_EQ(stems[i].Y2, head.Y + head.Height / 2);
        EXPECT_EQ(stems[i].Stroke.Argb, 0xFF112233u);
        // The bare head's ink starts where the stem stands.
        EXPECT_NEAR(heads[i].Path.boundingRect().left(), head.X, 0.02 * head.Height);
    }

    std::vector<std::array<float, 3>> expected; // from, to, y
    std::size_t note = 0;
    int level = 0;
    for (const char c : GetParam().Segments) {
        if (c == '|') {
            ++note;
            level = 0;
            continue;
        }
        // The first beam lies on the beam line, the others stack upwards.
        const float y = BeamLine() - 2 * kPen - static_cast<float>(level++) * 1.4f * Unit();
        const RectF head = n[note]->HeadRect;
        const float stub = 0.8f * head.Width;
        if (c == 'F')
            expected.push_back({head.X, n[note + 1]->HeadRect.X, y});
        else if (c == 'L')
            expected.push_back({head.X - stub, head.X, y});
        else if (c == 'R')
            expected.push_back({head.X, head.X + stub, y});
    }
    const std::vector<PaintCall> beams = LinesOf(painter, 4 * kPen);
    ASSERT_EQ(beams.size(), expected.size());
    for (std::size_t s = 0; s < beams.size(); ++s) {
        SCOPED_TRACE(::testing::Message() << "segment " << s);
        EXPECT_NEAR(beams[s].X1, expected[s][0], kNear);
        EXPECT_NEAR(beams[s].X2, expected[s][1], kNear);
        EXPECT_NEAR(beams[s].Y1, expected[s][2], kNear);
        EXPECT_EQ(beams[s].Y2, beams[s].Y1);
    }

    // A click on the beam between the first two heads finds the group.
    const float between = (n[0]->HeadRect.X + n[1]->HeadRect.X) / 2;
    EXPECT_EQ(bar->HitTest(between, BeamLine() - 2 * kPen), &group);
    EXPECT_EQ(bar->HitTest(between, BeamLine() - 2 * kPen - 0.1f), nullptr);
}

constexpr std::int32_t kCut = CNoteEx::Cut;
constexpr std::int32_t kDot = CNoteEx::Dotted;

INSTANTIATE_TEST_SUITE_P(
    NoteGroups, Beaming,
    ::testing::Values(BeamCase{"Quavers", {8, 8}, {}, "F|L"},
                      BeamCase{"SemiquaverBetween", {8, 16, 8}, {}, "F|FR|L"},
                      BeamCase{"SecondBeamDrawnOnce", {16, 16, 8}, {}, "FF|F-|L"},
                      BeamCase{"MoreBeamsAtTheEnd", {8, 32}, {}, "F|LLL"},
                      BeamCase{"DemisemiquaverFirst", {32, 8, 16}, {}, "FRR|F|LL"},
                      BeamCase{"CoveredByTheNoteBefore", {8, 32, 16, 8}, {}, "F|FFR|F-|L"},
                      BeamCase{"StubBackTowardsMoreBeams", {8, 8, 16, 16, 8}, {}, "F|F|FF|FL|L"},
                      BeamCase{"CutsAtBothEnds", {8, 8, 8}, {kCut, 0, kCut}, "FR|F|LL"},
                      BeamCase{"CutBeforeAPlainNote", {8, 8, 8}, {0, kCut, 0}, "F|FL|L"},
                      BeamCase{"CutBeforeADottedNote", {8, 8, 8}, {0, kCut, kDot}, "F|FR|L"}),
    [](const ::testing::TestParamInfo<BeamCase>& param) { return param.param.Name; });

} // namespace
} // namespace corrieval
