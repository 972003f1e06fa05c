#pragma once

#include <vector>

namespace corrieval {

class CScoObj;

// The objects selected in one view, in the order they were selected. The objects belong to the
// document; the selection only points at them, and the model takes an object out of it before
// the object goes.
class CScoSelection {
public:
    // An object already selected keeps its place.
    void Add(CScoObj& object);
    void Remove(const CScoObj& object);
    void Clear() { m_items.clear(); }
    bool Contains(const CScoObj& object) const;
    bool Empty() const { return m_items.empty(); }
    const std::vector<CScoObj*>& Items() const { return m_items; }

private:
    std::vector<CScoObj*> m_items;
};

} // namespace corrieval
