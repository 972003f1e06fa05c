#pragma once

#include <vector>

namespace corrieval {

class CNoteBase;
class CScoObj;

// Walking a stave item by item, as the arrow keys do: the notes and movements of each bar in the
// order they stand, the notes of a beamed group one by one, on into the next bar and from the
// end of a line to the same stave of the next system. Empty bars are passed over.

// The item after `from` (a note item, or a bar: its first item), or null at the end of the area.
CNoteBase* NextItem(CScoObj& from);
// The item before `from` (a bar: the last item before it), or null at the start of the area.
CNoteBase* PreviousItem(CScoObj& from);

// Moves every selected note, and every note of a selected beamed group, `steps` stave positions
// (negative is higher), each kept within High A and Low G. Returns whether any note moved.
bool MoveNotes(const std::vector<CScoObj*>& selection, int steps);

} // namespace corrieval
