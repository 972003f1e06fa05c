#include "notation/NoteBase.h"

#include "model/ActiveView.h"
#include "model/BarEx.h"
#include "model/BarLookup.h"

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

PointF CNoteBase::DragTo(float x, float y)
{
    const RectF before = Bounds();
    if (ActiveView() == nullptr)
        return {};
    CBarEx* bar = BarUnderPoint(x, y);
    // An item of a group cannot leave the group's bar.
    if (dynamic_cast<CNoteBase*>(Parent()) != nullptr && (bar == nullptr || bar != Parent()->Parent()))
        return {};
    if (bar != nullptr) {
        bar->PlaceItem(*this, x, y);
        if (dynamic_cast<CBarEx*>(Parent()) != nullptr && Parent() != bar)
            SetParent(bar);
    }
    return {Bounds().X - before.X, Bounds().Y - before.Y};
}

} // namespace corrieval
