#include "editor/CheckValues.h"

#include "editor/AreaBars.h"

namespace corrieval {

void ShowBarValues(CStaveArea& area, bool on)
{
    ForEachBar(area, [on](CBarEx& bar) { bar.UpdateValueColour(on, true); });
}

} // namespace corrieval
