#include "notation/ImageArea.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CImageArea, CPageArea);

CImageArea::CImageArea()
{
    SetMargins(FreeAreaMargin);
    MinimumHeight = 0.2f;
}

} // namespace corrieval
