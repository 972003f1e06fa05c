#pragma once

#include <QIcon>
#include <QString>
#include <memory>
#include <vector>

namespace corrieval {

class CNoteBase;
struct PaletteEntry;

// One button of a gallery: the entry's name (also its tooltip), its picture, and its index among
// the entries of all four galleries, which addresses the prototype.
struct PaletteButton {
    QString Name;
    QIcon Icon;
    int EntryIndex = -1;
};

struct PaletteGallery {
    QString Name; // "Notes", "Doublings", "Embellishments" or "Piobaireachd"
    std::vector<PaletteButton> Buttons;
};

// The note and movement galleries, built once at start from the definitions in the settings
// store: each entry becomes a prototype (a note, or a movement of gracenotes) and a picture drawn
// from it. Picking an entry makes its prototype the ghost that follows the mouse; a clone of it
// is what enters the score, so the views share the prototypes and never change them.
class MovementGalleries {
public:
    // Sizes of the pictures: small and large ribbon buttons, and the gallery's grid.
    static constexpr int IconSizes[] = {16, 32, 64};

    // Reads the four palettes, each in the order of its entries' "ToolbarIndex". A palette that
    // is missing from the store gives an empty gallery.
    MovementGalleries();
    ~MovementGalleries();
    MovementGalleries(const MovementGalleries&) = delete;
    MovementGalleries& operator=(const MovementGalleries&) = delete;

    // In the ribbon's order.
    const std::vector<PaletteGallery>& Galleries() const { return m_galleries; }
    int EntryCount() const { return static_cast<int>(m_prototypes.size()); }
    // The entry index of the `item`th button of gallery `gallery`, or -1 outside it.
    int EntryIndex(int gallery, int item) const;
    // The gallery that holds the entry, or -1: the ribbon lights the gallery in use.
    int GalleryOf(int entryIndex) const;
    // The prototype of an entry; null outside the entries.
    CNoteBase* Prototype(int entryIndex) const;

    // The prototype an entry defines: a movement when it has note positions, else the plain note
    // of its first character (character 0 when it has none).
    static std::unique_ptr<CNoteBase> MakePrototype(const PaletteEntry& entry);
    // The prototype drawn on transparent squares of each of IconSizes, as a gallery shows it.
    static QIcon DrawIcon(CNoteBase& prototype, bool drawStave);

private:
    std::vector<PaletteGallery> m_galleries;
    std::vector<std::unique_ptr<CNoteBase>> m_prototypes;
};

} // namespace corrieval
