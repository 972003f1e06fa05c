// Where the music font's symbols land on a stave, probed from their outlines in the boxes that
// the drawing rules of notes, movements, clefs and signatures give them.

#include "notation/ScoChar.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace corrieval {
namespace {

// A stave of 19 units u at a realistic size in inches: position k lies at kTop + k * kU.
constexpr float kU = 0.03f;
constexpr float kTop = 2.5f;
constexpr float kLeft = 1.0f;
constexpr float kStaveHeight = 19 * kU;
constexpr double kTolerance = 0.02 * kU;

double Position(double k) { return kTop + k * kU; }

struct Span {
    double From;
    double To;
};

// The stretches of ink met walking from `from` to `to` in steps of a two-hundredth of a unit,
// as distances along the way.
std::vector<Span> Ink(const QPainterPath& path, QPointF from, QPointF to)
{
    const QPointF way = to - from;
    const double length = std::hypot(way.x(), way.y());
    const int steps = static_cast<int>(length / (kU / 200));
    std::vector<Span> spans;
    bool inside = false;
    for (int i = 0; i <= steps; ++i) {
        const double t = length * i / steps;
        const bool hit = path.contains(from + way * (t / length));
        if (hit && !inside)
            spans.push_back({t, t});
        if (hit)
            spans.back().To = t;
        inside = hit;
    }
    return spans;
}

// The vertical middle of a note head on the vertical line x: from the first ink from the top,
// all ink within 1.2 gaps of it, which a head never exceeds and flags and stems do.
double HeadMiddle(const QPainterPath& path, double x)
{
    const QRectF bounds = path.boundingRect();
    const std::vector<Span> spans = Ink(path, {x, bounds.top() - kU}, {x, bounds.bottom() + kU});
    if (spans.empty())
        return 0;
    const double top = spans.front().From;
    double bottom = top;
    for (const Span& s : spans)
        if (s.To <= top + 2.4 * kU)
            bottom = s.To;
    return bounds.top() - kU + (top + bottom) / 2;
}

// The horizontal middle of the first ink from the left on the horizontal line y.
double FirstInkMiddleAcross(const QPainterPath& path, double y)
{
    const QRectF bounds = path.boundingRect();
    const std::vector<Span> spans = Ink(path, {bounds.left() - kU, y}, {bounds.right() + kU, y});
    return spans.empty() ? 0 : bounds.left() - kU + (spans.front().From + spans.front().To) / 2;
}

// The box of a single note (CNoteEx::Draw): one gap high, from half a unit above its position.
RectF NoteBox(int pitch) { return {kLeft, kTop + pitch * 2 * kU * 0.5f - 2 * kU * 0.25f, 4 * kU, 2 * kU}; }

// The box of a gracenote of a movement (CNoteEx::AddGraceHead, not large) in a cell of width w.
RectF GraceBox(int pitch, float w)
{
    const float gap = 2 * kU;
    const RectF cell{kLeft, (pitch - 2) * gap * 0.5f + kTop, w, gap};
    return {cell.X + w * 0.125f, cell.Y + gap * 0.4f, w * 0.75f, gap * 0.75f};
}

struct Drawn {
    QPainterPath Path;
    float Width;
    double CentreX;
};

Drawn Draw(char16_t code, const RectF& box)
{
    Drawn d{{}, 0, box.X + box.Width / 2.0};
    d.Width = CScoChar(code).AddToPath(d.Path, box);
    return d;
}

QRectF Ink(char16_t code, const RectF& box) { return Draw(code, box).Path.boundingRect(); }

constexpr char16_t kMelodyNotes[] = {36, 37, 38, 39, 40, 41, 120, 34};
constexpr char16_t kStemDown[] = {37, 38, 39, 40, 41, 120};

TEST(GlyphPlacement, NoteHeadsCentreOnTheirPitch)
{
    std::vector<char16_t> codes(std::begin(kMelodyNotes), std::end(kMelodyNotes));
    codes.insert(codes.end(), {43, 74}); // small notes standing alone in a bar
    for (const char16_t code : codes) {
        for (int pitch = 3; pitch <= 11; ++pitch) {
            SCOPED_TRACE(testing::Message() << "code " << int(code) << ", pitch " << pitch);
            const Drawn d = Draw(code, NoteBox(pitch));
            EXPECT_NEAR(HeadMiddle(d.Path, d.CentreX), Position(pitch), kTolerance);
        }
    }
}

TEST(GlyphPlacement, GracenoteHeadsCentreOnTheirPitchInAMovement)
{
    // A movement's cell is a little wider than two stave units; the stems and ledger lines of
    // the group meet each head at (pitch - 1) u + u.
    for (const char16_t code : {33, 75}) {
        for (int pitch = 3; pitch <= 11; ++pitch) {
            SCOPED_TRACE(testing::Message() << "code " << int(code) << ", pitch " << pitch);
            const Drawn d = Draw(code, GraceBox(pitch, 2.2f * kU));
            EXPECT_NEAR(HeadMiddle(d.Path, d.CentreX), Position(pitch), kTolerance);
        }
    }
}

TEST(GlyphPlacement, StemsStandOnTheHeadEdgesThatGroupsDrawStemsAt)
{
    // Groups draw melody stems centred on the head's left edge, centre - width / 2, and
    // gracenote stems on its right edge; the stems inside the glyphs must meet the same lines.
    for (const char16_t code : kStemDown) {
        SCOPED_TRACE(testing::Message() << "code " << int(code));
        const Drawn d = Draw(code, NoteBox(7));
        EXPECT_NEAR(FirstInkMiddleAcross(d.Path, Position(7 + 1.5)), d.CentreX - d.Width / 2, kTolerance);
    }
    // Above a small head and below the flags only the stem stands.
    for (const Drawn& d : {Draw(43, NoteBox(7)), Draw(74, NoteBox(7)), Draw(75, GraceBox(7, 2.2f * kU))}) {
        EXPECT_NEAR(FirstInkMiddleAcross(d.Path, Position(7 - 0.75)), d.CentreX + d.Width / 2, kTolerance);
    }
}

TEST(GlyphPlacement, BareHeadsAreAsWideAsTheWidthTheyReport)
{
    for (const Drawn& d : {Draw(34, NoteBox(9)), Draw(33, GraceBox(9, 2.2f * kU))}) {
        const QRectF ink = d.Path.boundingRect();
        EXPECT_NEAR(ink.left(), d.CentreX - d.Width / 2, kTolerance);
        EXPECT_NEAR(ink.right(), d.CentreX + d.Width / 2, kTolerance);
    }
}

// The clef's rectangle from the stave's header layout and the box its drawing puts the glyph in.
RectF ClefBox(int shift)
{
    const RectF bounds{kLeft, kTop + 4 * kU, kStaveHeight / 3.8f, kStaveHeight * 0.7f};
    const float gap = 2 * bounds.Height / 19;
    return {bounds.X, bounds.Y + gap / 2.1f * shift, bounds.Width, gap};
}

TEST(GlyphPlacement, TrebleClefCurlsRoundTheGLine)
{
    // Engraved, the clef reaches 4.78 gaps above the line its curl turns round and 2.54 below.
    const QRectF ink = Ink(48, ClefBox(9));
    EXPECT_NEAR(ink.top(), Position(11 - 2 * 4.78), 0.05 * kU);
    EXPECT_NEAR(ink.bottom(), Position(11 + 2 * 2.54), 0.05 * kU);
}

TEST(GlyphPlacement, BassClefDotsStandEitherSideOfTheFLine)
{
    const QList<QPolygonF> parts = Draw(204, ClefBox(2)).Path.toSubpathPolygons();
    ASSERT_EQ(parts.size(), 3);
    std::vector<double> middles;
    for (const QPolygonF& part : parts)
        if (part.boundingRect().height() < kU)
            middles.push_back(part.boundingRect().center().y());
    ASSERT_EQ(middles.size(), 2u);
    std::sort(middles.begin(), middles.end());
    EXPECT_NEAR(middles[0], Position(6), kTolerance);
    EXPECT_NEAR(middles[1], Position(8), kTolerance);
}

TEST(GlyphPlacement, KeySignatureSharpsStandOnFAndC)
{
    // The key signature's rectangle and its two boxes, as the stave header and CKeySig lay them out.
    const RectF bounds{kLeft, kTop, kStaveHeight * 0.5f, kStaveHeight * 1.7f};
    const float gap = 2 * bounds.Height / 19;
    const float step = gap / 1.9f;
    const float height = gap * 0.65f;
    const QRectF onF = Ink(64, {bounds.X, bounds.Y + 2 * step + gap / 5, bounds.Width, height});
    const QRectF onC = Ink(64, {bounds.X + bounds.Width * 0.25f, bounds.Y + 4 * step, bounds.Width, height});
    // One glyph serves both boxes, which stand 0.1u closer than F and C: each is 0.05u out.
    EXPECT_NEAR(onF.center().y(), Position(5), 0.06 * kU);
    EXPECT_NEAR(onC.center().y(), Position(8), 0.06 * kU);
}

TEST(GlyphPlacement, TimeSignatureFillsTheHalvesOfTheStave)
{
    const float g = 2 * kU / 1.8f;
    for (char16_t digit = 49; digit <= 58; ++digit) {
        SCOPED_TRACE(testing::Message() << "code " << int(digit));
        const QRectF upper = Ink(digit, {kLeft, kTop + 7.5f * kU, 4 * kU, g});
        const QRectF lower = Ink(digit, {kLeft, kTop + 11.5f * kU, 4 * kU, g});
        EXPECT_NEAR(upper.center().y(), Position(7), 0.05 * kU);
        EXPECT_NEAR(lower.center().y(), Position(11), 0.05 * kU);
        EXPECT_NEAR(upper.height(), 4 * kU, 0.05 * kU);
    }
    for (char16_t symbol : {46, 47}) {
        const QRectF ink = Ink(symbol, {kLeft, kTop + 7.5f * kU + g / 2.5f, 4 * kU, g * 1.2f});
        EXPECT_NEAR(ink.center().y(), Position(9), 0.05 * kU);
    }
}

TEST(GlyphPlacement, AbbreviationMarksAreDistinctAndCentredInTheirBox)
{
    const RectF box{kLeft, kTop, 5 * kU, 0.0242f};
    std::vector<QPainterPath> marks;
    std::vector<char16_t> codes{0x178};
    for (char16_t code = 0xA0; code <= 0xAB; ++code)
        codes.push_back(code);
    for (const char16_t code : codes) {
        SCOPED_TRACE(testing::Message() << "code " << int(code));
        const Drawn d = Draw(code, box);
        ASSERT_FALSE(d.Path.isEmpty());
        const QRectF ink = d.Path.boundingRect();
        EXPECT_NEAR(ink.center().x(), d.CentreX, 0.001);
        EXPECT_NEAR(ink.center().y(), box.Y + box.Height / 2, 0.001);
        for (const QPainterPath& other : marks)
            EXPECT_FALSE(other == d.Path);
        marks.push_back(d.Path);
    }
}

} // namespace
} // namespace corrieval
