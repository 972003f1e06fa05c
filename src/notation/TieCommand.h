#pragma once

#include <vector>

namespace corrieval {

class CCorrievalDoc;
class CNoteEx;
class CScoObj;

// The tie command on the selection, a toggle. When a selected note, or a note of a selected
// beamed group, is tied, its tie is undone and nothing else happens. Otherwise two notes of one
// pitch are tied, or any three as a triplet; anything else is refused with a warning. Returns
// whether the score changed, and marks the document modified when it did.
bool ToggleTie(const std::vector<CScoObj*>& selection, CCorrievalDoc& doc);

// Undoes the note's tie as a whole: every note of it goes free and the tie leaves the document.
// Taking out only this note would leave the others tied to nothing, and a tied note can be
// neither dragged nor deleted.
void Untie(CNoteEx& note, CCorrievalDoc& doc);

} // namespace corrieval
