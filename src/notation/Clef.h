#pragma once

#include "model/ScoObj.h"
#include "notation/ScoChar.h"

#include <cstdint>

namespace corrieval {

// The clef at the head of a stave: decoration only, since bagpipe music has a single key.
class CClef : public CScoObj {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum Kind : std::int32_t { None = 0, Treble = 1, Bass = 2 };

    // Sets the kind and, for the three known kinds, the glyph; another value keeps the glyph.
    void SetType(std::int32_t type);
    static char16_t GlyphFor(std::int32_t type, char16_t otherwise);
    void Draw(Painter& painter, OutputMode mode) override;

    CScoChar Glyph;
    std::int32_t Type = None;
};

// The key signature: always the two sharps of the chanter scale, never stored in a file.
class CKeySig : public CScoObj {
    CORRIEVAL_DECLARE_CLASS()

public:
    static constexpr char16_t SharpGlyph = 64;

    // The sharps of F and C, one above the other.
    void Draw(Painter& painter, OutputMode mode) override;

    CScoChar Glyph{SharpGlyph};
    std::int32_t Type = 1;
};

} // namespace corrieval
