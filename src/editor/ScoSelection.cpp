#include "editor/ScoSelection.h"

#include "model/PageArea.h"
#include "model/TunePage.h"
#include "notation/FixedNoteGroup.h"

#include <algorithm>

namespace corrieval {

namespace {
// The object a click or band on `object` selects: the object itself when selectable, else the
// first selectable one above. A note of a movement stands for the movement: the piper placed and
// moves the movement as one item.
CScoObj* SelectableFor(CScoObj* object)
{
    for (CScoObj* at = object; at != nullptr; at = at->Parent()) {
        if (auto* movement = dynamic_cast<CFixedNoteGroup*>(at->Parent()))
            return movement;
        if (at->IsSelectable())
            return at;
    }
    return nullptr;
}

void RedrawWithArea(CScoObj& object)
{
    object.InvalidateSelf();
    if (CScoObj* area = object.FindAncestor<CPageArea>())
        area->InvalidateSelf();
}
} // namespace

void CScoSelection::Add(CScoObj* object)
{
    if (object == nullptr || Contains(object))
        return;
    if (dynamic_cast<CTunePage*>(object) == nullptr) {
        object = SelectableFor(object);
        if (object == nullptr || Contains(object))
            return;
    }
    // Listed before the flag is set: setting it tells the active view, which lands back here.
    m_items.push_back(object);
    object->SetSelected(true);
    if (auto* note = dynamic_cast<CNoteEx*>(object))
        m_savedPitches[note] = note->Pitch;
    RedrawWithArea(*object);
}

void CScoSelection::Remove(CScoObj* object)
{
    if (!Contains(object))
        return;
    if (object->Selected())
        object->SetSelected(false);
    std::erase(m_items, object);
}

void CScoSelection::Clear()
{
    while (!m_items.empty()) {
        CScoObj* object = m_items.back();
        m_items.pop_back();
        if (object->Selected())
            object->SetSelected(false);
        RedrawWithArea(*object);
    }
    m_savedPitches.clear();
}

void CScoSelection::Forget()
{
    m_items.clear();
    m_savedPitches.clear();
}

bool CScoSelection::Contains(const CScoObj* object) const
{
    return std::ranges::find(m_items, object) != m_items.end();
}

CPageArea* CScoSelection::EnclosingArea() const
{
    // An area is its own enclosing area.
    CScoObj* head = Head();
    return head != nullptr ? head->FindAncestor<CPageArea>() : nullptr;
}

RectF CScoSelection::Bounds() const
{
    if (m_items.empty())
        return {};
    RectF bounds = m_items.front()->ContentBox();
    for (const CScoObj* object : m_items)
        bounds = bounds.United(object->ContentBox());
    return bounds;
}

std::size_t CScoSelection::NoteCount() const
{
    return Notes().size();
}

std::vector<CNoteEx*> CScoSelection::Notes() const
{
    std::vector<CNoteEx*> notes;
    for (CScoObj* object : m_items)
        if (auto* note = dynamic_cast<CNoteEx*>(object))
            notes.push_back(note);
    return notes;
}

void CScoSelection::ResavePitches()
{
    for (CNoteEx* note : Notes())
        m_savedPitches[note] = note->Pitch;
}

std::optional<NotePitch> CScoSelection::SavedPitch(const CNoteEx& note) const
{
    auto it = m_savedPitches.find(&note);
    if (it == m_savedPitches.end())
        return std::nullopt;
    return it->second;
}

} // namespace corrieval
