#pragma once

#include <QString>
#include <functional>

class QAction;
class QWidget;

namespace corrieval::ribbon {

// The caption an action shows on the ribbon: its text up to any "\n", without the "&" of its
// mnemonic ("&Play" reads "Play", "Paste\nv" reads "Paste").
QString CaptionOf(const QAction* action);

// Keeps `widget` showing `action`: its enabled state, its tool tip and its caption as the
// accessible name, now and whenever the action changes. `alsoOnChange` runs on each change too,
// for what only that kind of widget shows (a check mark, a text).
void MirrorAction(QWidget* widget, QAction* action, std::function<void()> alsoOnChange = {});

} // namespace corrieval::ribbon
