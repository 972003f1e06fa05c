// The box rule of music glyphs: how an outline is fitted to a box, turned and measured.

#include "notation/ScoChar.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

QPainterPath PathOf(const CScoChar& glyph, const RectF& box, float* width = nullptr)
{
    QPainterPath path;
    const float w = glyph.AddToPath(path, box);
    if (width != nullptr)
        *width = w;
    return path;
}

TEST(ScoChar, BoxTwiceAsHighGivesExactlyTwiceThePath)
{
    const RectF box{1.25f, 2.5f, 0.12f, 0.0625f};
    const RectF twice{2 * box.X, 2 * box.Y, 2 * box.Width, 2 * box.Height};
    for (const char16_t code : {38, 48, 0xA6}) {
        SCOPED_TRACE(testing::Message() << "code " << int(code));
        float width = 0;
        float widthTwice = 0;
        const QPainterPath once = PathOf(CScoChar(code), box, &width);
        const QPainterPath doubled = PathOf(CScoChar(code), twice, &widthTwice);
        ASSERT_GT(once.elementCount(), 0);
        ASSERT_EQ(once.elementCount(), doubled.elementCount());
        for (int i = 0; i < once.elementCount(); ++i) {
            EXPECT_EQ(doubled.elementAt(i).x, 2 * once.elementAt(i).x);
            EXPECT_EQ(doubled.elementAt(i).y, 2 * once.elementAt(i).y);
        }
        EXPECT_EQ(widthTwice, 2 * width);
    }
}

TEST(ScoChar, NoSymbolAddsNothing)
{
    // Code 0 is no symbol, and 'A' is not in the music font: neither must show the font's
    // placeholder box or disturb what the path already holds.
    QPainterPath path;
    path.addRect(0, 0, 1, 1);
    const QPainterPath before = path;
    for (const char16_t code : {0, 65}) {
        EXPECT_EQ(CScoChar(code).AddToPath(path, {1, 1, 0.1f, 0.06f}), 0.0f);
        EXPECT_EQ(path, before);
    }
}

TEST(ScoChar, FlipTurnsTheOutlineHalfRoundAboutTheBoxCentre)
{
    const RectF box{1, 2, 0.1f, 0.06f};
    const QPointF anchor(box.X + box.Width / 2, box.Y + box.Height / 2);
    CScoChar glyph(75);
    float width = 0;
    const QPainterPath upright = PathOf(glyph, box, &width);
    glyph.Flip = true;
    float flippedWidth = 0;
    const QPainterPath turned = PathOf(glyph, box, &flippedWidth);
    ASSERT_EQ(upright.elementCount(), turned.elementCount());
    for (int i = 0; i < upright.elementCount(); ++i) {
        EXPECT_NEAR(turned.elementAt(i).x, 2 * anchor.x() - upright.elementAt(i).x, 1e-6);
        EXPECT_NEAR(turned.elementAt(i).y, 2 * anchor.y() - upright.elementAt(i).y, 1e-6);
    }
    EXPECT_EQ(flippedWidth, width);
}

} // namespace
} // namespace corrieval
