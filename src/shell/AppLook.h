#pragma once

namespace corrieval {

// Puts the visual style `lookId` (210 to 218; see command::StyleFirst) on the whole program:
// Fusion everywhere, with the look's palette. The one place where a look takes effect, at start-up
// and when the user picks another.
void ApplyApplicationLook(int lookId);

} // namespace corrieval
