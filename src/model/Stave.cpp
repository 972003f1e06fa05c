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

CStaveGroup::CStaveGroup() = default;

CStaveGroup::~CStaveGroup() = default;

} // namespace corrieval
