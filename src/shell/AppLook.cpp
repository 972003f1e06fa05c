#include "shell/AppLook.h"

#include "shell/ribbon/LookPalette.h"

#include <QApplication>

namespace corrieval {

void ApplyApplicationLook(int lookId)
{
    // Fusion looks the same on every desktop; each look is a palette on it, which the ribbon and
    // its icons follow.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(ribbon::LookPalette(lookId));
}

} // namespace corrieval
