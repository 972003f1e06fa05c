#include "notation/ScoChar.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CScoChar, CObject);

} // namespace corrieval
