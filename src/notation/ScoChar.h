#pragma once

#include "model/Object.h"

#include <cstdint>

namespace corrieval {

// One symbol of the music font: a character code, 0 for none, and whether the outline is turned
// half round about the centre of its box.
class CScoChar : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    CScoChar() = default;
    explicit CScoChar(char16_t code) : Code(code) {}
    CScoChar(const CScoChar&) = default;
    CScoChar& operator=(const CScoChar& other)
    {
        Code = other.Code;
        Flip = other.Flip;
        return *this;
    }

    // Stored codes lose the flip: nothing in the score is drawn turned.
    void SetCode(char16_t code)
    {
        Code = code;
        Flip = false;
    }

    char16_t Code = 0;
    bool Flip = false;
};

} // namespace corrieval
