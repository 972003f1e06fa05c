#include "editor/AreaCreation.h"

#include "model/AbbreviationArea.h"
#include "model/TunePage.h"

#include <memory>

namespace corrieval {

CPageArea* CreateArea(CTunePage& page, const CRuntimeClass& kind, const RectF& band)
{
    if (band.Width <= 0 || band.Height <= 0 || kind.Create == nullptr ||
        !kind.IsDerivedFrom(CPageArea::Class))
        return nullptr;
    std::unique_ptr<CPageArea> area(static_cast<CPageArea*>(kind.Create().release()));
    area->SetBounds(band);
    if (auto* legend = dynamic_cast<CAbbreviationArea*>(area.get()))
        legend->FillDefaultColumns();
    else if (auto* music = dynamic_cast<CStaveArea*>(area.get()))
        music->FillDefaultContent();
    return static_cast<CPageArea*>(page.AddChild(std::move(area), true));
}

} // namespace corrieval
