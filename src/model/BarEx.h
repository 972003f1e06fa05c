#pragma once

#include "model/GraphObjContainer.h"

#include <cstdint>

namespace corrieval {

class CBarConfig;
class CRepeatTiming;

// One bar on one stave. Its children are the notes and note groups in it.
class CBarEx : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    CBarEx() = default;
    explicit CBarEx(CBarConfig* config) : Config(config) {}

    bool IsSelectable() const override { return true; }
    bool IsMusicHolder() const override { return true; }

    CBarConfig* Config = nullptr;           // the column's configuration, owned by the stave group
    CRepeatTiming* RepeatTiming = nullptr; // the marker that starts at this bar, owned by the area
    std::uint32_t Colour = 0xFF000000;     // fill while note values are being checked
    bool UseBackground = true;             // fill with the area's background instead of Colour
};

} // namespace corrieval
