#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace corrieval::bww {

// The notes of one part as the parser gathers them, a row per bar. Its size is that of the older
// program's grid, which had no bounds of its own: here a bar or a part too long is refused, and
// the caller told so, rather than written past the end.
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
    };

    // Opens the next bar. False, with nothing opened, when the part already has MaxRows bars:
    // what follows up to the next bar is dropped.
    bool NewRow();
    // Adds a slot to the open bar; false when there is none or it is full.
    bool Add(const Slot& slot);
    // The slot `back` places before the end of the open bar (1 the last), or null.
    Slot* Previous(std::size_t back);

    std::size_t RowCount() const { return m_rows; }
    std::span<const Slot> Row(std::size_t row) const { return {m_grid[row].data(), m_used[row]}; }
    void Clear();

private:
    std::array<std::array<Slot, MaxSlots>, MaxRows> m_grid{};
    std::array<std::size_t, MaxRows> m_used{};
    std::size_t m_rows = 0;
    bool m_rowOpen = false;
};

} // namespace corrieval::bww
