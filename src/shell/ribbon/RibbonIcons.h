#pragma once

#include <QIcon>
#include <QPalette>

class QAction;

namespace corrieval::ribbon {

// The name of the ribbon icon an action shows, as the command table sets it.
inline constexpr char kIconProperty[] = "corrieval.icon";

// The ribbon's icon `name` in both sizes, 16 and 32 pixels, drawn in the colours of `palette`:
// lines in its text colour, accents in its highlight. A greyed rendering serves the disabled
// state. Null when there is no such icon.
QIcon RibbonIcon(const QString& name, const QPalette& palette);
// `picture`, drawn by the program in any colour, with its ink in the palette's text colour, as the
// ribbon's own icons are, and greyed for the disabled state; its sizes are kept.
QIcon InkIcon(const QIcon& picture, const QPalette& palette);
// True when icon `name` exists in both sizes.
bool HasRibbonIcon(const QString& name);

// Gives `action` its ribbon icon drawn for `palette`, when it names one.
void ApplyRibbonIcon(QAction* action, const QPalette& palette);

} // namespace corrieval::ribbon
