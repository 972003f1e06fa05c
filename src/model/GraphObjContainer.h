#pragma once

#include "model/ScoObj.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace corrieval {

// A score object with an ordered, owning list of children. The order is the stacking order: the
// head is drawn first and lies lowest, the tail is on top and wins hit tests.
class CGraphObjContainer : public CScoObj {
    CORRIEVAL_DECLARE_CLASS()

public:
    using ChildList = std::vector<std::unique_ptr<CScoObj>>;

    CGraphObjContainer() = default;
    CGraphObjContainer(const CGraphObjContainer& other) : CScoObj(other) {}
    // Children are deleted from the tail, each out of the list before it goes, so no
    // OnChildRemoved runs while a whole subtree is torn down.
    ~CGraphObjContainer() override;

    const ChildList& Children() const { return m_children; }
    std::size_t ChildCount() const { return m_children.size(); }
    CScoObj* ChildAt(std::size_t index) const { return m_children.at(index).get(); }

    // Null is ignored. Each returns the object now in the list.
    virtual CScoObj* AddChild(std::unique_ptr<CScoObj> object, bool flag);
    // Inserts after the child at `index`, at the end when `index` equals the child count, so 0
    // puts the object second; an index past the count throws std::invalid_argument.
    virtual CScoObj* InsertChildAfter(std::size_t index, std::unique_ptr<CScoObj> object, bool flag);
    virtual CScoObj* AppendChild(std::unique_ptr<CScoObj> object, bool flag);
    // Inserts so that the object stands at `position` (clamped to the end), with the same parent
    // and hook steps as AddChild: for ordered inserts of bars and notes.
    CScoObj* InsertChildAt(std::size_t position, std::unique_ptr<CScoObj> object, bool flag);
    virtual void OnChildAdded(CScoObj* object, bool flag);
    virtual void OnChildRemoved(CScoObj* object);

    // Takes a direct child out of the list. With `destroy` it leaves the view's selection and is
    // deleted; otherwise the caller receives it, detached. Not a child: nothing happens.
    std::unique_ptr<CScoObj> RemoveChild(CScoObj* object, bool destroy);
    int IndexOfChild(const CScoObj* object) const;
    bool ContainsDeep(const CScoObj* object) const;

    // The topmost object under the point, searching down through containers.
    CScoObj* HitTest(float x, float y);
    // Rubber-band selection: notes whose heads lie wholly inside, never whole groups.
    void SelectInRect(const RectF& rect, const std::function<void(CScoObj&)>& select);
    void BringToFront(CScoObj* object);
    void SendToBack(CScoObj* object);

    // Loading appends the children of a list that has been read and gives them this parent,
    // without AddChild and its hooks.
    void AdoptLoadedChildren(ChildList children);

    void Draw(Painter& painter, OutputMode mode) override;

private:
    friend class CScoObj;

    ChildList::iterator Find(const CScoObj* object);
    std::unique_ptr<CScoObj> TakeFromList(const CScoObj* object);
    CScoObj* Attach(ChildList::iterator where, std::unique_ptr<CScoObj> object, bool flag);

    ChildList m_children;
};

} // namespace corrieval
