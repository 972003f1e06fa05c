#pragma once

#include <memory>

namespace corrieval {

class CCorrievalDoc;
class CPipeDoc;

// Turns an older tune (a ".glm" file, or a BWW or BMW file gathered into a CPipeDoc) into a
// score: the three headings, music areas page by page, a system for each older line with bars
// sized after the older columns, the notes, beams, movements and ties, and the first and second
// time endings. `fromText` is true for BWW and BMW tunes, whose beamed values are written
// differently. The source is changed on the way: its headings lose their line breaks and its
// type word is left in lower case.

// Into `target`, on its last page and on pages added after it.
void ConvertPipeDoc(CPipeDoc& source, CCorrievalDoc& target, bool fromText);

// The imports' path: into the document of the active view, which is then redrawn. Without an
// active view nothing happens. The source is used up either way.
void ConvertIntoActiveView(std::unique_ptr<CPipeDoc> source, bool fromText);

// Without a window: into a new document of its own, as the command-line tool converts.
std::unique_ptr<CCorrievalDoc> ConvertToNewDocument(CPipeDoc& source, bool fromText);

} // namespace corrieval
