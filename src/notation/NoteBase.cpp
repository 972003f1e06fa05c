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

bool CNoteBase::PathWithin(const QPainterPath& path, const RectF& rect)
{
    if (path.isEmpty())
        return false;
    const QRectF drawn = path.boundingRect();
    const RectF bounds{static_cast<float>(drawn.x()), static_cast<float>(drawn.y()),
                       static_cast<float>(drawn.width()), static_cast<float>(drawn.height())};
    return bounds.WithinOrTouching(rect);
}

void CNoteBase::OnSelectionChanged(bool selected) { SetColour(selected ? SelectedColour : PlainColour); }

} // namespace corrieval
