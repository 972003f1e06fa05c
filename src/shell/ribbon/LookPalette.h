#pragma once

#include <QPalette>

namespace corrieval::ribbon {

// The palette of a visual style: 215 light with blue accents (the default), 216 dark, 217 light
// grey, 218 light with teal accents; the older ids 210 to 214 and any other give Fusion's own.
QPalette LookPalette(int lookId);

} // namespace corrieval::ribbon
