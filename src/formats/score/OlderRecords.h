#pragma once

#include "formats/archive/Archive.h"

namespace corrieval {

class CText;

// Records of the older Glenmarch document that its reader embeds by value, without tags.

// A heading text: rectangle, font, text and the words of the older layout. Reading upgrades the
// record to the current record version and rebuilds the font.
void SerializeText(CArchive& ar, CText& text);

} // namespace corrieval
