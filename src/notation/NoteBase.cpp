#include "notation/NoteBase.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_ABSTRACT_CLASS(CNoteBase, CGraphObjContainer);

CNoteBase::CNoteBase(const CNoteBase& other) : CGraphObjContainer(other)
{
    for (const auto& child : other.Children()) {
        if (const auto* note = dynamic_cast<const CNoteBase*>(child.get()))
            AddChild(note->Clone(), true);
    }
}

void CNoteBase::OnSelectionChanged(bool selected) { SetColour(selected ? SelectedColour : PlainColour); }

} // namespace corrieval
