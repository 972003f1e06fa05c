#pragma once

#include "formats/bww/BwwNoteGrid.h"

#include <cstdint>

namespace corrieval {
class CPipeDoc;
}

namespace corrieval::bww {

// What the parser knows of a part when it ends.
struct PartShape {
    std::int32_t Number = 1;
    std::int32_t Anacrusis = 2; // CPart::Anacrusis: 0 with an upbeat bar, 2 without
    bool FirstTime = false;     // a first-time ending was marked in the part
};

// Lays the gathered part out as the older program's records: a CPart, its bars placed by the
// document (four to a line, after a narrow upbeat bar if there is one), the notes of each row
// spaced evenly across its bar, beams, and ties. A tie may reach back to the last note of the
// bar before; one with no note before it is dropped.
void WritePart(CPipeDoc& doc, const NoteGrid& grid, const PartShape& shape);

} // namespace corrieval::bww
