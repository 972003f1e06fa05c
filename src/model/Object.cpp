#include "model/Object.h"

namespace corrieval {

const CRuntimeClass CObject::Class{"CObject", 1, nullptr, nullptr};

bool CRuntimeClass::IsDerivedFrom(const CRuntimeClass& other) const
{
    for (const CRuntimeClass* cls = this; cls != nullptr; cls = cls->Base) {
        if (cls == &other)
            return true;
    }
    return false;
}

} // namespace corrieval
