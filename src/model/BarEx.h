#pragma once

#include "model/GraphObjContainer.h"
#include "notation/TimeSig.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace corrieval {

class CBarConfig;
class CNoteBase;
class CRepeatTiming;

// One bar on one stave. Its children are the notes, beamed groups and movements in it. It draws
// its own bar lines, repeat dots and change of time signature, keeps its notes in place when it
// is resized, spaces them on request, and can colour itself by checking its note values against
// the time signature.
class CBarEx : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    // "Check values" fills, all with alpha 50 so the notes show through.
    static constexpr std::uint32_t ShortColour = 0x32FFFF00;
    static constexpr std::uint32_t ExactColour = 0x3200FF00;
    static constexpr std::uint32_t OverColour = 0x32FF0000;
    static constexpr std::uint32_t SelectedFill = 0x280000FF;

    CBarEx() = default;
    explicit CBarEx(CBarConfig* config) : Config(config) {}

    bool IsSelectable() const override { return true; }
    bool IsMusicHolder() const override { return true; }

    // Inserts in front of the first child that stands further right, so an item at the same X
    // as another goes behind it. Null is ignored.
    virtual CScoObj* AddNoteSorted(std::unique_ptr<CScoObj> object);
    virtual CScoObj* AppendNote(std::unique_ptr<CScoObj> object);
    // Same rectangle, configuration, marker and colours; no notes, and margins clear.
    virtual std::unique_ptr<CBarEx> Clone() const;

    // Centres the item on x, kept inside the content box, over the bar's height; a note takes
    // its pitch from y.
    void PlaceItem(CNoteBase& item, float x, float y);
    // The item lies across the content box, edges included, and within the bar's height.
    bool ContainsItem(const CScoObj& item) const;
    // Whether the point grabs this bar's left line; the first bar of a stave has none to grab.
    bool HitBarLine(float x, float y) const;
    // The bar's own change of signature, else the latest one earlier on the stave, else the
    // area's. A change never carries into the next system.
    CTimeSig GetActiveTimeSig() const;
    // "Check values": with `on`, colours the bar by comparing its note values with a full bar,
    // and returns false; otherwise, or when there is nothing to check, returns true.
    bool UpdateValueColour(bool on, bool redraw);
    // Margins follow from the stave: the content box runs from the top to the bottom stave
    // line, inset for heavy lines and for a change of time signature.
    void RecalcMargins();

    void BeforeBoundsChange(const RectF& newBounds) override;
    // Spaces the notes evenly, a gracenote or movement close to the note after it.
    void AutoOrganise() override;
    // The width at which AutoOrganise keeps items this wide in all apart by the least gap that
    // still shows a gracenote or movement apart from its note, even at an end of the stave.
    static float NeededWidth(float itemWidths, std::size_t itemCount);
    // What the spacing places one by one: single notes and movements as they are, the members
    // of a beamed group each on its own.
    std::vector<CNoteBase*> SpacedItems() const;
    // That width for the items the bar holds, with its margins as they stand.
    float NeededWidth() const;
    // Puts notes marked by paste behind those already there, then spaces them all.
    void RefitContent() override;
    void Draw(Painter& painter, OutputMode mode) override;

    CBarConfig* Config = nullptr;          // the column's configuration, owned by the stave group
    CRepeatTiming* RepeatTiming = nullptr; // the marker that starts at this bar, owned by the area
    std::uint32_t Colour = 0xFF000000;     // fill while note values are being checked
    bool UseBackground = true;             // fill with the area's background instead of Colour

protected:
    // Clone's copy: the container's copy constructor takes the rectangle and no children.
    CBarEx(const CBarEx& other) = default;
};

} // namespace corrieval
