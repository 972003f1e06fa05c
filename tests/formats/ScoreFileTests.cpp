#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "model/AbbreviationArea.h"
#include "model/BarConfig.h"
#include "notation/NoteEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TextArea.h"
#include "notation/TieEx.h"
#include "support/RecordingView.h"
#include "support/ScoreRoundTrip.h"
#include "support/ScoreWalk.h"

#include <QDir>
#include <QTemporaryDir>
#include <cstring>
#include <gtest/gtest.h>

namespace corrieval {
namespace {

using testing::BarOf;
using testing::MusicAreas;
using testing::StaveOf;

std::unique_ptr<CCorrievalDoc> RichTune()
{
    return fixtures::BuildTune(
        {.Pages = 2, .Groups = 3, .Parts = 2, .Columns = 4, .NotesPerBar = 3, .Repeats = true});
}

// Writes a one-bar score of an older version field by field, as the program of that time did,
// independently of the records under test.
class OlderScoreWriter {
public:
    explicit OlderScoreWriter(std::uint32_t version) : m_version(version) {}

    QByteArray Write()
    {
        Put(m_version, u16{0}, u16{1}); // no ties, one page
        NewClass("CTunePage");
        Base(0, 0, 8, 8, 0.4f);
        Put(u16{1});
        NewClass("CStaveArea");
        Put(u16{0}); // no repeat markers
        TimeSig(8);
        Base(0.4f, 0.5f, 7.2f, 2, 0);
        Put(u16{1});
        NewClass("CStaveGroup");
        Base(0.4f, 0.6f, 7.2f, 1.9f, 0);
        Put(u16{1});
        NewClass("CStave");
        Base(0.4f, 0.6f, 7.2f, 1.9f, 0);
        Put(u16{1});
        NewClass("CBarEx");
        Base(1, 0.6f, 6.6f, 1.9f, 0);
        Put(u16{0}); // no notes
        const u16 config = NewClass("CBarConfig");
        TimeSig(0);
        Put(u8{0}, u8{1}, u8{0}, u8{0}, u8{0}, 0); // an end repeat and no repeat marker
        Base(0, 0, 0, 0, 0);                       // the stave's clef
        Put(1);
        TimeSig(0);
        Put(u16{1}, config, 25, 1); // the group's configurations: the one the bar made
        if (m_version >= 4)
            Put(u8{0}, u8{0}); // neither time signature nor bar lines shown
        if (m_version >= 5)
            Put(u8{1});
        if (m_version >= 7)
            Put(u8{0x80}, u8{0x10}, u8{0x20}, u8{0x30}); // the background
        Put(8.5f, 11.0f);
        m_out.append(QByteArray(220, '\x5A'));
        Put(90);
        if (m_version >= 2)
            Put(0.75f);
        if (m_version >= 3)
            Put(1);
        return m_out;
    }

private:
    using u8 = std::uint8_t;
    using u16 = std::uint16_t;

    // Each value goes out little-endian in its own width, as score files hold it.
    template <class... T> void Put(T... values)
    {
        (m_out.append(reinterpret_cast<const char*>(&values), sizeof values), ...);
    }
    u16 NewClass(const char* name)
    {
        Put(u16{0xFFFF}, u16{1}, static_cast<u16>(std::strlen(name)));
        m_out.append(name);
        const auto objectNumber = static_cast<u16>(m_next + 1);
        m_next += 2;
        return objectNumber;
    }
    void Base(float x, float y, float w, float h, float margin)
    {
        Put(x, y, w, h, margin, margin, margin, margin);
    }
    void TimeSig(std::int32_t type)
    {
        Base(0, 0, 0, 0, 0);
        const u16 glyph = type == 8 ? 53 : 0;
        Put(glyph, glyph, type);
        if (m_version >= 6)
            Put(u8{0}, u16{0}, u16{0}, 7, 8);
    }

    std::uint32_t m_version;
    QByteArray m_out;
    u16 m_next = 1;
};

TEST(ScoreFile, AWholeDocumentRoundTripsToIdenticalBytesWithItsLinks)
{
    auto doc = RichTune();
    doc->LoadedZoom = -1.0f; // zoom to width, as loaded
    auto loaded = testing::Reloaded(*doc);
    EXPECT_FLOAT_EQ(loaded->LoadedZoom, -1.0f);
    ASSERT_EQ(loaded->Pages.size(), 2u);
    EXPECT_EQ(static_cast<CTextArea&>(*loaded->Pages[0]->ChildAt(0)).Text,
              QStringLiteral("The Corrieval Reel"));
    CStaveArea& area = *MusicAreas(*loaded)[1];
    EXPECT_EQ(area.InitialTimeSig.Type, 8);
    ASSERT_EQ(area.ChildCount(), 3u);

    // Every stave's bar in a column shares the one configuration of its system.
    auto& group = static_cast<CStaveGroup&>(*area.ChildAt(1));
    const auto& lower = static_cast<CStave&>(*group.ChildAt(1));
    ASSERT_EQ(group.BarConfigs.size(), 4u);
    for (std::size_t column = 0; column < 4; ++column) {
        EXPECT_EQ(BarOf(area, 1, column).Config, group.BarConfigs[column].get());
        EXPECT_EQ(static_cast<CBarEx&>(*lower.ChildAt(column)).Config, group.BarConfigs[column].get());
    }
    EXPECT_TRUE(group.BarConfigs[0]->StartRepeat);
    EXPECT_EQ(group.BarConfigs[3]->RepeatEnding, CBarConfig::SecondTime);

    // Repeat markers and ties point at what was read.
    ASSERT_EQ(area.RepeatMarkers.size(), 1u);
    CRepeatTiming* marker = area.RepeatMarkers[0].get();
    EXPECT_EQ(marker->Area, &area);
    EXPECT_EQ(BarOf(area, 0, 2).RepeatTiming, marker);
    ASSERT_EQ(loaded->Ties.size(), 2u);
    CTieEx* tie = loaded->Ties[1].get();
    ASSERT_EQ(tie->Notes.size(), 2u);
    EXPECT_EQ(tie->Notes[0], BarOf(area, 0, 2).ChildAt(0));
    EXPECT_EQ(tie->Notes[0]->Tie, tie);

    // With a view open, the file keeps the view's zoom.
    testing::RecordingView view;
    view.ViewZoom = 1.25f;
    StoreScore(*loaded, {});
    EXPECT_FLOAT_EQ(loaded->LoadedZoom, 1.25f);
}

// A saved document may point at ties and markers it does not hold; loading drops those links
// rather than leaving them dangling, and works the tie values out afresh.
TEST(ScoreFile, LinksToWhatTheFileDoesNotHoldAreDroppedOnLoad)
{
    auto doc = RichTune();
    CStaveArea& area = *MusicAreas(*doc)[0];
    CBarEx& bar = BarOf(area, 1, 0);
    auto& tie = *doc->Ties[0];
    for (std::size_t i = 0; i < 3; ++i)
        tie.AddNote(static_cast<CNoteEx*>(bar.ChildAt(i)));
    tie.TieValue = 7; // five notes now
    CTieEx stray;
    stray.Id = 99;
    static_cast<CNoteEx*>(BarOf(area, 2, 0).ChildAt(0))->Tie = &stray;
    CRepeatTiming elsewhere;
    elsewhere.RepeatId = 3;
    BarOf(area, 1, 1).RepeatTiming = &elsewhere;

    auto loaded = ReadScore(StoreScore(*doc, {}), {});
    CStaveArea& read = *MusicAreas(*loaded)[0];
    EXPECT_EQ(loaded->Ties[0]->Notes.size(), 5u);
    EXPECT_EQ(loaded->Ties[0]->TieValue, 4);
    EXPECT_EQ(static_cast<CNoteEx*>(BarOf(read, 2, 0).ChildAt(0))->Tie, nullptr);
    EXPECT_EQ(BarOf(read, 1, 1).RepeatTiming, nullptr);
}

TEST(ScoreFile, PlayerFormScramblesThePageAndBarConfigurationRecords)
{
    auto doc = fixtures::BuildTune({});
    auto* config = static_cast<CStaveGroup&>(*MusicAreas(*doc)[0]->ChildAt(0)).BarConfigs[0].get();
    config->StartBarLine = true;
    config->RepeatEnding = 2;
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tune.skp"));
    SavePlayerFile(*doc, path);
    const QByteArray bytes = ReadFileBytes(path);

    // The first page's record starts with its width, then its right margin.
    float head[2] = {};
    std::memcpy(head, bytes.constData() + bytes.indexOf("CTunePage") + 9, sizeof head);
    EXPECT_FLOAT_EQ(head[0], doc->PageWidth);
    EXPECT_FLOAT_EQ(head[1], 0.4f);
    // Bar configuration flags behind their time signature: start line, end repeat, ending,
    // start repeat, end line.
    const qsizetype configAt = bytes.indexOf("CBarConfig") + 10 + 32 + 2 + 2 + 4 + 1 + 2 + 2 + 4 + 4;
    EXPECT_EQ(bytes.mid(configAt, 5), QByteArray::fromHex("0100020000"));
}

TEST(ScoreFile, AFailedSaveLeavesTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tune.skb"));
    auto doc = fixtures::BuildTune({});
    SaveScore(*doc, path);
    const QByteArray original = ReadFileBytes(path);

    // A page that holds an object the format has no record for cannot be stored.
    doc->Pages[0]->AddChild(std::make_unique<CGraphObjContainer>(), true);
    EXPECT_THROW(SaveScore(*doc, path), std::logic_error);
    EXPECT_EQ(ReadFileBytes(path), original);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("tune.skb")});

    auto plain = fixtures::BuildTune({});
    EXPECT_THROW(SaveScore(*plain, dir.filePath(QStringLiteral("missing/tune.skb"))), FileError);
}

TEST(ScoreFile, AbbreviationGroupsFromTheFileFollowTheDefaultGroup)
{
    auto doc = fixtures::BuildTune({});
    doc->Pages[0]->AddChild(std::make_unique<CAbbreviationArea>(), true);
    auto loaded = ReadScore(StoreScore(*doc, {}), {});
    auto& legend = static_cast<CAbbreviationArea&>(*loaded->Pages[0]->ChildAt(2));
    ASSERT_EQ(legend.ChildCount(), 2u);
    EXPECT_EQ(legend.WrittenStave->Parent(), legend.ChildAt(0));
    // Each save and load adds one more empty group.
    auto again = ReadScore(StoreScore(*loaded, {}), {});
    EXPECT_EQ(static_cast<CAbbreviationArea&>(*again->Pages[0]->ChildAt(2)).ChildCount(), 3u);
}

TEST(ScoreVersions, EachOlderVersionReadsWithTheDefaultsOfWhatItLacksAndSavesAsTheCurrent)
{
    const auto settingsOf = [](const CCorrievalDoc& doc) {
        const CStaveArea& area = *MusicAreas(doc).front();
        return std::tuple(doc.Tempo, doc.LoadedZoom, doc.Locked, area.ShowTimeSig, area.ShowBarLines,
                          area.ShowKeySig, area.Background, area.InitialTimeSig.CustomBeats);
    };
    const QByteArray current = OlderScoreWriter(7).Write();
    for (std::uint32_t version = 1; version <= 7; ++version) {
        SCOPED_TRACE(version);
        auto doc = ReadScore(OlderScoreWriter(version).Write(), QStringLiteral("old.skb"));
        EXPECT_EQ(std::tuple(doc->Version, doc->ZoomPending, doc->PrinterSettings[219]),
                  std::tuple(version, 1, 0x5A));
        EXPECT_EQ(settingsOf(*doc),
                  std::tuple(90, version >= 2 ? 0.75f : 1.0f, version >= 3 ? 1 : 0, version < 4, version < 4,
                             version >= 5, version >= 7 ? 0x80102030u : 0x64FFFFFFu, version >= 6 ? 7 : 4));
        const CStaveArea& area = *MusicAreas(*doc).front();
        EXPECT_EQ(area.InitialTimeSig.Type, 8);
        const auto& group = static_cast<const CStaveGroup&>(*area.ChildAt(0));
        ASSERT_EQ(group.BarConfigs.size(), 1u);
        EXPECT_EQ(BarOf(area, 0, 0).Config, group.BarConfigs[0].get());
        EXPECT_TRUE(group.BarConfigs[0]->EndRepeat);
        EXPECT_EQ(StaveOf(area, 0).Clef.Glyph.Code, 48);

        // Saving writes the current version, which reads back with what the older one had.
        const QByteArray saved = StoreScore(*doc, {});
        EXPECT_EQ(saved.left(4), current.left(4));
        EXPECT_EQ(saved.size(), current.size());
        EXPECT_EQ(settingsOf(*ReadScore(saved, {})), settingsOf(*doc));
    }
    // A file of the current version is written back byte for byte.
    EXPECT_EQ(StoreScore(*ReadScore(current, {}), {}), current);
}

} // namespace
} // namespace corrieval
