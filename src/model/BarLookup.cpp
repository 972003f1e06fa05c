#include "model/BarLookup.h"

#include "model/ActiveView.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/TunePage.h"

namespace corrieval {

CBarEx* BarUnderPoint(float x, float y)
{
    const ScoreView* view = ActiveView();
    const CCorrievalDoc* doc = view != nullptr ? view->Document() : nullptr;
    if (doc == nullptr)
        return nullptr;
    for (const auto& page : doc->Pages) {
        if (!page->Bounds().Contains(x, y))
            continue;
        CScoObj* hit = page->HitTest(x, y);
        return hit != nullptr ? hit->FindAncestor<CBarEx>() : nullptr;
    }
    return nullptr;
}

} // namespace corrieval
