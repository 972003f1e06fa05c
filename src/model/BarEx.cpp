#include "model/BarEx.h"

#include "model/BarConfig.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CBarEx, CGraphObjContainer);
CORRIEVAL_IMPLEMENT_CLASS(CBarConfig, CObject);

} // namespace corrieval
