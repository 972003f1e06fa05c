#pragma once

#include "formats/archive/Archive.h"

namespace corrieval {

class CCorrievalDoc;

// The records of the score file, one per class, each the same sequence of fields in both
// directions. ScoreClasses() lists every class a score stream may name with its record.
const ArchiveClassTable& ScoreClasses();

// The root record: the whole file is this record, without a tag.
void SerializeDocument(CArchive& ar, CCorrievalDoc& doc);

} // namespace corrieval
