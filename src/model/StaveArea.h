#pragma once

#include "model/PageArea.h"
#include "notation/TimeSig.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace corrieval {

class CBarEx;
class CRepeatTiming;
class CStave;

// A page area that holds music: stave groups (systems) down the area, one stave per part in
// each group, bars along each stave. A part is a stave index, the same in every group.
class CStaveArea : public CPageArea {
    CORRIEVAL_DECLARE_CLASS()

public:
    using RepeatMarkerList = std::vector<std::unique_ptr<CRepeatTiming>>;

    CStaveArea();
    ~CStaveArea() override;

    bool IsMusicHolder() const override { return true; }

    CRepeatTiming* FindRepeatMarker(std::int32_t id) const;
    // The bar before `bar` on its stave; null for the first bar. It never looks into the system
    // above: a change of time signature ends with its stave.
    static CBarEx* PreviousBar(const CBarEx& bar);
    // The bar after `bar` on its stave, or after the last bar the first bar of the same part in
    // the next system; null at the end of the area.
    static CBarEx* NextBar(const CBarEx& bar);

    std::uint32_t Background = 0x64FFFFFF; // translucent white behind the staves
    std::int32_t PartCount = 0;
    std::int32_t StaveSpacing = 25;
    CTimeSig InitialTimeSig{1};
    RepeatMarkerList RepeatMarkers;
    bool ShowTimeSig = true;
    bool ShowKeySig = false;
    bool ShowBarLines = true;
};

// The legend of piobaireachd abbreviation marks: a stave area of one group of two staves, the
// mark written above and what it stands for played below. It never sounds.
class CAbbreviationArea : public CStaveArea {
    CORRIEVAL_DECLARE_CLASS()

public:
    CAbbreviationArea();

    CStave* WrittenStave = nullptr;
    CStave* PlayedStave = nullptr;
};

} // namespace corrieval
