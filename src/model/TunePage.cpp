#include "model/TunePage.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CTunePage, CGraphObjContainer);

CTunePage::CTunePage()
{
    LeftMargin = RightMargin = TopMargin = BottomMargin = DefaultMargin;
}

void CTunePage::AfterBoundsChange(const RectF& oldBounds)
{
    const float shift = oldBounds.Y - Bounds().Y;
    for (const auto& child : Children()) {
        const RectF r = child->Bounds();
        child->SetBounds(r.X, r.Y - shift, r.Width, r.Height);
    }
}

} // namespace corrieval
