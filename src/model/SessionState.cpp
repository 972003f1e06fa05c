#include "model/SessionState.h"

namespace corrieval {

SessionState& Session()
{
    static SessionState state;
    return state;
}

} // namespace corrieval
