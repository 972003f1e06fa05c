#pragma once

#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"

#include <vector>

namespace corrieval::testing {

// Ways into a converted score: its music areas, and a bar by system and column.

template <class T> std::vector<T*> ChildrenOf(const CGraphObjContainer& container)
{
    std::vector<T*> found;
    for (const auto& child : container.Children()) {
        if (auto* typed = dynamic_cast<T*>(child.get()))
            found.push_back(typed);
    }
    return found;
}

inline std::vector<CStaveArea*> MusicAreas(const CCorrievalDoc& doc)
{
    std::vector<CStaveArea*> areas;
    for (const auto& page : doc.Pages) {
        const auto found = ChildrenOf<CStaveArea>(*page);
        areas.insert(areas.end(), found.begin(), found.end());
    }
    return areas;
}

// The first stave of a system.
inline CStave& StaveOf(const CStaveArea& area, std::size_t system)
{
    return static_cast<CStave&>(*static_cast<CStaveGroup&>(*area.ChildAt(system)).ChildAt(0));
}

inline CBarEx& BarOf(const CStaveArea& area, std::size_t system, std::size_t column)
{
    return static_cast<CBarEx&>(*StaveOf(area, system).ChildAt(column));
}

} // namespace corrieval::testing
