#pragma once

#include <QAction>
#include <array>
#include <functional>

class QComboBox;
class QLineEdit;
class QMenu;

namespace corrieval::ribbon {

class Ribbon;
class RibbonGallery;
class RibbonSlider;

// The ribbon's controls the program talks to besides their actions.
struct RibbonControls {
    QLineEdit* TempoEdit = nullptr;
    RibbonSlider* TempoSlider = nullptr;
    RibbonGallery* InstrumentGallery = nullptr;
    QComboBox* PartCombo = nullptr;
    // "Notes", "Doublings", "Embellishments", "Piobaireachd", in that order.
    std::array<RibbonGallery*, 4> PaletteGalleries{};
    // The "Recent Documents" submenu of the application menu, for the program to fill.
    QMenu* RecentDocuments = nullptr;
};

// Builds the program's whole ribbon into `ribbon`: the application menu, the quick access
// buttons, the "Style" and help buttons and the five categories with all their panels.
// `actionFor` gives the action of a command id; it must know every id the ribbon shows.
RibbonControls BuildRibbon(Ribbon& ribbon, const std::function<QAction*(int id)>& actionFor);

} // namespace corrieval::ribbon
