#pragma once

#include <QString>

class QPalette;

namespace corrieval::ribbon {

// The style sheet that gives the ribbon its flat look in the colours of `palette`.
QString RibbonStyleSheet(const QPalette& palette);

} // namespace corrieval::ribbon
