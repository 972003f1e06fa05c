#include "editor/ScoSelection.h"

#include <algorithm>

namespace corrieval {

void CScoSelection::Add(CScoObj& object)
{
    if (!Contains(object))
        m_items.push_back(&object);
}

void CScoSelection::Remove(const CScoObj& object)
{
    std::erase(m_items, &object);
}

bool CScoSelection::Contains(const CScoObj& object) const
{
    return std::ranges::find(m_items, &object) != m_items.end();
}

} // namespace corrieval
