// Where the music font's symbols land on a stave, probed from their outlines in the boxes that
// the drawing rules of notes, movements, clefs and signatures give them.

#include "notation/ScoChar.h"
#include "notation/TimeSig.h"
#include "support/RecordingPainter.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <vector>

namespace corrieval {
namespace {

// A stave of 19 units u at a realistic size in inches: position k lies at kTop + k * kU.
constexpr float kU = 0.03f;
constexpr float kTop = 2.5f;
constexpr float kLeft = 1.0f;
constexpr float kStaveHeight = 19 * kU;
constexpr double kTolerance = 0.02 * kU;

double Position(double k)
{
    return kTop + k * kU;
}

// The stretches of ink met walking from `from` to `to` in steps of a two-hundredth of a unit,
// as (start, end) distances from `from`.
std::vector<std::pair<double, double>> Ink(const QPainterPath& path, QPointF from, QPointF to)
{
    const double length = std::hypot(to.x() - from.x(), to.y() - from.y());
    const int steps = static_cast<int>(length / (kU / 200));
    std::vector<std::pair<double, double>> spans;
    bool inside = false;
    for (int i = 0; i <= steps; ++i) {
        const double t = length * i / steps;
        const bool hit = path.contains(from + (to - from) * (t / length));
        if (hit && !inside)
            spans.push_back({t, t});
        if (hit)
            spans.back().second = t;
        inside = hit;
    }
    return spans;
}

// The vertical middle of a note head on the vertical line x: from the first ink from the top,
// all ink within 1.2 gaps of it, which a head never exceeds and flags and stems do.
double HeadMiddle(const QPainterPath& path, double x)
{
    const double top = path.boundingRect().top() - kU;
    const auto spans = Ink(path, {x, top}, {x, path.boundingRect().bottom() + kU});
    if (spans.empty())
        return 0;
    double bottom = spans.front().first;
    for (const auto& [from, to] : spans)
        if (to <= spans.front().first + 2.4 * kU)
            bottom = to;
    return top + (spans.front().first + bottom) / 2;
}

// The horizontal middle of the first ink from the left on the horizontal line y.
double FirstInkMiddleAcross(const QPainterPath& path, double y)
{
    const double left = path.boundingRect().left() - kU;
    const auto spans = Ink(path, {left, y}, {path.boundingRect().right() + kU, y});
    return spans.empty() ? 0 : left + (spans.front().first + spans.front().second) / 2;
}

// The box of a single note (CNoteEx::Draw): one gap high, from half a unit above its position.
RectF NoteBox(int pitch)
{
    return {kLeft, kTop + pitch * 2 * kU * 0.5f - 2 * kU * 0.25f, 4 * kU, 2 * kU};
}

// The box of a gracenote of a movement (CNoteEx::AddGraceHead, not large) in a cell a little
// wider than two stave units.
RectF GraceBox(int pitch)
{
    const float gap = 2 * kU;
    const float w = 2.2f * kU;
    return {kLeft + w * 0.125f, (pitch - 2) * gap * 0.5f + kTop + gap * 0.4f, w * 0.75f, gap * 0.75f};
}

// The outline of a symbol in a box, the width it reports and the middle of the box across.
struct Drawn {
    Drawn(char16_t code, const RectF& box) : CentreX(box.X + box.Width / 2.0)
    {
        Width = CScoChar(code).AddToPath(Path, box);
    }
    QPainterPath Path;
    float Width = 0;
    double CentreX;
};

QRectF InkBox(char16_t code, const RectF& box)
{
    return Drawn(code, box).Path.boundingRect();
}

TEST(GlyphPlacement, HeadsCentreOnTheirPitchAtEveryPosition)
{
    // Melody notes, the small notes that stand alone in a bar, and a movement's gracenotes.
    const std::pair<std::vector<char16_t>, std::function<RectF(int)>> families[] = {
        {{36, 37, 38, 39, 40, 41, 120, 34, 43, 74}, NoteBox},
        {{33, 75}, GraceBox},
    };
    for (const auto& [codes, box] : families) {
        for (const char16_t code : codes) {
            for (int pitch = 3; pitch <= 11; ++pitch) {
                SCOPED_TRACE(::testing::Message() << "code " << int(code) << ", pitch " << pitch);
                const Drawn d(code, box(pitch));
                EXPECT_NEAR(HeadMiddle(d.Path, d.CentreX), Position(pitch), kTolerance);
            }
        }
    }
}

TEST(GlyphPlacement, StemsStandOnTheHeadEdgesThatGroupsDrawStemsAt)
{
    // Groups draw melody stems centred on the head's left edge, centre - width / 2, and
    // gracenote stems on its right edge; the stems inside the glyphs must meet the same lines.
    for (const char16_t code : {37, 38, 39, 40, 41, 120}) {
        SCOPED_TRACE(::testing::Message() << "code " << int(code));
        const Drawn d(code, NoteBox(7));
        EXPECT_NEAR(FirstInkMiddleAcross(d.Path, Position(7 + 1.5)), d.CentreX - d.Width / 2, kTolerance);
    }
    // Above a small head and below the flags only the stem stands.
    for (const Drawn& d : {Drawn(43, NoteBox(7)), Drawn(74, NoteBox(7)), Drawn(75, GraceBox(7))})
        EXPECT_NEAR(FirstInkMiddleAcross(d.Path, Position(7 - 0.75)), d.CentreX + d.Width / 2, kTolerance);
}

TEST(GlyphPlacement, ClefKeyAndTimeSignaturesStandOnTheirLines)
{
    // The treble clef's box from the stave header; engraved, the clef reaches 4.78 gaps above the
    // G line its curl turns round and 2.54 below.
    const float clefGap = 2 * kStaveHeight * 0.7f / 19;
    const QRectF clef = InkBox(48, {kLeft, kTop + 4 * kU + clefGap / 2.1f * 9, kStaveHeight / 3.8f, clefGap});
    EXPECT_NEAR(clef.top(), Position(11 - 2 * 4.78), 0.05 * kU);
    EXPECT_NEAR(clef.bottom(), Position(11 + 2 * 2.54), 0.05 * kU);

    // One sharp glyph serves the F and C boxes of the key signature, which stand 0.1u closer than
    // the lines: each is 0.05u out.
    const float keyWidth = kStaveHeight * 0.5f;
    const float keyGap = 2 * kStaveHeight * 1.7f / 19;
    const float step = keyGap / 1.9f;
    const QRectF onF = InkBox(64, {kLeft, kTop + 2 * step + keyGap / 5, keyWidth, keyGap * 0.65f});
    const QRectF onC = InkBox(64, {kLeft + keyWidth * 0.25f, kTop + 4 * step, keyWidth, keyGap * 0.65f});
    EXPECT_NEAR(onF.center().y(), Position(5), 0.06 * kU);
    EXPECT_NEAR(onC.center().y(), Position(8), 0.06 * kU);

    // The digits fill the upper half of the stave (the lower is the same box lower down); common and
    // cut time its middle.
    const float g = 2 * kU / 1.8f;
    for (char16_t digit = 49; digit <= 58; ++digit) {
        SCOPED_TRACE(::testing::Message() << "code " << int(digit));
        const QRectF upper = InkBox(digit, {kLeft, kTop + 7.5f * kU, 4 * kU, g});
        EXPECT_NEAR(upper.center().y(), Position(7), 0.05 * kU);
        EXPECT_NEAR(upper.height(), 4 * kU, 0.05 * kU);
    }
    for (const char16_t symbol : {46, 47})
        EXPECT_NEAR(InkBox(symbol, {kLeft, kTop + 7.5f * kU + g / 2.5f, 4 * kU, g * 1.2f}).center().y(),
                    Position(9), 0.05 * kU);
}

TEST(GlyphPlacement, TwoDigitsStandApartWithTheOtherLineCentredUnderThem)
{
    std::int32_t twelveEight = 0;
    while (CTimeSig::TypeName(twelveEight) != "Twelve Eight")
        ++twelveEight;
    CTimeSig sig(twelveEight);
    sig.SetBounds(kLeft, kTop, 0.3f, 0.6f);
    testing::RecordingPainter painter;
    sig.Draw(painter, OutputMode::Screen);
    const auto glyphs = painter.Of(testing::PaintCall::Kind::FillPath);
    ASSERT_EQ(glyphs.size(), 3u); // the 8, then the 1 and the 2
    const QRectF eight = glyphs[0].Path.boundingRect();
    const QRectF one = glyphs[1].Path.boundingRect();
    const QRectF two = glyphs[2].Path.boundingRect();
    EXPECT_LT(one.right(), two.left());
    EXPECT_NEAR(eight.center().x(), one.united(two).center().x(), 0.1 * eight.width());
    // The pair starts no further left than a single digit would.
    EXPECT_GE(one.left(), kLeft + 0.15 - eight.width() / 2);
}

} // namespace
} // namespace corrieval
