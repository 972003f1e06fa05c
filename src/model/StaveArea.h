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
    // The room above and below each system, in percent, that every re-layout returns to.
    static constexpr std::int32_t StandardSpacing = 35;

    CStaveArea();
    ~CStaveArea() override;

    bool IsMusicHolder() const override { return true; }

    // Adds or removes systems at the end.
    void SetGroupCount(std::size_t count);
    // Gives every system `count` staves.
    void SetPartCount(std::int32_t count);
    // A new area gets about one system per inch of height and one bar per 1.67 inches of width.
    void FillDefaultContent();
    // The systems share the content height equally and return to the standard spacing.
    virtual void Relayout();
    // Re-stacks the systems, and with `even` gives every bar of a stave the same width; with
    // `space` as well, spaces the notes of every bar.
    virtual void AutoOrganiseArea(bool even, bool space);
    void RefitContent() override { AutoOrganiseArea(true, true); }
    void SetClef(std::size_t part, std::int32_t kind);

    // Takes the marker with the next free id.
    CRepeatTiming* AddRepeatMarker(std::unique_ptr<CRepeatTiming> marker);
    // Hands the marker back without deleting it.
    std::unique_ptr<CRepeatTiming> RemoveRepeatMarker(CRepeatTiming* marker);
    CRepeatTiming* FindRepeatMarker(std::int32_t id) const;
    // The first marker whose legs, line or texts, as last drawn, lie under the point.
    CRepeatTiming* RepeatMarkerAt(float x, float y) const;
    // The bar before `bar` on its stave; null for the first bar. It never looks into the system
    // above: a change of time signature ends with its stave.
    static CBarEx* PreviousBar(const CBarEx& bar);
    // The bar after `bar` on its stave, or after the last bar the first bar of the same part in
    // the next system; null at the end of the area.
    static CBarEx* NextBar(const CBarEx& bar);

    std::unique_ptr<CPageArea> Clone() const override;
    void AfterBoundsChange(const RectF& oldBounds) override;
    void OnChildRemoved(CScoObj* object) override;
    void Draw(Painter& painter, OutputMode mode) override;

    std::uint32_t Background = 0x64FFFFFF; // translucent white behind the staves
    std::int32_t PartCount = 0;
    std::int32_t StaveSpacing = 25;
    CTimeSig InitialTimeSig{1};
    RepeatMarkerList RepeatMarkers;
    bool ShowTimeSig = true;
    bool ShowKeySig = false;
    bool ShowBarLines = true;

private:
    void UpdateMinimumHeight();
};

} // namespace corrieval
