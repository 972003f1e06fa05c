#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "model/LineBreaks.h"
#include "platform/MovementDefinitions.h"
#include "support/BarOverlaps.h"
#include "support/RecordingMessages.h"
#include "support/ScoreWalk.h"
#include "support/TempConfigDir.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::BarOf;
using testing::MusicAreas;
using testing::StaveOf;

const QByteArray kHeader = "Bagpipe Reader:1.0\r\n"
                           "\"Tune\",(Y,C)\r\n\"March\",(T,L)\r\n\"Trad.\",(M,R)\r\n\r\n";
// A bar as full as pipers write them: eight notes, each after a movement.
const QByteArray kDense = " dbe E_8 grp LA_8 tar B_8 dbc C_8 dbd D_8 dbf F_8 grp LA_8 tar B_8 ";
const QByteArray kSparse = " LA_2 ";

// Imports with the shipped movement definitions, so that movements take their real widths.
class BwwLayout : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_EQ(InstallMovementDefinitions(), ""); }

    std::unique_ptr<CCorrievalDoc> Import(const QByteArray& music, bww::Reading mode = bww::Reading::Full)
    {
        bww::ImportLog log;
        log.Mode = mode;
        m_source = ReadBww(kHeader + music, log);
        return m_source != nullptr ? ConvertToNewDocument(*m_source, true) : nullptr;
    }

    static std::vector<std::size_t> BarsPerSystem(const CCorrievalDoc& doc)
    {
        std::vector<std::size_t> counts;
        for (const CStaveArea* area : MusicAreas(doc)) {
            for (std::size_t s = 0; s < area->ChildCount(); ++s)
                counts.push_back(StaveOf(*area, s).ChildCount());
        }
        return counts;
    }

    testing::TempConfigDir m_config;
    testing::RecordingMessages m_messages;
    std::unique_ptr<CPipeDoc> m_source;
};

TEST_F(BwwLayout, DenseBarsTakeRoomFromSparseOnesAndTheLineStillFillsItsStave)
{
    const auto doc =
        Import("& sharpf sharpc 4_4" + kSparse + "!" + kDense + "!" + kSparse + "!" + kSparse + "!t\r\n");
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(testing::BarOverlaps(*doc), QStringList());
    CStaveArea& area = *MusicAreas(*doc).front();
    ASSERT_EQ(BarsPerSystem(*doc), (std::vector<std::size_t>{4}));
    const CStave& stave = StaveOf(area, 0);
    EXPECT_GT(BarOf(area, 0, 1).Bounds().Width, 2 * BarOf(area, 0, 2).Bounds().Width);
    EXPECT_NEAR(BarOf(area, 0, 0).Bounds().X, stave.ContentBox().X, 0.001f);
    EXPECT_NEAR(BarOf(area, 0, 3).Bounds().Right(), stave.ContentBox().Right(), 0.001f);

    // The user's own Auto organise gives every bar the same width again.
    area.AutoOrganiseArea(true, true);
    EXPECT_NEAR(BarOf(area, 0, 1).Bounds().Width, BarOf(area, 0, 0).Bounds().Width, 0.001f);
}

TEST_F(BwwLayout, LinesBreakWhereTheTuneBreaksThemWhileTheirBarsFit)
{
    const auto doc = Import("& 4_4 LA_4 ! B_4 ! C_4 !t\r\n& D_4 ! E_4 ! F_4 ! HG_4 ! HA_4 !t\r\n");
    ASSERT_NE(doc, nullptr);
    EXPECT_EQ(BarsPerSystem(*doc), (std::vector<std::size_t>{3, 5}));
    EXPECT_EQ(testing::BarOverlaps(*doc), QStringList());
}

TEST_F(BwwLayout, ALineTooFullForItsStaveBreaksWhereItIsFullAndTheNextLineStillStartsAfresh)
{
    const auto doc = Import("& 4_4" + kDense + "!" + kDense + "!" + kDense + "!" + kDense +
                            "!t\r\n& LA_4 ! B_4 ! C_4 ! D_4 !t\r\n");
    ASSERT_NE(doc, nullptr);
    const std::vector<std::size_t> counts = BarsPerSystem(*doc);
    ASSERT_GT(counts.size(), 2u);
    EXPECT_EQ(counts.back(), 4u);
    std::size_t dense = 0;
    for (std::size_t i = 0; i + 1 < counts.size(); ++i)
        dense += counts[i];
    EXPECT_EQ(dense, 4u);
    EXPECT_EQ(testing::BarOverlaps(*doc), QStringList());
}

TEST_F(BwwLayout, StrictModeKeepsFourEvenBarsToALine)
{
    const auto doc =
        Import("& 4_4" + kSparse + "!" + kDense + "!" + kSparse + "!" + kDense + "!t\r\n", bww::Reading::Strict);
    ASSERT_NE(doc, nullptr);
    const CStaveArea& area = *MusicAreas(*doc).front();
    ASSERT_EQ(BarsPerSystem(*doc), (std::vector<std::size_t>{4}));
    EXPECT_NEAR(BarOf(area, 0, 1).Bounds().Width, BarOf(area, 0, 2).Bounds().Width, 0.01f);
}

TEST(LineBreaks, ALineStartsWhereTheTuneStartsOneAndATooFullLineSplitsEvenly)
{
    const std::vector<BarToPlace> bars{{1, true},  {1, false}, {1, true},
                                       {3, false}, {1, false}, {0.5f, false}};
    // The bar wider than a line stands alone; the two after it share a line.
    EXPECT_EQ(BreakLines(bars, 2.5f), (std::vector<std::size_t>{0, 2, 3, 4}));
    EXPECT_TRUE(BreakLines({}, 2.5f).empty());
    // Four like bars where three fit split two and two, not three and one.
    const std::vector<BarToPlace> even{{1, true}, {1, false}, {1, false}, {1, false}};
    EXPECT_EQ(BreakLines(even, 3.5f), (std::vector<std::size_t>{0, 2}));
}

} // namespace
} // namespace corrieval
