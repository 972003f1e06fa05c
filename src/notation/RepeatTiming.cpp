#include "notation/RepeatTiming.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CRepeatTiming, CScoObj);

} // namespace corrieval
