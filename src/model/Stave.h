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
class CBarEx;

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
    virtual float GetStaveLineWidth() const { return GetBounds().Height / 200; }

    // Places clef, key and time signature at the head and reserves their room as the left
    // margin, whether or not the time signature is shown on this stave.
    void LayoutHeader(bool showKey);
    // With `even`, gives every bar the same width side by side; with `space` as well, spaces
    // the notes of each bar.
    void LayoutBars(bool even, bool space);
    // Gives each bar a width in proportion to what its items need, the bars together filling
    // the stave, and spaces the notes of each: dense bars get room and sparse bars give it.
    void LayoutBarsByContent();
    // A new bar of the column at `index` (at the end when `index` is the bar count).
    CBarEx* InsertBar(std::size_t index, CBarConfig* config);
    void RemoveBar(std::size_t index, bool relayout);

    // The bars keep their shares of the content width.
    void AfterBoundsChange(const RectF& oldBounds) override;
    void Draw(Painter& painter, OutputMode mode) override;

    CClef Clef;
    CTimeSig TimeSig;
    CKeySig KeySig;

private:
    bool ShowsKeySig() const;
};

// One system: the staves that sound together, one per part, and the configurations of its bar
// columns.
class CStaveGroup : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    using ConfigList = std::vector<std::unique_ptr<CBarConfig>>;
    enum StartLine : std::int32_t { StartRepeatLine = 12, StartPlainLine = 13 };
    enum EndLine : std::int32_t { EndRepeatLine = 2, EndPlainLine = 3 };

    CStaveGroup();
    ~CStaveGroup() override;

    void SetStaveCount(std::size_t count);
    void InsertBarColumn(std::size_t index);
    // A group always keeps one column. With `relayout` the spacing of the whole area returns to
    // the standard, whether or not a column went.
    void RemoveBarColumn(std::size_t index, bool relayout);
    // Shares the height among the staves, with room above and below from Spacing.
    void LayoutStaves();
    // `column` counts from 1.
    void SetBarLines(std::size_t column, std::int32_t startType, std::int32_t endType);
    // The bar at the column keeps its right edge; the bar before it takes up the difference.
    void SetBarWidth(std::size_t column, float width);
    // Drags the line at the start of `bar` to x in every stave of the group.
    void MoveBarLine(const CBarEx& bar, float x);

    void AfterBoundsChange(const RectF& oldBounds) override;
    void OnChildRemoved(CScoObj* object) override;

    ConfigList BarConfigs;
    std::int32_t Spacing = 0; // percent of room above and below; not stored
};

} // namespace corrieval
