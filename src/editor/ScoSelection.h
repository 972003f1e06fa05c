#pragma once

#include "model/Geometry.h"
#include "notation/NoteEx.h"

#include <optional>
#include <unordered_map>
#include <vector>

namespace corrieval {

class CPageArea;
class CScoObj;

// The objects selected in one view, in the order they were selected. The objects belong to the
// document; the selection only points at them, and the model takes an object out of it before
// the object goes.
//
// Each object's own selected flag and this list are kept in step both ways: Add and Remove set
// the flag, and a flag set by the model (a new group selecting itself) reaches the list through
// the active view.
class CScoSelection {
public:
    // Selects `object`, or the first selectable object up its parent chain (a gracenote of a
    // movement selects the movement); a page is selected as it stands. A note remembers its pitch
    // as it joins, the base for moving several notes by the same steps. Nothing happens for null,
    // for an object already listed, or with nothing selectable above.
    void Add(CScoObj* object);
    // Clears the object's flag and takes it out.
    void Remove(CScoObj* object);
    // Clears every flag, from the last selected back, and forgets the saved pitches.
    void Clear();
    // Forgets everything without touching the objects: for a document about to be replaced.
    void Forget();

    bool Contains(const CScoObj* object) const;
    bool Empty() const { return m_items.empty(); }
    std::size_t Count() const { return m_items.size(); }
    const std::vector<CScoObj*>& Items() const { return m_items; }
    // The first selected object, or null.
    CScoObj* Head() const { return m_items.empty() ? nullptr : m_items.front(); }
    // The one selected object when it is exactly one of class T (or derived), else null.
    template <class T> T* Single() const
    {
        return m_items.size() == 1 ? dynamic_cast<T*>(m_items.front()) : nullptr;
    }
    // The one selected area, or the area that holds the first selected object.
    CPageArea* EnclosingArea() const;
    // The union of the selected objects' content boxes; empty with nothing selected.
    RectF Bounds() const;
    std::size_t NoteCount() const;
    std::vector<CNoteEx*> Notes() const;
    // The note's pitch when it joined the selection.
    std::optional<NotePitch> SavedPitch(const CNoteEx& note) const;
    // The selected notes' pitches as they stand become the base for moves, after a move that
    // kept the selection (the arrow keys).
    void ResavePitches();

private:
    std::vector<CScoObj*> m_items;
    std::unordered_map<const CNoteEx*, NotePitch> m_savedPitches;
};

} // namespace corrieval
