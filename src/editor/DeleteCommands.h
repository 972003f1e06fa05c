#pragma once

#include <vector>

namespace corrieval {

class CBarEx;
class CCorrievalDoc;
class CScoObj;
class CScoSelection;

// "Delete" on what a view has selected, in its three cases: one bar takes its whole column of
// the system with it (and its repeat first), a page goes after a question, and anything else is
// taken out of its parent, a repeat marker out of its area. Tied notes are never deleted on
// their own: the piper unties them first, so that no tie is left pointing at a note that is
// gone. Notes that go with their bar, area or page leave their ties with them.

// A selected note, or a note of a selected beamed group, is tied.
bool HoldsTiedNotes(const std::vector<CScoObj*>& selection);
// The dispatcher of the three cases; the selection is empty afterwards unless it was refused.
void DeleteSelected(CScoSelection& selection, CCorrievalDoc& doc);
// Takes every selected object out of its parent, deleting it; with `destroy` a selected page
// goes too. Refused with a message when tied notes are selected. Returns whether it ran.
bool DeleteSelection(CScoSelection& selection, CCorrievalDoc& doc, bool destroy);
// Removes the bar's column from its system; a system keeps its last column.
void DeleteBar(CScoSelection& selection, CCorrievalDoc& doc, CBarEx& bar);
// Frees every tied note under `root` from its tie.
void UntieWithin(CScoObj& root, CCorrievalDoc& doc);

} // namespace corrieval
