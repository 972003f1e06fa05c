#include "editor/StaveNavigation.h"

#include "model/BarEx.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"

#include <algorithm>

namespace corrieval {

namespace {

std::vector<CNoteBase*> ItemsInOrder(const CBarEx& bar)
{
    std::vector<CNoteBase*> items = bar.SpacedItems();
    std::stable_sort(items.begin(), items.end(), [](const CNoteBase* a, const CNoteBase* b) {
        return a->GetBounds().X < b->GetBounds().X;
    });
    return items;
}

// The bar before `bar` on its stave, or the last bar of the same stave in the system above.
CBarEx* BarBefore(const CBarEx& bar)
{
    if (CBarEx* before = CStaveArea::PreviousBar(bar))
        return before;
    const CGraphObjContainer* stave = bar.Parent();
    const CGraphObjContainer* group = stave != nullptr ? stave->Parent() : nullptr;
    const CGraphObjContainer* area = group != nullptr ? group->Parent() : nullptr;
    if (area == nullptr)
        return nullptr;
    const int system = area->IndexOfChild(group);
    const int part = group->IndexOfChild(stave);
    if (system <= 0)
        return nullptr;
    const auto& above =
        static_cast<const CGraphObjContainer&>(*area->ChildAt(static_cast<std::size_t>(system - 1)));
    if (static_cast<std::size_t>(part) >= above.ChildCount())
        return nullptr;
    const auto& line = static_cast<const CGraphObjContainer&>(*above.ChildAt(static_cast<std::size_t>(part)));
    return line.ChildCount() > 0 ? dynamic_cast<CBarEx*>(line.ChildAt(line.ChildCount() - 1)) : nullptr;
}

// A beamed group counts as its notes: from the group, the walk goes on from its last note
// forwards or its first note backwards.
CScoObj* Anchor(CScoObj& from, bool forwards)
{
    if (auto* group = dynamic_cast<CNoteGroupEx*>(&from)) {
        const auto notes = group->Notes();
        if (!notes.empty())
            return forwards ? notes.back() : notes.front();
    }
    return &from;
}

CNoteBase* Step(CScoObj& from, bool forwards)
{
    auto* bar = dynamic_cast<CBarEx*>(&from);
    CScoObj* anchor = bar != nullptr ? nullptr : Anchor(from, forwards);
    if (bar == nullptr)
        bar = from.FindAncestor<CBarEx>();
    if (bar == nullptr)
        return nullptr;
    std::vector<CNoteBase*> items = ItemsInOrder(*bar);
    auto at = std::find(items.begin(), items.end(), anchor);
    if (at == items.end()) {
        // From a bar: its own first item forwards, the bar before backwards.
        if (!forwards)
            at = items.begin();
        else if (!items.empty())
            return items.front();
    } else if (forwards && at + 1 != items.end()) {
        return *(at + 1);
    } else if (!forwards && at != items.begin()) {
        return *(at - 1);
    }
    for (bar = forwards ? CStaveArea::NextBar(*bar) : BarBefore(*bar); bar != nullptr;
         bar = forwards ? CStaveArea::NextBar(*bar) : BarBefore(*bar)) {
        items = ItemsInOrder(*bar);
        if (!items.empty())
            return forwards ? items.front() : items.back();
    }
    return nullptr;
}

} // namespace

CNoteBase* NextItem(CScoObj& from)
{
    return Step(from, true);
}

CNoteBase* PreviousItem(CScoObj& from)
{
    return Step(from, false);
}

bool MoveNotes(const std::vector<CScoObj*>& selection, int steps)
{
    std::vector<CNoteEx*> notes;
    for (CScoObj* item : selection) {
        if (auto* note = dynamic_cast<CNoteEx*>(item))
            notes.push_back(note);
        else if (auto* group = dynamic_cast<CNoteGroupEx*>(item))
            for (CNoteEx* member : group->Notes())
                notes.push_back(member);
    }
    bool moved = false;
    for (CNoteEx* note : notes) {
        const NotePitch pitch = std::clamp(note->Pitch + steps, HighestPitch, LowestPitch);
        if (pitch == note->Pitch)
            continue;
        note->Pitch = pitch;
        moved = true;
        // Stem, ledger lines and beams follow the head: the whole bar is drawn again.
        if (CBarEx* bar = note->FindAncestor<CBarEx>())
            bar->InvalidateSelf();
    }
    return moved;
}

} // namespace corrieval
