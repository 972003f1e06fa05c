#pragma once

#include "formats/glenmarch/PipeRecords.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace corrieval::bww {

// The notes of one part as the parser gathers them, a row per bar. Its size is that of the older
// program's grid, which had no bounds of its own: here a part too long is refused, and the caller
// told so, rather than written past the end. A bar is held to the older grid's 32 slots only when
// the grid is bounded, as the strict reading wants it; unbounded, it keeps every item of the bar,
// and the score splits a bar too wide for a line.
class NoteGrid {
public:
    static constexpr std::size_t MaxRows = 24;
    static constexpr std::size_t MaxSlots = 32;

    struct Slot {
        std::int32_t Code = 0; // 0: empty
        std::int32_t Pitch = 0;
        bool Beamed = false;
        bool BeamGoesOn = false; // true for a beam's r note, false for its l note that closes it
        bool Tied = false;
        bool Dotted = false;
        bool Triplet = false;    // one of three melody notes played as a triplet
        bool Paused = false;     // under a pause sign
        std::uint8_t Ending = 0; // 1 inside a first-time section, 2 inside a second-time one
    };
    // The lines the tune draws at the two ends of a bar.
    struct Edges {
        CBar::Edge Start = CBar::Edge::Plain;
        CBar::Edge End = CBar::Edge::Plain;
    };

    explicit NoteGrid(bool bounded) : m_bounded(bounded) {}

    // Opens the next bar, which starts with `start`. False, with nothing opened, when the part
    // already has MaxRows bars: what follows up to the next bar is dropped.
    bool NewRow(CBar::Edge start = CBar::Edge::Plain);
    // The next bar opened begins one of the tune's stave lines.
    void MarkLineStart() { m_lineStartPending = true; }
    // Sets the line at the start of the open bar, or at the end of the last bar.
    void SetStart(CBar::Edge edge);
    void SetEnd(CBar::Edge edge);
    // Adds a slot to the open bar; false when there is none, or it is full and the grid bounded.
    bool Add(const Slot& slot);
    // The slot `back` places before the end of the open bar (1 the last), or null. Once the bar
    // has refused a slot it is null: a dot or tie written then belongs to a note left out.
    Slot* Previous(std::size_t back);
    // Takes back the last bar if nothing went into it.
    void DropEmptyLast();

    std::size_t RowCount() const { return m_rows; }
    // The slots in the open bar so far.
    std::size_t OpenRowSize() const { return m_rowOpen ? m_grid[m_rows - 1].size() : 0; }
    std::span<const Slot> Row(std::size_t row) const { return m_grid[row]; }
    const Edges& RowEdges(std::size_t row) const { return m_edges[row]; }
    bool StartsLine(std::size_t row) const { return m_startsLine[row]; }
    void Clear();

private:
    // Rows keep their room from part to part.
    std::array<std::vector<Slot>, MaxRows> m_grid;
    std::array<Edges, MaxRows> m_edges{};
    std::array<bool, MaxRows> m_startsLine{};
    std::size_t m_rows = 0;
    bool m_rowOpen = false;
    bool m_rowFull = false; // the open bar has refused a slot
    bool m_lineStartPending = false;
    bool m_bounded;
};

} // namespace corrieval::bww
