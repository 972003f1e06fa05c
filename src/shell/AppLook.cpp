#include "shell/AppLook.h"

#include <QApplication>
#include <QStyle>

namespace corrieval {

void ApplyApplicationLook(int /*lookId*/)
{
    // Fusion looks the same on every desktop. The palettes of the four looks come with the ribbon;
    // until then every look is Fusion's own.
    QApplication::setStyle(QStringLiteral("Fusion"));
    QApplication::setPalette(QApplication::style()->standardPalette());
}

} // namespace corrieval
