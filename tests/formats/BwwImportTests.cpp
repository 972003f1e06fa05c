#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "model/BarConfig.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "support/RecordingMessages.h"
#include "support/RecordingView.h"
#include "support/ScoreWalk.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::BarOf;
using testing::ChildrenOf;
using testing::MusicAreas;
using testing::RecordingMessages;

const QByteArray kHeader = "Bagpipe Reader:1.0\r\n"
                           "\"Tune\",(T,C)\r\n\"March\",(Y,L)\r\n\"Trad.\",(M,R)\r\n\r\n";

// A BWW tune read and converted as the import does, into a score of its own.
struct ImportedTune {
    explicit ImportedTune(const QByteArray& music)
    {
        Source = ReadBww(kHeader + music, Log);
        if (Source != nullptr)
            Score = ConvertToNewDocument(*Source, true);
    }
    CStaveArea& Area() const { return *MusicAreas(*Score).front(); }

    RecordingMessages Messages;
    bww::ImportLog Log;
    std::unique_ptr<CPipeDoc> Source;
    std::unique_ptr<CCorrievalDoc> Score;
};

// Every note of a bar in playing order, whether beamed or not.
std::vector<CNoteEx*> NotesOf(const CBarEx& bar)
{
    std::vector<CNoteEx*> notes;
    for (const auto& child : bar.Children()) {
        if (auto* note = dynamic_cast<CNoteEx*>(child.get()))
            notes.push_back(note);
        else if (auto* beam = dynamic_cast<CNoteGroupEx*>(child.get()))
            for (CNoteEx* beamed : ChildrenOf<CNoteEx>(*beam))
                notes.push_back(beamed);
    }
    return notes;
}

TEST(BwwImport, BeamedNotesKeepTheLengthsTheTuneWrote)
{
    const ImportedTune tune("& sharpf sharpc 4_4 Er_8 Dl_8 Er_8 'e Dl_16 Cr_16 Bl_16 E_4 !I");
    ASSERT_NE(tune.Score, nullptr);
    EXPECT_TRUE(tune.Area().ShowKeySig);
    const CBarEx& bar = BarOf(tune.Area(), 0, 0);
    ASSERT_EQ(ChildrenOf<CNoteGroupEx>(bar).size(), 3u);
    const auto notes = NotesOf(bar);
    ASSERT_EQ(notes.size(), 7u);
    const std::vector<int> durations{8, 8, 8, 16, 16, 16, 4};
    for (std::size_t i = 0; i < notes.size(); ++i)
        EXPECT_EQ(notes[i]->Duration, durations[i]) << i;
    EXPECT_EQ(notes[2]->DotCut, CNoteEx::Dotted);
    EXPECT_EQ(notes[3]->DotCut, CNoteEx::Plain);
}

TEST(BwwImport, RepeatsAndFirstAndSecondTimesComeAcross)
{
    // The endings open at a bar line in the first part and within a bar in the second.
    const ImportedTune tune("& I!'' E_4 ! D_4 ! '1 C_4 ! B_4 _' ''!I\r\n"
                            "& '2 LA_4 ! B_4 _' !I\r\n"
                            "& I!'' E_4 ! D_4 '1 C_4 _' ''!I '2 B_4 _' !I\r\n");
    ASSERT_NE(tune.Score, nullptr);
    const CStaveArea& area = tune.Area();
    EXPECT_TRUE(BarOf(area, 0, 0).Config->StartRepeat);
    EXPECT_TRUE(BarOf(area, 0, 3).Config->EndRepeat);
    EXPECT_FALSE(BarOf(area, 0, 1).Config->EndRepeat);

    const auto kindOf = [](const CBarEx& bar) { return NotesOf(bar).front()->RepeatKind; };
    EXPECT_EQ(kindOf(BarOf(area, 0, 1)), 0);
    EXPECT_EQ(kindOf(BarOf(area, 0, 2)), 1);
    EXPECT_EQ(kindOf(BarOf(area, 0, 3)), 1);
    EXPECT_EQ(kindOf(BarOf(area, 1, 0)), 2);
    EXPECT_EQ(BarOf(area, 0, 2).Config->RepeatEnding, CBarConfig::FirstTime);
    const std::int32_t firstPair = NotesOf(BarOf(area, 0, 2)).front()->RepeatId;
    EXPECT_EQ(NotesOf(BarOf(area, 1, 1)).front()->RepeatId, firstPair);

    // Within a bar, the notes before the mark play every time.
    const auto split = NotesOf(BarOf(area, 2, 1));
    ASSERT_EQ(split.size(), 2u);
    EXPECT_EQ(split[0]->RepeatKind, 0);
    EXPECT_EQ(split[1]->RepeatKind, 1);
    EXPECT_NE(split[1]->RepeatId, firstPair);

    // One bracket for each pair, under the pair's id.
    ASSERT_EQ(area.RepeatMarkers.size(), 2u);
    EXPECT_EQ(area.RepeatMarkers[0]->RepeatId, firstPair);
    EXPECT_EQ(area.RepeatMarkers[0]->StartStave, 0);
    EXPECT_EQ(area.RepeatMarkers[0]->MiddleStave, 1);
    EXPECT_EQ(area.RepeatMarkers[1]->RepeatId, split[1]->RepeatId);
    EXPECT_GT(area.RepeatMarkers[1]->StartPosition, 0.0f);
    EXPECT_TRUE(tune.Messages.Texts.isEmpty());
}

TEST(BwwImport, TheAppImportsIntoTheActiveViewAndShowsTheTempo)
{
    RecordingMessages messages;
    bww::ImportLog log;
    auto source = ReadBww("Bagpipe Reader:1.0\r\n\"Tune\",(T)\r\n\"Strathspey\",(Y)\r\n\"Trad.\",(M)\r\n"
                          "& 4_4 E_4 ! D_4 !I\r\n",
                          log);
    ASSERT_NE(source, nullptr);
    CCorrievalDoc doc;
    doc.OnNewDocument();
    doc.SetModifiedFlag(false);
    testing::RecordingView view;
    view.Doc = &doc;
    ConvertIntoActiveView(std::move(source), true);
    ASSERT_EQ(MusicAreas(doc).size(), 1u);
    EXPECT_TRUE(doc.IsModified());
    // A strathspey plays at 60 whatever its time signature says.
    EXPECT_EQ(view.ImportedTempo, 60);
    EXPECT_FALSE(view.Invalidated.empty());
}

} // namespace
} // namespace corrieval
