#include "editor/AreaBars.h"
#include "editor/CorrievalView.h"
#include "editor/EditCommands.h"
#include "model/TunePage.h"

// Select All: every note item of one music area, for a piper who copies a tune's music whole or
// plays it from the start.

namespace corrieval {

CStaveArea* EditCommands::SelectAllArea() const
{
    const CScoSelection& selection = m_view.Selection();
    CScoObj* head = selection.Head();
    if (auto* area = selection.Single<CStaveArea>())
        return area;
    if (CStaveArea* area = head != nullptr ? head->FindAncestor<CStaveArea>() : nullptr)
        return area;
    // A click on a page's empty paper chooses the page: its music is meant.
    auto* page = head != nullptr ? selection.Single<CTunePage>() : m_view.FirstPageInView();
    if (page == nullptr)
        return nullptr;
    for (const auto& child : page->Children()) {
        if (auto* area = dynamic_cast<CStaveArea*>(child.get()))
            return area;
    }
    return nullptr;
}

void EditCommands::SelectAllNotes()
{
    CStaveArea* area = SelectAllArea();
    if (area == nullptr)
        return;
    CScoSelection& selection = m_view.Selection();
    selection.Clear();
    // Notes, beamed groups and movements as they stand in their bars; a group's notes come with it.
    ForEachBar(*area, [&selection](CBarEx& bar) {
        for (const auto& item : bar.Children()) {
            if (item->IsNoteItem())
                selection.Add(item.get());
        }
    });
    m_view.EditState().MayInsertRepeats = false;
    m_view.viewport()->update();
}

} // namespace corrieval
