#pragma once

#include <functional>

namespace corrieval {

class CBarEx;
class CCorrievalDoc;
class CRepeatTiming;

// First and second time brackets made and removed from one selected bar. A new marker brackets
// the bar as the first time and the bar after it (on the next system when the bar ends its
// stave) as the second; the piper drags its legs further afterwards.

// The bar starts no repeat yet, lies in a music area and has a bar after it.
bool CanInsertRepeat(const CBarEx& bar);
void InsertRepeat(CBarEx& bar, CCorrievalDoc& doc);
// The bar starts a repeat whose marker is still there.
bool CanDeleteRepeat(const CBarEx& bar);
// Takes the bar's marker away; its notes play on every pass again. The bar after keeps its role
// as a second-time bar.
void DeleteRepeat(CBarEx& bar, CCorrievalDoc& doc);
// The same for a marker selected by its line: it leaves its area and its bar.
void DeleteMarker(CRepeatTiming& marker, CCorrievalDoc& doc);
// Runs `change`, which adds notes (a paste, a drop), and gives each added note that stands in a
// first or second time bracket that section's stamp: without one it would play on both passes.
// Notes that were there before keep what they have, as an imported tune's notes do.
void StampNotesAddedBy(CCorrievalDoc& doc, const std::function<void()>& change);

} // namespace corrieval
