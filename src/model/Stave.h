#pragma once

#include "model/GraphObjContainer.h"
#include "notation/Clef.h"
#include "notation/TimeSig.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace corrieval {

class CBarConfig;

// One stave of a system: the five lines with clef, key and time signature at its head, and its
// bars as children.
class CStave : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    static constexpr int GridSize = 20;
    using Grid = std::array<float, GridSize>;

    CStave();
    CStave(const CStave&) = delete;

    // The vertical grid of the stave, measured from the top of its content box: 20 positions one
    // stave unit (content height / 19) apart. The five lines lie at 5, 7, 9, 11 and 13, and a
    // pitch is a position. Recomputed on every call, since its inputs change at any hook.
    Grid Positions() const;

    CClef Clef;
    CTimeSig TimeSig;
    CKeySig KeySig;
};

// One system: the staves that sound together, one per part, and the configurations of its bar
// columns.
class CStaveGroup : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    using ConfigList = std::vector<std::unique_ptr<CBarConfig>>;

    CStaveGroup();
    ~CStaveGroup() override;

    ConfigList BarConfigs;
    std::int32_t Spacing = 0; // percent of room above and below; not stored
};

} // namespace corrieval
