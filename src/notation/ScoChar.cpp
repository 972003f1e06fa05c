#include "notation/ScoChar.h"

#include "model/Painter.h"
#include "notation/GlyphOutlines.h"

#include <QTransform>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CScoChar, CObject);

namespace {
// The em is 4.2 times the box height: callers pass a stave gap, so the font is drawn at 4.2 gaps
// whatever the zoom, and the music font is designed for that size.
constexpr float kEmPerBoxHeight = 4.2f;
// The advance over these factors is the width of a note's head, which places stems, beams and
// ledger lines; the bare gracenote head is set wider in the font and has its own factor.
constexpr float kHeadWidthFactor = 2.4f;
constexpr float kGraceHeadWidthFactor = 3.5f;
constexpr char16_t kGraceHead = 33;
} // namespace

float CScoChar::AddToPath(QPainterPath& path, const RectF& box) const
{
    GlyphOutlines& outlines = GlyphOutlines::Instance();
    const GlyphOutline& glyph = outlines.Find(Code);
    const float em = box.Height * kEmPerBoxHeight;
    const float anchorX = box.X + box.Width / 2;
    const float anchorY = box.Y + box.Height / 2;

    // Centred on the anchor: the advance horizontally, the line (ascent over descent) vertically.
    const float originX = anchorX - glyph.Advance * em / 2;
    const float baseline = anchorY + (outlines.Ascent() - outlines.Descent()) * em / 2;
    QTransform place(em, 0, 0, em, originX, baseline);
    if (Flip)
        place *= QTransform(-1, 0, 0, -1, 2 * qreal(anchorX), 2 * qreal(anchorY));

    if (!glyph.Path.isEmpty()) {
        // Overlapping contours of a note, its dot and its neighbours' heads fill as one.
        path.setFillRule(Qt::WindingFill);
        path.addPath(place.map(glyph.Path));
    }

    const float measured = glyph.Advance * em;
    return measured / (Code == kGraceHead ? kGraceHeadWidthFactor : kHeadWidthFactor);
}

float CScoChar::Advance(float boxHeight) const
{
    return GlyphOutlines::Instance().Find(Code).Advance * boxHeight * kEmPerBoxHeight;
}

void CScoChar::DrawGlyph(Painter& painter, const RectF& box, std::uint32_t argb) const
{
    QPainterPath path;
    AddToPath(path, box);
    if (path.isEmpty())
        return;
    painter.SetSmoothing(true);
    painter.FillPath(path, Brush::Solid(argb));
    painter.SetSmoothing(false);
}

} // namespace corrieval
