#include "model/GraphObjContainer.h"

#include "model/ActiveView.h"
#include "notation/NoteBase.h"
#include "notation/NoteEx.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CGraphObjContainer, CScoObj);

CGraphObjContainer::~CGraphObjContainer()
{
    while (!m_children.empty()) {
        std::unique_ptr<CScoObj> child = std::move(m_children.back());
        m_children.pop_back();
        child->m_parent = nullptr;
    }
}

CScoObj* CGraphObjContainer::Attach(ChildList::iterator where, std::unique_ptr<CScoObj> object, bool flag)
{
    if (!object)
        return nullptr;
    CScoObj* raw = object.get();
    m_children.insert(where, std::move(object));
    // The object is in the list already, so SetParent does not add it a second time.
    raw->SetParent(this);
    OnChildAdded(raw, flag);
    return raw;
}

CScoObj* CGraphObjContainer::AddChild(std::unique_ptr<CScoObj> object, bool flag)
{
    return Attach(m_children.end(), std::move(object), flag);
}

CScoObj* CGraphObjContainer::AppendChild(std::unique_ptr<CScoObj> object, bool flag)
{
    return Attach(m_children.end(), std::move(object), flag);
}

CScoObj* CGraphObjContainer::InsertChildAfter(std::size_t index, std::unique_ptr<CScoObj> object, bool flag)
{
    if (!object)
        return nullptr;
    if (index > m_children.size())
        throw std::invalid_argument("InsertChildAfter: index past the end of the child list");
    return InsertChildAt(index + 1, std::move(object), flag);
}

CScoObj* CGraphObjContainer::InsertChildAt(std::size_t position, std::unique_ptr<CScoObj> object, bool flag)
{
    position = std::min(position, m_children.size());
    return Attach(m_children.begin() + static_cast<std::ptrdiff_t>(position), std::move(object), flag);
}

void CGraphObjContainer::OnChildAdded(CScoObj*, bool) {}
void CGraphObjContainer::OnChildRemoved(CScoObj*) {}

CGraphObjContainer::ChildList::iterator CGraphObjContainer::Find(const CScoObj* object)
{
    return std::find_if(m_children.begin(), m_children.end(),
                        [object](const std::unique_ptr<CScoObj>& c) { return c.get() == object; });
}

std::unique_ptr<CScoObj> CGraphObjContainer::TakeFromList(const CScoObj* object)
{
    auto it = Find(object);
    if (object == nullptr || it == m_children.end())
        return nullptr;
    std::unique_ptr<CScoObj> taken = std::move(*it);
    m_children.erase(it);
    return taken;
}

std::unique_ptr<CScoObj> CGraphObjContainer::RemoveChild(CScoObj* object, bool destroy)
{
    std::unique_ptr<CScoObj> taken = TakeFromList(object);
    if (!taken)
        return nullptr;
    taken->m_parent = nullptr;
    OnChildRemoved(taken.get());
    if (destroy) {
        if (ScoreView* view = ActiveView())
            view->RemoveFromSelection(*taken);
        taken.reset();
    }
    InvalidateSelf();
    return taken;
}

int CGraphObjContainer::IndexOfChild(const CScoObj* object) const
{
    if (object == nullptr)
        return -1;
    for (std::size_t i = 0; i < m_children.size(); ++i) {
        if (m_children[i].get() == object)
            return static_cast<int>(i);
    }
    return -1;
}

bool CGraphObjContainer::ContainsDeep(const CScoObj* object) const
{
    for (const auto& child : m_children) {
        if (child.get() == object)
            return true;
        if (auto* container = dynamic_cast<const CGraphObjContainer*>(child.get());
            container != nullptr && container->ContainsDeep(object))
            return true;
    }
    return false;
}

CScoObj* CGraphObjContainer::HitTest(float x, float y)
{
    CScoObj* result = nullptr;
    for (const auto& child : m_children) {
        if (auto* note = dynamic_cast<CNoteBase*>(child.get())) {
            if (note->HitTestNote(x, y))
                result = note;
            continue;
        }
        if (!child->GetBounds().Contains(x, y))
            continue;
        auto* container = dynamic_cast<CGraphObjContainer*>(child.get());
        CScoObj* inner = container != nullptr ? container->HitTest(x, y) : nullptr;
        result = inner != nullptr ? inner : child.get();
    }
    return result;
}

void CGraphObjContainer::SelectInRect(const RectF& rect, const std::function<void(CScoObj&)>& select)
{
    for (const auto& child : m_children) {
        if (auto* note = dynamic_cast<CNoteEx*>(child.get());
            note != nullptr && note->IsWithin(rect.X, rect.Y, rect.Width, rect.Height))
            select(*note);
        if (auto* container = dynamic_cast<CGraphObjContainer*>(child.get());
            container != nullptr && child->GetBounds().Overlaps(rect))
            container->SelectInRect(rect, select);
    }
}

void CGraphObjContainer::BringToFront(CScoObj* object)
{
    auto it = Find(object);
    if (object == nullptr || it == m_children.end())
        return;
    std::rotate(it, it + 1, m_children.end());
    InvalidateSelf();
}

void CGraphObjContainer::SendToBack(CScoObj* object)
{
    auto it = Find(object);
    if (object == nullptr || it == m_children.end())
        return;
    std::rotate(m_children.begin(), it, it + 1);
    InvalidateSelf();
}

void CGraphObjContainer::AdoptLoadedChildren(ChildList children)
{
    for (auto& child : children) {
        CScoObj* raw = child.get();
        m_children.push_back(std::move(child));
        raw->SetParent(this);
    }
}

void CGraphObjContainer::Draw(Painter& painter, OutputMode mode)
{
    for (const auto& child : m_children)
        child->DrawIfVisible(painter, mode);
}

} // namespace corrieval
