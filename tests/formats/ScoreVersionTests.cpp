#include "formats/archive/Archive.h"
#include "formats/score/ScoreFile.h"
#include "formats/score/ScoreRecords.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"

#include <gtest/gtest.h>

#include <cstring>

namespace corrieval {
namespace {

// Writes a one-bar score of an older version field by field, as the program of that time did,
// independently of the records under test.
class OlderScoreWriter {
public:
    explicit OlderScoreWriter(std::uint32_t version) : m_version(version) {}

    QByteArray Write()
    {
        U32(m_version);
        Count(0); // ties
        Count(1); // pages
        NewClass("CTunePage");
        Base(0, 0, 8, 8, 0.4f);
        Count(1);
        NewClass("CStaveArea");
        Count(0); // repeat markers
        TimeSig(8);
        Base(0.4f, 0.5f, 7.2f, 2, 0);
        Count(1);
        NewClass("CStaveGroup");
        Base(0.4f, 0.6f, 7.2f, 1.9f, 0);
        Count(1);
        NewClass("CStave");
        Base(0.4f, 0.6f, 7.2f, 1.9f, 0);
        Count(1);
        NewClass("CBarEx");
        Base(1, 0.6f, 6.6f, 1.9f, 0);
        Count(0); // notes
        const std::uint16_t config = NewClass("CBarConfig");
        TimeSig(0);
        for (int flag = 0; flag < 5; ++flag)
            U8(flag == 1 ? 1 : 0); // an end repeat
        I32(0);                    // no repeat marker
        Base(0, 0, 0, 0, 0); // the stave's clef
        I32(1);
        TimeSig(0);
        Count(1); // the group's configurations: the one the bar made
        U16(config);
        I32(25);
        I32(1);
        if (m_version >= 4) {
            U8(0);
            U8(0);
        }
        if (m_version >= 5)
            U8(1);
        if (m_version >= 7) {
            for (std::uint8_t channel : {0x80, 0x10, 0x20, 0x30})
                U8(channel);
        }
        F32(8.5f);
        F32(11);
        m_out.append(QByteArray(220, '\x5A'));
        I32(90);
        if (m_version >= 2)
            F32(0.75f);
        if (m_version >= 3)
            I32(1);
        return m_out;
    }

private:
    void Raw(const void* p, std::size_t n) { m_out.append(static_cast<const char*>(p), static_cast<qsizetype>(n)); }
    void U8(std::uint8_t v) { Raw(&v, 1); }
    void U16(std::uint16_t v) { Raw(&v, 2); }
    void U32(std::uint32_t v) { Raw(&v, 4); }
    void I32(std::int32_t v) { Raw(&v, 4); }
    void F32(float v) { Raw(&v, 4); }
    void Count(std::uint16_t n) { U16(n); }
    std::uint16_t NewClass(const char* name)
    {
        U16(0xFFFF);
        U16(1);
        U16(static_cast<std::uint16_t>(std::strlen(name)));
        Raw(name, std::strlen(name));
        const auto objectNumber = static_cast<std::uint16_t>(m_next + 1);
        m_next += 2;
        return objectNumber;
    }
    void Base(float x, float y, float w, float h, float margin)
    {
        for (float v : {x, y, w, h, margin, margin, margin, margin})
            F32(v);
    }
    void TimeSig(std::int32_t type)
    {
        Base(0, 0, 0, 0, 0);
        U16(type == 8 ? 53 : 0);
        U16(type == 8 ? 53 : 0);
        I32(type);
        if (m_version >= 6) {
            U8(0);
            U16(0);
            U16(0);
            I32(7);
            I32(8);
        }
    }

    std::uint32_t m_version;
    QByteArray m_out;
    std::uint16_t m_next = 1;
};

TEST(ScoreVersions, EachOlderVersionReadsWithTheDefaultsOfWhatItLacks)
{
    for (std::uint32_t version = 1; version <= 7; ++version) {
        SCOPED_TRACE(version);
        auto doc = ReadScore(OlderScoreWriter(version).Write(), QStringLiteral("old.skb"));
        EXPECT_EQ(doc->Version, version);
        EXPECT_EQ(doc->Tempo, 90);
        EXPECT_FLOAT_EQ(doc->LoadedZoom, version >= 2 ? 0.75f : 1.0f);
        EXPECT_EQ(doc->ZoomPending, 1);
        EXPECT_EQ(doc->Locked, version >= 3 ? 1 : 0);

        auto& area = static_cast<CStaveArea&>(*doc->Pages[0]->ChildAt(0));
        EXPECT_EQ(area.ShowTimeSig, version < 4);
        EXPECT_EQ(area.ShowBarLines, version < 4);
        EXPECT_EQ(area.ShowKeySig, version >= 5);
        EXPECT_EQ(area.Background, version >= 7 ? 0x80102030u : 0x64FFFFFFu);
        EXPECT_EQ(area.InitialTimeSig.Type, 8);
        EXPECT_EQ(area.InitialTimeSig.CustomBeats, version >= 6 ? 7 : 4);

        auto& group = static_cast<CStaveGroup&>(*area.ChildAt(0));
        auto& bar = static_cast<CBarEx&>(*static_cast<CStave&>(*group.ChildAt(0)).ChildAt(0));
        ASSERT_EQ(group.BarConfigs.size(), 1u);
        EXPECT_EQ(bar.Config, group.BarConfigs[0].get());
        EXPECT_TRUE(bar.Config->EndRepeat);
        EXPECT_EQ(static_cast<CStave&>(*group.ChildAt(0)).Clef.Glyph.Code, 48);
        EXPECT_EQ(doc->PrinterSettings[219], 0x5A);
    }
}

TEST(ScoreVersions, SavingUpgradesToTheCurrentVersion)
{
    auto doc = ReadScore(OlderScoreWriter(3).Write(), {});
    const QByteArray saved = StoreScore(*doc, {});
    EXPECT_EQ(saved.left(4), QByteArray::fromHex("07000000"));
    EXPECT_EQ(saved.size(), OlderScoreWriter(7).Write().size());

    auto upgraded = ReadScore(saved, {});
    auto& area = static_cast<CStaveArea&>(*upgraded->Pages[0]->ChildAt(0));
    EXPECT_TRUE(area.ShowTimeSig);
    EXPECT_FALSE(area.ShowKeySig);
    EXPECT_EQ(area.Background, 0x64FFFFFFu);
    EXPECT_EQ(upgraded->Locked, 1);
}

TEST(ScoreVersions, AVersionFiveTimeSignatureIsThirteenBytesShorter)
{
    EXPECT_EQ(OlderScoreWriter(6).Write().size() - OlderScoreWriter(5).Write().size(), 3 * 13);
}

} // namespace
} // namespace corrieval
