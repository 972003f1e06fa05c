#include "editor/DeleteCommands.h"

#include "editor/RepeatCommands.h"
#include "editor/ScoSelection.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Messages.h"
#include "model/Stave.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TieCommand.h"

#include <algorithm>

namespace corrieval {

namespace {

const QString kTiedNotes = QStringLiteral("You cannot delete a selection containing tied notes.");
const QString kPageQuestion = QStringLiteral("Are you sure? All data on the page will be lost.");

bool IsTied(const CScoObj* item)
{
    if (const auto* note = dynamic_cast<const CNoteEx*>(item))
        return note->Tie != nullptr;
    if (const auto* group = dynamic_cast<const CNoteGroupEx*>(item)) {
        const auto notes = group->Notes();
        return std::any_of(notes.begin(), notes.end(),
                           [](const CNoteEx* note) { return note->Tie != nullptr; });
    }
    return false;
}

// A selected object that lies inside another selected one goes with it.
bool InsideAnother(const CScoObj* item, const std::vector<CScoObj*>& items)
{
    for (const CScoObj* above = item->Parent(); above != nullptr; above = above->Parent()) {
        if (std::find(items.begin(), items.end(), above) != items.end())
            return true;
    }
    return false;
}

std::size_t ColumnOf(const CBarEx& bar, const CStaveGroup& group)
{
    for (std::size_t i = 0; i < group.BarConfigs.size(); ++i) {
        if (group.BarConfigs[i].get() == bar.Config)
            return i;
    }
    return static_cast<std::size_t>(std::max(bar.Parent()->IndexOfChild(&bar), 0));
}

} // namespace

bool HoldsTiedNotes(const std::vector<CScoObj*>& selection)
{
    return std::any_of(selection.begin(), selection.end(), IsTied);
}

void UntieWithin(CScoObj& root, CCorrievalDoc& doc)
{
    if (auto* note = dynamic_cast<CNoteEx*>(&root); note != nullptr && note->Tie != nullptr)
        Untie(*note, doc);
    if (auto* container = dynamic_cast<CGraphObjContainer*>(&root)) {
        for (const auto& child : container->Children())
            UntieWithin(*child, doc);
    }
}

bool DeleteSelection(CScoSelection& selection, CCorrievalDoc& doc, bool destroy)
{
    const std::vector<CScoObj*> items = selection.Items();
    if (HoldsTiedNotes(items)) {
        ShowMessage(kTiedNotes, MessageKind::Warning);
        return false;
    }
    selection.Clear();
    for (auto it = items.rbegin(); it != items.rend(); ++it) {
        CScoObj* item = *it;
        if (InsideAnother(item, items))
            continue;
        if (CGraphObjContainer* parent = item->Parent()) {
            UntieWithin(*item, doc);
            parent->RemoveChild(item, true);
            parent->InvalidateSelf();
            // A beamed group whose last note went is nothing to see or play: it goes too.
            if (auto* group = dynamic_cast<CNoteGroupEx*>(parent);
                group != nullptr && group->ChildCount() == 0) {
                if (CGraphObjContainer* bar = group->Parent())
                    bar->RemoveChild(group, true);
            }
        } else if (auto* marker = dynamic_cast<CRepeatTiming*>(item)) {
            DeleteMarker(*marker, doc);
        } else if (auto* page = dynamic_cast<CTunePage*>(item); page != nullptr && destroy) {
            UntieWithin(*page, doc);
            doc.DeletePage(page);
        }
    }
    return true;
}

void DeleteBar(CScoSelection& selection, CCorrievalDoc& doc, CBarEx& bar)
{
    DeleteRepeat(bar, doc);
    selection.Clear();
    auto* stave = dynamic_cast<CStave*>(bar.Parent());
    auto* group = stave != nullptr ? dynamic_cast<CStaveGroup*>(stave->Parent()) : nullptr;
    if (group == nullptr)
        return;
    const std::size_t column = ColumnOf(bar, *group);
    // A system keeps its last column, and with it the ties of its notes.
    if (group->BarConfigs.size() >= 2) {
        for (const auto& each : group->Children()) {
            const auto& bars = static_cast<const CStave&>(*each);
            if (column < bars.ChildCount())
                UntieWithin(*bars.ChildAt(column), doc);
        }
    }
    group->RemoveBarColumn(column, true);
    group->InvalidateSelf();
}

void DeleteSelected(CScoSelection& selection, CCorrievalDoc& doc)
{
    if (auto* bar = selection.Single<CBarEx>()) {
        DeleteBar(selection, doc, *bar);
        return;
    }
    CScoObj* head = selection.Head();
    if (head == nullptr)
        return;
    if (auto* page = dynamic_cast<CTunePage*>(head)) {
        if (ShowMessage(kPageQuestion, MessageKind::OkCancel) != MessageAnswer::Ok)
            return;
        if (!DeleteSelection(selection, doc, false))
            return;
        UntieWithin(*page, doc);
        doc.DeletePage(page);
        return;
    }
    DeleteSelection(selection, doc, true);
}

} // namespace corrieval
