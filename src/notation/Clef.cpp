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

void CClef::SetType(std::int32_t type)
{
    Type = type;
    Glyph.SetCode(GlyphFor(type, Glyph.Code));
}

} // namespace corrieval
