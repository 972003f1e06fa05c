#include "model/ScoObj.h"

#include "model/ActiveView.h"
#include "model/GraphObjContainer.h"

#include <cassert>
#include <utility>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CScoObj, CObject);

CScoObj::CScoObj(const CScoObj& other) : CObject(other), m_bounds(other.m_bounds) {}

RectF CScoObj::ContentBox() const
{
    return {m_bounds.X + LeftMargin, m_bounds.Y + TopMargin, m_bounds.Width - (LeftMargin + RightMargin),
            m_bounds.Height - (TopMargin + BottomMargin)};
}

void CScoObj::SetBounds(float x, float y, float width, float height)
{
    const RectF old = m_bounds;
    const RectF next{x, y, width, height};
    BeforeBoundsChange(next);
    m_bounds = next;
    AfterBoundsChange(old);
}

void CScoObj::SetParent(CGraphObjContainer* parent)
{
    if (parent == m_parent)
        return;
    // Leaving a parent without a new one would leave nobody owning the object: that is
    // RemoveChild's business, which hands the object back.
    assert((parent != nullptr || m_parent == nullptr || m_parent->IndexOfChild(this) < 0) &&
           "detach through RemoveChild");
    if (parent == nullptr && m_parent != nullptr && m_parent->IndexOfChild(this) >= 0)
        return;

    std::unique_ptr<CScoObj> owned;
    if (m_parent != nullptr) {
        CGraphObjContainer* old = m_parent;
        owned = old->TakeFromList(this);
        if (owned) {
            old->OnChildRemoved(this);
            old->InvalidateSelf();
        }
    }
    m_parent = parent;
    if (parent != nullptr && !parent->ContainsDeep(this)) {
        // Only an object taken from its old parent's list can be handed on: a detached object
        // enters a container through AddChild, which owns it from then on.
        assert(owned && "a detached object must be added with AddChild");
        if (owned)
            parent->AddChild(std::move(owned), true);
    }
}

void CScoObj::SetSelected(bool on)
{
    ScoreView* view = ActiveView();
    if (on != m_selected) {
        m_selected = on;
        if (view != nullptr) {
            if (on)
                view->AddToSelection(*this);
            else
                view->RemoveFromSelection(*this);
        }
    }
    OnSelectionChanged(on);
    if (view != nullptr)
        view->InvalidateObject(*this);
}

void CScoObj::DrawIfVisible(Painter& painter, OutputMode mode)
{
    if (painter.IsVisible(GetBounds()))
        Draw(painter, mode);
}

void CScoObj::InvalidateSelf() const
{
    if (ScoreView* view = ActiveView())
        view->InvalidateObject(*this);
}

CScoObj* CScoObj::FindAncestor(const CRuntimeClass& cls)
{
    for (CScoObj* obj = this; obj != nullptr; obj = obj->m_parent) {
        if (obj->IsKindOf(cls))
            return obj;
    }
    return nullptr;
}

float CScoObj::GetPenWidth() const
{
    // Every object inherits the pen of the root, so in practice all lines are this wide.
    constexpr float rootPenWidth = 0.004f;
    return m_parent != nullptr ? m_parent->GetPenWidth() : rootPenWidth;
}

PointF CScoObj::DragTo(float, float) { return {}; }
bool CScoObj::MoveBy(float, float) { return false; }
void CScoObj::Draw(Painter&, OutputMode) {}
void CScoObj::BeforeBoundsChange(const RectF&) {}
void CScoObj::AfterBoundsChange(const RectF&) {}
void CScoObj::OnSelectionChanged(bool) {}

} // namespace corrieval
