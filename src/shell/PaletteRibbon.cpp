#include "shell/PaletteRibbon.h"

#include "editor/CommandIds.h"
#include "editor/MovementGalleries.h"
#include "shell/ribbon/RibbonGallery.h"

#include <algorithm>

namespace corrieval {

namespace {
// The item each gallery shows before any choice; in the shipped palettes a crotchet, the doubling
// on Low G, a taorluath and a dreo.
constexpr std::array<int, 4> kStartItems = {2, 0, 4, 10};
} // namespace

void FillPaletteGalleries(const MovementGalleries& palettes, const PaletteControls& galleries)
{
    const std::vector<PaletteGallery>& contents = palettes.Galleries();
    for (std::size_t g = 0; g < galleries.size() && g < contents.size(); ++g) {
        ribbon::RibbonGallery& gallery = *galleries[g];
        gallery.Clear();
        for (const PaletteButton& button : contents[g].Buttons)
            gallery.AddInkItem(button.Icon, button.Name);
        gallery.SetFace(kStartItems[g]);
    }
}

PaletteRange PaletteEntriesOf(const MovementGalleries& palettes, const PaletteControls& galleries,
                              int galleryId)
{
    const auto found = std::ranges::find(command::PaletteGalleries, galleryId);
    if (found == command::PaletteGalleries.end())
        return {};
    const auto g = static_cast<std::size_t>(found - command::PaletteGalleries.begin());
    if (g >= palettes.Galleries().size())
        return {};
    const int gallery = static_cast<int>(g);
    PaletteRange range;
    range.Count = static_cast<int>(palettes.Galleries()[g].Buttons.size());
    range.First = range.Count > 0 ? palettes.EntryIndex(gallery, 0) : 0;
    range.Chosen = palettes.EntryIndex(gallery, galleries[g]->Face());
    return range;
}

} // namespace corrieval
