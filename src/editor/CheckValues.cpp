#include "editor/CheckValues.h"

#include "model/BarEx.h"
#include "model/StaveArea.h"

namespace corrieval {

void ShowBarValues(CStaveArea& area, bool on)
{
    for (const auto& group : area.Children()) {
        for (const auto& stave : static_cast<const CGraphObjContainer&>(*group).Children()) {
            for (const auto& bar : static_cast<const CGraphObjContainer&>(*stave).Children()) {
                if (auto* each = dynamic_cast<CBarEx*>(bar.get()))
                    each->UpdateValueColour(on, true);
            }
        }
    }
}

} // namespace corrieval
