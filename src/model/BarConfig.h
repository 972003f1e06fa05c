#pragma once

#include "model/Object.h"
#include "notation/TimeSig.h"

#include <cstdint>

namespace corrieval {

// What the bars at one position of all the staves of a system share: their bar lines, repeat
// role and any change of time signature. Owned by the stave group; the bars point at it.
class CBarConfig : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    enum Ending : std::uint8_t { NoEnding = 0, FirstTime = 1, SecondTime = 2 };

    bool StartRepeat = false;
    bool EndRepeat = false;
    bool StartBarLine = false;
    bool EndBarLine = false;
    std::uint8_t RepeatEnding = NoEnding;
    CTimeSig TimeSig{CTimeSig::None}; // type None: no change of signature at this bar
};

} // namespace corrieval
