#include "model/PageArea.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CPageArea, CGraphObjContainer);

CPageArea::CPageArea()
{
    LeftMargin = 0.04f;
    RightMargin = 0.04f;
}

// The rectangle and margins are the deriving class's business.
CPageArea::CPageArea(const CPageArea& other)
    : CGraphObjContainer(), MinimumWidth(other.MinimumWidth), MinimumHeight(other.MinimumHeight),
      FrameWidth(other.FrameWidth)
{
}

} // namespace corrieval
