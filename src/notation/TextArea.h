#pragma once

#include "model/PageArea.h"
#include "notation/LogFont.h"

#include <QString>

#include <cstdint>

namespace corrieval {

// A page area of free text: titles, composer, notes to the player.
class CTextArea : public CPageArea {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum Alignment : std::int32_t { Left = 0, Centre = 1, Right = 2 };

    CTextArea();

    LogFont Font;               // height in hundredths of an inch at 100% zoom, negative
    std::uint32_t Colour = 0;   // Windows colour value 0x00BBGGRR
    QString Text;
    std::int32_t Alignment = Centre;
};

} // namespace corrieval
