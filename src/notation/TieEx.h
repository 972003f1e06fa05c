#pragma once

#include "model/ScoObj.h"

#include <cstdint>
#include <vector>

namespace corrieval {

class CNoteEx;

// A tie or triplet slur over two or more notes. Ties belong to the document, not to a bar,
// because one may run over bars, staves and pages; notes name their tie by Id in the file.
class CTieEx : public CScoObj {
    CORRIEVAL_DECLARE_CLASS()

public:
    // Joins a note; a note keeps the first tie it ever joined. The figure follows the count:
    // 2 and 3 notes show 2 and 3, from four on one less than the count.
    void AddNote(CNoteEx* note);

    std::vector<CNoteEx*> Notes; // not owned, in the order of joining
    std::int32_t TieValue = 2;
    std::int32_t Id = 0;
};

} // namespace corrieval
