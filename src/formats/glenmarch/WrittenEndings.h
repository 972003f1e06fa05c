#pragma once

#include "notation/FixedNoteGroup.h"

#include <cstdint>
#include <vector>

namespace corrieval {

class CBarEx;
class CScoObj;
class CStaveArea;

// First and second time endings as a BWW tune writes them: each note says which section it is
// in, and a section may open and close anywhere in a bar. The conversion asks, note by note, for
// the repeat link the note plays with and says where it went; once the score is laid out, each
// pair of sections gets its bracket, with its legs at the bars or notes where the sections begin
// and end.
class WrittenEndings {
public:
    // Ids go on from those the conversion has given already.
    explicit WrittenEndings(std::int32_t lastId) : m_lastId(lastId) {}

    // The repeat link of a note written in `ending` (0 none, 1 first time, 2 second time) that
    // goes into `bar` of `area`. A first time, or a second time without one, opens a new pair.
    RepeatLink Enter(std::uint8_t ending, CStaveArea& area, CBarEx& bar);
    // The note or movement the last entered note became.
    void Placed(const CScoObj* object);
    // Adds a bracket for each pair to the area where it begins. Runs after the layout, which
    // moves notes within their bars.
    void AddMarkers() const;

    std::int32_t LastId() const { return m_lastId; }

private:
    // Where a section begins or ends: a bar, and the note there.
    struct Edge {
        CBarEx* Bar = nullptr;
        const CScoObj* Object = nullptr;
    };
    struct Pair {
        std::int32_t Id = 0;
        CStaveArea* Area = nullptr;
        Edge FirstStart;
        Edge SecondStart; // no bar when the tune wrote no second time
        Edge Last;
    };

    std::vector<Pair> m_pairs;
    std::int32_t m_lastId;
    std::uint8_t m_current = 0;
    Edge* m_waiting = nullptr; // the edge that the next placed note fixes
};

} // namespace corrieval
