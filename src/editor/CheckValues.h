#pragma once

namespace corrieval {

class CStaveArea;

// "Check values" over one music area: with `on` every bar of the area colours itself by how its
// note values add up against its time signature; without, the bars return to the area's
// background.
void ShowBarValues(CStaveArea& area, bool on);

} // namespace corrieval
