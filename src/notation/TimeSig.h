#pragma once

#include "model/ScoObj.h"
#include "notation/ScoChar.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace corrieval {

class CStave;

// A time signature: one of the seventeen fixed kinds of the signature list, or a custom one.
// The glyphs are the digits drawn on the upper and lower lines of the stave.
class CTimeSig : public CScoObj {
    CORRIEVAL_DECLARE_CLASS()

public:
    static constexpr std::int32_t None = 0;
    static constexpr std::int32_t Custom = 17;

    CTimeSig() : CTimeSig(None) {}
    explicit CTimeSig(std::int32_t type);
    CTimeSig(const CTimeSig&) = default;
    CTimeSig& operator=(const CTimeSig& other);

    // Stores the type and takes the glyphs from the table; a type past the table keeps them.
    void SetType(std::int32_t type);
    std::int32_t GetBeats() const;
    std::int32_t GetBeatUnit() const;

    // On a stave the digits fill the upper and lower halves of the stave; without one (the
    // signature list's pictures) they are laid out in the box.
    void Draw(Painter& painter, OutputMode mode) override;

    static std::string_view TypeName(std::int32_t type);
    // The signature named by a character of the older file formats.
    static std::int32_t TimeSigFromChar(char16_t c);

    std::int32_t Type = None;
    bool Symbol = false;
    CStave* Stave = nullptr; // the stave at whose head this signature stands, if any
    std::array<CScoChar, 2> UpperGlyphs;
    std::array<CScoChar, 2> LowerGlyphs;
    std::int32_t CustomBeats = 4;
    std::int32_t CustomUnit = 4;
};

} // namespace corrieval
