#pragma once

#include "model/BarEx.h"
#include "model/StaveArea.h"

namespace corrieval {

// Calls `visit` with every bar of the music area: system by system, stave by stave, left to right.
template <class Visit> void ForEachBar(const CStaveArea& area, Visit&& visit)
{
    for (const auto& group : area.Children()) {
        for (const auto& stave : static_cast<const CGraphObjContainer&>(*group).Children()) {
            for (const auto& bar : static_cast<const CGraphObjContainer&>(*stave).Children()) {
                if (auto* each = dynamic_cast<CBarEx*>(bar.get()))
                    visit(*each);
            }
        }
    }
}

} // namespace corrieval
