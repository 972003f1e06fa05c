#include "formats/bww/BwwFile.h"
#include "formats/glenmarch/GlenmarchConversion.h"
#include "formats/glenmarch/PipeDoc.h"
#include "model/LineBreaks.h"
#include "model/SessionState.h"
#include "notation/TextArea.h"
#include "platform/MovementDefinitions.h"
#include "support/BarOverlaps.h"
#include "support/RecordingMessages.h"
#include "support/ScoreWalk.h"
#include "support/TempConfigDir.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::BarOf;
using testing::MusicAreas;
using testing::StaveOf;

const QByteArray kHeader = "Bagpipe Reader:1.0\r\n"
                           "\"Tune\",(T,C)\r\n\"March\",(Y,L)\r\n\"Trad.\",(M,R)\r\n\r\n";
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

TEST_F(BwwLayout, ABarOfMoreThan32ItemsGoesOnInTheNextBarWithEveryItemApart)
{
    const auto doc =
        Import("& sharpf sharpc 4_4" + kDense + kDense + " gg E_16 gg E_16 gg E_16 gg E_16 !t\r\n");
    ASSERT_NE(doc, nullptr);
    // Too wide for a line, it is split where a line is full, after a note that ends its beam.
    std::size_t items = 0;
    std::size_t bars = 0;
    for (const CStaveArea* area : MusicAreas(*doc)) {
        for (std::size_t system = 0; system < area->ChildCount(); ++system) {
            for (const auto& bar : StaveOf(*area, system).Children()) {
                items += static_cast<const CBarEx&>(*bar).ChildCount();
                ++bars;
            }
        }
    }
    EXPECT_EQ(items, 40u);
    EXPECT_GT(bars, 1u);
    EXPECT_EQ(testing::BarOverlaps(*doc), QStringList());
    EXPECT_TRUE(m_messages.Texts.isEmpty());
}

// A further tune of a set: its headings, then `lines` stave lines of four bars.
QByteArray SetTune(const char* title, int lines)
{
    QByteArray tune = QByteArray("\"") + title + "\",(T,C)\r\n\"Reel\",(Y,L)\r\n\"Trad.\",(M,R)\r\n";
    for (int i = 0; i < lines; ++i)
        tune += "& 4_4 LA_4 ! B_4 ! C_4 ! D_4 !t\r\n";
    return tune;
}

// What a page holds, top to bottom: each title, and "music" for each music area; and whether any
// two of its areas overlap or a music area leaves the page's content box.
struct PageContents {
    QStringList Items;
    bool Overlapping = false;
    bool Outside = false;
};

PageContents ContentsOf(const CTunePage& page)
{
    std::vector<std::pair<float, QString>> items;
    PageContents contents;
    for (const auto& child : page.Children()) {
        if (const auto* text = dynamic_cast<const CTextArea*>(child.get());
            text != nullptr && text->Alignment == CTextArea::Centre)
            items.emplace_back(text->Bounds().Y, text->Text);
        if (dynamic_cast<const CStaveArea*>(child.get()) != nullptr) {
            items.emplace_back(child->Bounds().Y, QStringLiteral("music"));
            contents.Outside = contents.Outside || !child->Bounds().WithinOrTouching(page.ContentBox());
        }
        for (const auto& other : page.Children()) {
            if (other != child && other->Bounds().Overlaps(child->Bounds()))
                contents.Overlapping = true;
        }
    }
    std::sort(items.begin(), items.end());
    for (const auto& item : items)
        contents.Items << item.second;
    return contents;
}

// New tunes on A4 paper while it lives, as the command-line tool gives them in most places.
class A4Paper {
public:
    A4Paper() : m_width(Session().DefaultPaperWidth), m_height(Session().DefaultPaperHeight)
    {
        Session().DefaultPaperWidth = 8.27f;
        Session().DefaultPaperHeight = 11.69f;
    }
    ~A4Paper()
    {
        Session().DefaultPaperWidth = m_width;
        Session().DefaultPaperHeight = m_height;
    }
    A4Paper(const A4Paper&) = delete;
    A4Paper& operator=(const A4Paper&) = delete;

private:
    float m_width;
    float m_height;
};

TEST_F(BwwLayout, FurtherTunesOfASetStackBelowTheTuneBeforeWhileThePageHasRoom)
{
    const A4Paper paper;
    const auto doc =
        Import("& 4_4 LA_4 ! B_4 ! C_4 ! D_4 !t\r\n" + SetTune("Second", 2) + SetTune("Third", 1));
    ASSERT_NE(doc, nullptr);
    ASSERT_EQ(doc->Pages.size(), 1u);
    const PageContents page = ContentsOf(*doc->Pages[0]);
    EXPECT_EQ(page.Items, (QStringList{"Tune", "music", "Second", "music", "Third", "music"}));
    EXPECT_FALSE(page.Overlapping);
    EXPECT_FALSE(page.Outside);
    EXPECT_EQ(BarsPerSystem(*doc), (std::vector<std::size_t>{4, 4, 4, 4}));
}

TEST_F(BwwLayout, ATuneGoesOnOverThePageAndOneThatFindsThePageFullStartsANewOne)
{
    const A4Paper paper;
    // Six lines each: the second tune starts below the first, and what does not fit goes on at
    // the top of the next page, below which the third tune starts.
    QByteArray first;
    for (int i = 0; i < 6; ++i)
        first += "& 4_4 LA_4 ! B_4 ! C_4 ! D_4 !t\r\n";
    const auto set = Import(first + SetTune("Second", 6) + SetTune("Third", 1));
    ASSERT_NE(set, nullptr);
    ASSERT_EQ(set->Pages.size(), 2u);
    const PageContents one = ContentsOf(*set->Pages[0]);
    const PageContents two = ContentsOf(*set->Pages[1]);
    EXPECT_EQ(one.Items, (QStringList{"Tune", "music", "Second", "music"}));
    EXPECT_EQ(two.Items, (QStringList{"music", "Third", "music"}));
    EXPECT_FALSE(one.Overlapping || two.Overlapping || two.Outside);
    const std::vector<CStaveArea*> areas = MusicAreas(*set);
    ASSERT_EQ(areas.size(), 4u);
    EXPECT_EQ(areas[1]->ChildCount() + areas[2]->ChildCount(), 6u);
    EXPECT_GT(areas[2]->ChildCount(), 0u);

    // A first tune that leaves no room for a line below the headings sends the next to a page of
    // its own, headings at the top.
    QByteArray full;
    for (int i = 0; i < 11; ++i)
        full += "& 4_4 LA_4 ! B_4 ! C_4 ! D_4 !t\r\n";
    const auto fresh = Import(full + SetTune("Second", 1));
    ASSERT_NE(fresh, nullptr);
    ASSERT_EQ(fresh->Pages.size(), 2u);
    EXPECT_EQ(ContentsOf(*fresh->Pages[1]).Items, (QStringList{"Second", "music"}));
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
