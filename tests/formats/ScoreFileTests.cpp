#include "fixtures/ScoreFixtures.h"
#include "formats/score/ScoreFile.h"
#include "formats/archive/ArchiveError.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/AbbreviationArea.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TextArea.h"
#include "notation/TieEx.h"
#include "support/RecordingView.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>

namespace corrieval {
namespace {

std::unique_ptr<CCorrievalDoc> RichTune()
{
    fixtures::TuneShape shape;
    shape.Pages = 2;
    shape.Groups = 3;
    shape.Parts = 2;
    shape.Columns = 4;
    shape.NotesPerBar = 3;
    shape.Repeats = true;
    return fixtures::BuildTune(shape);
}

CStaveArea& MusicArea(CCorrievalDoc& doc, std::size_t page = 0)
{
    return static_cast<CStaveArea&>(*doc.Pages.at(page)->ChildAt(1));
}

CStaveGroup& Group(CStaveArea& area, std::size_t i) { return static_cast<CStaveGroup&>(*area.ChildAt(i)); }

CBarEx& Bar(CStaveGroup& group, std::size_t stave, std::size_t column)
{
    return static_cast<CBarEx&>(*static_cast<CStave&>(*group.ChildAt(stave)).ChildAt(column));
}

TEST(ScoreFile, TreesBuiltInCodeRoundTripToIdenticalBytes)
{
    auto doc = RichTune();
    const QByteArray first = StoreScore(*doc, QStringLiteral("a.skb"));
    auto loaded = ReadScore(first, QStringLiteral("a.skb"));
    EXPECT_EQ(loaded->ZoomPending, 1);
    EXPECT_EQ(StoreScore(*loaded, QStringLiteral("b.skb")), first);

    EXPECT_EQ(loaded->Pages.size(), 2u);
    EXPECT_EQ(static_cast<CTextArea&>(*loaded->Pages[0]->ChildAt(0)).Text, QStringLiteral("The Corrieval Reel"));
    CStaveArea& area = MusicArea(*loaded);
    EXPECT_EQ(area.InitialTimeSig.Type, 8);
    EXPECT_EQ(area.ChildCount(), 3u);
}

TEST(ScoreFile, AColumnSharesOneConfigurationAfterLoading)
{
    auto doc = RichTune();
    auto loaded = ReadScore(StoreScore(*doc, {}), {});
    CStaveGroup& group = Group(MusicArea(*loaded), 1);
    ASSERT_EQ(group.BarConfigs.size(), 4u);
    for (std::size_t column = 0; column < 4; ++column) {
        EXPECT_EQ(Bar(group, 0, column).Config, group.BarConfigs[column].get());
        EXPECT_EQ(Bar(group, 1, column).Config, group.BarConfigs[column].get());
    }
    EXPECT_TRUE(group.BarConfigs[0]->StartRepeat);
    EXPECT_EQ(group.BarConfigs[3]->RepeatEnding, CBarConfig::SecondTime);
}

TEST(ScoreFile, RepeatMarkersAndTiesAreLinkedOnLoad)
{
    auto doc = RichTune();
    auto loaded = ReadScore(StoreScore(*doc, {}), {});
    CStaveArea& area = MusicArea(*loaded, 1);
    ASSERT_EQ(area.RepeatMarkers.size(), 1u);
    CRepeatTiming* marker = area.RepeatMarkers[0].get();
    EXPECT_EQ(marker->Area, &area);
    EXPECT_EQ(Bar(Group(area, 0), 0, 2).RepeatTiming, marker);

    ASSERT_EQ(loaded->Ties.size(), 2u);
    CTieEx* tie = loaded->Ties[1].get();
    ASSERT_EQ(tie->Notes.size(), 2u);
    EXPECT_EQ(tie->Notes[0], Bar(Group(area, 0), 0, 2).ChildAt(0));
    EXPECT_EQ(tie->Notes[0]->Tie, tie);
}

TEST(ScoreFile, TieValueIsRecomputedAndUnknownTiesAreDropped)
{
    auto doc = RichTune();
    CBarEx& bar = Bar(Group(MusicArea(*doc), 1), 1, 0);
    auto& tie = *doc->Ties[0];
    for (std::size_t i = 0; i < 3; ++i)
        tie.AddNote(static_cast<CNoteEx*>(bar.ChildAt(i)));
    tie.TieValue = 7;                                    // five notes now
    CTieEx stray;                                        // not in the document's list
    stray.Id = 99;
    static_cast<CNoteEx*>(Bar(Group(MusicArea(*doc), 2), 0, 0).ChildAt(0))->Tie = &stray;

    auto loaded = ReadScore(StoreScore(*doc, {}), {});
    EXPECT_EQ(loaded->Ties[0]->Notes.size(), 5u);
    EXPECT_EQ(loaded->Ties[0]->TieValue, 4);
    EXPECT_EQ(static_cast<CNoteEx*>(Bar(Group(MusicArea(*loaded), 2), 0, 0).ChildAt(0))->Tie, nullptr);
}

TEST(ScoreFile, ABarNamingAMissingMarkerLoadsWithoutOne)
{
    auto doc = RichTune();
    CRepeatTiming elsewhere;
    elsewhere.RepeatId = 3;
    Bar(Group(MusicArea(*doc), 1), 0, 1).RepeatTiming = &elsewhere;
    auto loaded = ReadScore(StoreScore(*doc, {}), {});
    EXPECT_EQ(Bar(Group(MusicArea(*loaded), 1), 0, 1).RepeatTiming, nullptr);
}

TEST(ScoreFile, DocumentHeadAndFirstClassRecordHaveTheDocumentedBytes)
{
    CCorrievalDoc doc;
    doc.OnNewDocument();
    const QByteArray bytes = StoreScore(doc, {});
    EXPECT_EQ(bytes.left(8), QByteArray::fromHex("070000000000" "0100"));
    EXPECT_EQ(bytes.mid(8, 15), QByteArray::fromHex("ffff01000900") + QByteArray("CTunePage"));
    // 220 zero bytes of printer settings, tempo 74, zoom 1.0, unlocked
    EXPECT_EQ(bytes.right(12), QByteArray::fromHex("4a000000" "0000803f" "00000000"));
}

TEST(ScoreFile, PlayerFormMarksTheFileAndScramblesThreeRecords)
{
    auto doc = fixtures::BuildTune({});
    auto* config = Group(MusicArea(*doc), 0).BarConfigs[0].get();
    config->StartBarLine = true;
    config->RepeatEnding = 2;

    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tune.skp"));
    SavePlayerFile(*doc, path);
    EXPECT_EQ(doc->PlayerExport, 0);
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    EXPECT_EQ(bytes.left(18), QByteArray::fromHex("07000000fffeff05") + QByteArray("k\0_\0T\0-\0r", 9) + QByteArray(1, 0));
    // The first page's record starts with its width, then its right margin.
    const qsizetype page = bytes.indexOf("CTunePage") + 9;
    float width = 0;
    float rightMargin = 0;
    std::memcpy(&width, bytes.constData() + page, 4);
    std::memcpy(&rightMargin, bytes.constData() + page + 4, 4);
    EXPECT_FLOAT_EQ(width, doc->PageWidth);
    EXPECT_FLOAT_EQ(rightMargin, 0.4f);
    // Bar configuration flags behind their time signature: start line, end repeat, ending,
    // start repeat, end line.
    const qsizetype configAt = bytes.indexOf("CBarConfig") + 10 + 32 + 2 + 2 + 4 + 1 + 2 + 2 + 4 + 4;
    EXPECT_EQ(bytes.mid(configAt, 5), QByteArray::fromHex("0100020000"));
}

TEST(ScoreFile, ZoomComesFromTheViewWhenThereIsOne)
{
    auto doc = fixtures::BuildTune({});
    doc->LoadedZoom = -1.0f; // zoom to width, as loaded
    auto reloaded = ReadScore(StoreScore(*doc, {}), {});
    EXPECT_FLOAT_EQ(reloaded->LoadedZoom, -1.0f);

    testing::RecordingView view;
    view.ViewZoom = 1.25f;
    StoreScore(*doc, {});
    EXPECT_FLOAT_EQ(doc->LoadedZoom, 1.25f);
}

TEST(ScoreFile, AFailedSaveLeavesTheOldFile)
{
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("tune.skb"));
    auto doc = fixtures::BuildTune({});
    SaveScore(*doc, path);
    QFile before(path);
    ASSERT_TRUE(before.open(QIODevice::ReadOnly));
    const QByteArray original = before.readAll();
    before.close();

    // A page that holds an object the format has no record for cannot be stored.
    doc->Pages[0]->AddChild(std::make_unique<CGraphObjContainer>(), true);
    EXPECT_THROW(SaveScore(*doc, path), std::logic_error);
    QFile after(path);
    ASSERT_TRUE(after.open(QIODevice::ReadOnly));
    EXPECT_EQ(after.readAll(), original);
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

} // namespace
} // namespace corrieval
