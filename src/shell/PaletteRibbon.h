#pragma once

#include "editor/ViewHost.h"

#include <array>

namespace corrieval {

class MovementGalleries;

namespace ribbon {
class RibbonGallery;
}

using PaletteControls = std::array<ribbon::RibbonGallery*, 4>;

// Gives each of the Insert category's four galleries the pictures of its palette, named for
// their tool tips, and shows on each face the entry a piper reaches for first.
void FillPaletteGalleries(const MovementGalleries& palettes, const PaletteControls& galleries);

// The entries of the gallery of command `galleryId` and the one on its face; empty for any other
// command.
PaletteRange PaletteEntriesOf(const MovementGalleries& palettes, const PaletteControls& galleries,
                              int galleryId);

} // namespace corrieval
