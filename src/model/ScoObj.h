#pragma once

#include "model/Geometry.h"
#include "model/Object.h"
#include "model/Painter.h"

namespace corrieval {

class CGraphObjContainer;

// Base of everything on a page of a tune: one rectangle in document inches, four margins that
// inset the content, a parent link and a selection flag. The score is one tree of these.
class CScoObj : public CObject {
    CORRIEVAL_DECLARE_CLASS()

public:
    CScoObj() = default;
    // A copy takes the rectangle only: margins, parent and selection start clear.
    CScoObj(const CScoObj& other);

    float LeftMargin = 0;
    float RightMargin = 0;
    float TopMargin = 0;
    float BottomMargin = 0;

    void SetMargins(float all) { LeftMargin = RightMargin = TopMargin = BottomMargin = all; }

    // The stored rectangle; GetBounds may compute another one for objects whose extent follows
    // their content.
    const RectF& Bounds() const { return m_bounds; }
    // Bounds less the margins.
    RectF ContentBox() const;
    // Every change of the rectangle goes through here so that both hooks run.
    void SetBounds(float x, float y, float width, float height);
    void SetBounds(const RectF& r) { SetBounds(r.X, r.Y, r.Width, r.Height); }
    // Reading a file restores the rectangle as it was stored; the layout hooks must not run on
    // a tree that is still half read.
    void RestoreStoredBounds(const RectF& r) { m_bounds = r; }

    CGraphObjContainer* Parent() const { return m_parent; }
    // Moves this object under `parent`. An object that is a child of its present parent moves
    // with its ownership; a detached object must already be in the new parent's list (loading).
    void SetParent(CGraphObjContainer* parent);

    bool Selected() const { return m_selected; }
    void SetSelected(bool on);

    void DrawIfVisible(Painter& painter, OutputMode mode);
    void InvalidateSelf() const;

    CScoObj* FindAncestor(const CRuntimeClass& cls);
    template <class T> T* FindAncestor() { return static_cast<T*>(FindAncestor(T::Class)); }

    virtual RectF GetBounds() const { return m_bounds; }
    virtual bool IsSelectable() const { return false; }
    virtual bool IsNoteItem() const { return false; }
    virtual bool IsMusicHolder() const { return false; }
    virtual bool IsAreaItem() const { return false; }
    virtual float GetPenWidth() const;
    virtual PointF DragTo(float x, float y);
    virtual bool MoveBy(float dx, float dy);
    virtual void AutoOrganise() {}
    virtual void RefitContent() {}
    virtual void Draw(Painter& painter, OutputMode mode);
    virtual void BeforeBoundsChange(const RectF& newBounds);
    virtual void AfterBoundsChange(const RectF& oldBounds);
    virtual void OnSelectionChanged(bool selected);

private:
    friend class CGraphObjContainer;

    RectF m_bounds;
    CGraphObjContainer* m_parent = nullptr;
    bool m_selected = false;
};

} // namespace corrieval
