#include "notation/Clef.h"
#include "notation/TimeSig.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

TEST(TimeSig, TableGivesBeatsUnitsAndDigitGlyphs)
{
    const CTimeSig common(1);
    EXPECT_TRUE(common.Symbol);
    EXPECT_EQ(common.UpperGlyphs[0].Code, 47);
    EXPECT_EQ(common.GetBeats(), 4);

    const CTimeSig sixEight(12);
    EXPECT_FALSE(sixEight.Symbol);
    EXPECT_EQ(sixEight.GetBeats(), 6);
    EXPECT_EQ(sixEight.GetBeatUnit(), 8);
    EXPECT_EQ(sixEight.UpperGlyphs[0].Code, u'6' + 1);
    EXPECT_EQ(sixEight.LowerGlyphs[0].Code, u'8' + 1);

    const CTimeSig twelveEight(14);
    EXPECT_EQ(twelveEight.UpperGlyphs[0].Code, u'1' + 1);
    EXPECT_EQ(twelveEight.UpperGlyphs[1].Code, u'2' + 1);

    const CTimeSig none;
    EXPECT_EQ(none.GetBeats(), 0);
    EXPECT_EQ(none.UpperGlyphs[0].Code, 0);
}

TEST(TimeSig, CustomTypeTakesItsDigitsFromTheNumbers)
{
    CTimeSig sig;
    sig.CustomBeats = 11;
    sig.CustomUnit = 16;
    sig.SetType(CTimeSig::Custom);
    EXPECT_EQ(sig.GetBeats(), 11);
    EXPECT_EQ(sig.GetBeatUnit(), 16);
    EXPECT_EQ(sig.UpperGlyphs[0].Code, 50);
    EXPECT_EQ(sig.UpperGlyphs[1].Code, 50);
    EXPECT_EQ(sig.LowerGlyphs[1].Code, 55);

    sig.CustomBeats = 5;
    sig.SetType(CTimeSig::Custom);
    EXPECT_EQ(sig.UpperGlyphs[0].Code, 54);
    EXPECT_EQ(sig.UpperGlyphs[1].Code, 0);
}

TEST(TimeSig, TypePastTheTableKeepsTheGlyphs)
{
    CTimeSig sig(7);
    sig.UpperGlyphs[0].Flip = true;
    sig.SetType(40);
    EXPECT_EQ(sig.Type, 40);
    EXPECT_EQ(sig.UpperGlyphs[0].Code, 52);
    EXPECT_EQ(sig.GetBeats(), 0);
}

TEST(TimeSig, OlderFormatCharactersMapToTypes)
{
    EXPECT_EQ(CTimeSig::TimeSigFromChar(u' '), 0);
    EXPECT_EQ(CTimeSig::TimeSigFromChar(u'&'), 12);
    EXPECT_EQ(CTimeSig::TimeSigFromChar(u'-'), 2);
    EXPECT_EQ(CTimeSig::TimeSigFromChar(u';'), 16);
    EXPECT_EQ(CTimeSig::TimeSigFromChar(u'A'), 1);
}

TEST(Clef, KnownKindsSetTheirGlyphOthersKeepIt)
{
    CClef clef;
    clef.SetType(CClef::Bass);
    EXPECT_EQ(clef.Glyph.Code, 204);
    clef.SetType(9);
    EXPECT_EQ(clef.Glyph.Code, 204);
    clef.SetType(CClef::None);
    EXPECT_EQ(clef.Glyph.Code, 0);
}

} // namespace
} // namespace corrieval
