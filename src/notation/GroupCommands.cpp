#include "notation/GroupCommands.h"

#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"

#include <algorithm>
#include <iterator>
#include <memory>

namespace corrieval {

namespace {

CNoteGroupEx* LoneGroup(const std::vector<CScoObj*>& selection)
{
    return selection.size() == 1 ? dynamic_cast<CNoteGroupEx*>(selection.front()) : nullptr;
}

CNoteGroupEx* GroupOf(const CNoteEx* note)
{
    return note != nullptr ? dynamic_cast<CNoteGroupEx*>(note->Parent()) : nullptr;
}

// Each selected note once, in selection order.
std::vector<CNoteEx*> SelectedNotes(const std::vector<CScoObj*>& selection)
{
    std::vector<CNoteEx*> notes;
    for (CScoObj* object : selection) {
        auto* note = dynamic_cast<CNoteEx*>(object);
        if (note != nullptr && std::find(notes.begin(), notes.end(), note) == notes.end())
            notes.push_back(note);
    }
    return notes;
}

// Minims and longer have no beam to gain, and gracenotes belong to their movements.
bool Beamable(const CNoteEx& note)
{
    return note.Duration == 4 || note.Duration == 8 || note.Duration == 16 || note.Duration == 32;
}

RectF Enclosing(const std::vector<CScoObj*>& objects)
{
    RectF all = objects.front()->GetBounds();
    for (const CScoObj* object : objects) {
        const RectF r = object->GetBounds();
        const float right = std::max(all.Right(), r.Right());
        const float bottom = std::max(all.Bottom(), r.Bottom());
        all.X = std::min(all.X, r.X);
        all.Y = std::min(all.Y, r.Y);
        all.Width = right - all.X;
        all.Height = bottom - all.Y;
    }
    return all;
}

void DeleteIfEmpty(CNoteGroupEx& group)
{
    CGraphObjContainer* bar = group.Parent();
    if (group.ChildCount() != 0 || bar == nullptr)
        return;
    group.SetSelected(false);
    bar->RemoveChild(&group, true);
}

} // namespace

bool CanGroup(const std::vector<CScoObj*>& selection)
{
    if (LoneGroup(selection) != nullptr)
        return true;
    const std::vector<CNoteEx*> notes = SelectedNotes(selection);
    if (notes.size() == 1)
        return GroupOf(notes.front()) != nullptr;
    return notes.size() >= 2 && std::all_of(notes.begin(), notes.end(), [&](const CNoteEx* note) {
               return note->Parent() == notes.front()->Parent();
           });
}

bool CanUngroup(const std::vector<CScoObj*>& selection)
{
    if (selection.empty())
        return false;
    return LoneGroup(selection) != nullptr || GroupOf(dynamic_cast<CNoteEx*>(selection.front())) != nullptr;
}

CNoteGroupEx* GroupNotes(std::vector<CScoObj*> selection)
{
    if (CNoteGroupEx* group = LoneGroup(selection)) {
        for (CNoteEx* note : group->Notes())
            group->ShortenNote(*note);
        return nullptr;
    }
    const std::vector<CNoteEx*> notes = SelectedNotes(selection);
    bool beamed = false;
    for (CNoteEx* note : notes) {
        if (CNoteGroupEx* group = GroupOf(note)) {
            group->ShortenNote(*note);
            beamed = true;
        }
    }
    if (beamed)
        return nullptr;

    std::vector<CNoteEx*> joining;
    std::copy_if(notes.begin(), notes.end(), std::back_inserter(joining),
                 [](const CNoteEx* note) { return Beamable(*note) && note->Parent() != nullptr; });
    if (joining.empty())
        return nullptr;
    // The beams run from note to note in the group's order, so it must be the order on the page
    // whatever order the notes were picked in.
    std::stable_sort(joining.begin(), joining.end(),
                     [](const CNoteEx* a, const CNoteEx* b) { return a->GetBounds().X < b->GetBounds().X; });

    auto group = std::make_unique<CNoteGroupEx>();
    group->SetBounds(Enclosing(selection));
    CGraphObjContainer* bar = nullptr;
    for (CNoteEx* note : joining) {
        bar = note->Parent();
        group->AddChild(bar->RemoveChild(note, false), true);
    }
    auto* added = static_cast<CNoteGroupEx*>(bar->AddChild(std::move(group), true));
    for (CScoObj* object : selection)
        object->SetSelected(false);
    added->SetSelected(true);
    return added;
}

void UngroupNotes(std::vector<CScoObj*> selection)
{
    if (CNoteGroupEx* group = LoneGroup(selection)) {
        for (CNoteEx* note : group->Notes())
            group->LengthenNote(*note);
        DeleteIfEmpty(*group);
        return;
    }
    // Groups are deleted only when all the notes are done: later ones may have been theirs.
    std::vector<CNoteGroupEx*> emptied;
    for (CNoteEx* note : SelectedNotes(selection)) {
        CNoteGroupEx* group = GroupOf(note);
        if (group == nullptr)
            continue;
        group->LengthenNote(*note);
        if (group->ChildCount() == 0 && std::find(emptied.begin(), emptied.end(), group) == emptied.end())
            emptied.push_back(group);
    }
    for (CNoteGroupEx* group : emptied)
        DeleteIfEmpty(*group);
}

} // namespace corrieval
