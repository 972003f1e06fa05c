#include "notation/Clef.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CClef, CScoObj);
CORRIEVAL_IMPLEMENT_CLASS(CKeySig, CScoObj);

char16_t CClef::GlyphFor(std::int32_t type, char16_t otherwise)
{
    switch (type) {
    case None: return 0;
    case Treble: return 48;
    case Bass: return 204;
    default: return otherwise;
    }
}

namespace {
constexpr std::uint32_t kBlack = 0xFF000000;
}

void CClef::Draw(Painter& painter, OutputMode)
{
    // The box is one stave gap high, moved down the stave so that the glyph's reference point
    // lands on its line: the curl of the treble clef on G, the dots of the bass clef about F.
    const RectF b = Bounds();
    const float gap = 2 * b.Height / 19;
    float shift = 0;
    float x = b.X;
    if (Type == Treble) {
        shift = 9;
    } else if (Type == Bass) {
        shift = 2;
        x += b.Width * 0.1f;
    }
    Glyph.DrawGlyph(painter, {x, b.Y + gap / 2.1f * shift, b.Width, gap}, kBlack);
}

void CKeySig::Draw(Painter& painter, OutputMode)
{
    const RectF b = Bounds();
    const float gap = 2 * b.Height / 19;
    const float step = gap / 1.9f;
    const bool chanterKey = Type == 1;
    const float height = gap * 0.65f;
    Glyph.DrawGlyph(painter, {b.X, b.Y + (chanterKey ? 2 * step : 0) + gap / 5, b.Width, height}, kBlack);
    Glyph.DrawGlyph(painter, {b.X + b.Width * 0.25f, b.Y + (chanterKey ? 4 * step : 0), b.Width, height}, kBlack);
}

void CClef::SetType(std::int32_t type)
{
    Type = type;
    Glyph.SetCode(GlyphFor(type, Glyph.Code));
}

} // namespace corrieval
