#include "model/Stave.h"

#include "model/BarConfig.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CStave, CGraphObjContainer);
CORRIEVAL_IMPLEMENT_CLASS(CStaveGroup, CGraphObjContainer);

CStave::CStave()
{
    Clef.SetType(CClef::Treble);
    TimeSig.Stave = this;
}

CStave::Grid CStave::Positions() const
{
    // Accumulated by addition, as the layout has always done, so positions round the same way.
    const float unit = (Bounds().Height - (TopMargin + BottomMargin)) / 19.0f;
    Grid grid{};
    float y = 0;
    for (float& position : grid) {
        position = y;
        y += unit;
    }
    return grid;
}

CStaveGroup::CStaveGroup() = default;

CStaveGroup::~CStaveGroup() = default;

} // namespace corrieval
