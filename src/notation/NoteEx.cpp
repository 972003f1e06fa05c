#include "notation/NoteEx.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_ABSTRACT_CLASS(CNoteBase, CGraphObjContainer);
CORRIEVAL_IMPLEMENT_CLASS(CNoteEx, CNoteBase);
CORRIEVAL_IMPLEMENT_CLASS(CNoteGroupEx, CNoteBase);
CORRIEVAL_IMPLEMENT_CLASS(CFixedNoteGroup, CNoteBase);

namespace {
// Near and far edges may touch.
bool RectWithin(const RectF& inner, float x, float y, float width, float height)
{
    return inner.X >= x && inner.Y >= y && inner.Right() <= x + width && inner.Bottom() <= y + height;
}
} // namespace

// Until a note has been drawn it has no shape, and nothing can hit it.
bool CNoteEx::HitTestNote(float x, float y) const { return HeadRect.Contains(x, y); }

bool CNoteEx::IsWithin(float x, float y, float width, float height) const
{
    return RectWithin(HeadRect, x, y, width, height);
}

bool CNoteGroupEx::HitTestNote(float x, float y) const { return GetBounds().Contains(x, y); }

bool CNoteGroupEx::IsWithin(float x, float y, float width, float height) const
{
    return RectWithin(GetBounds(), x, y, width, height);
}

bool CFixedNoteGroup::HitTestNote(float x, float y) const { return GetBounds().Contains(x, y); }

bool CFixedNoteGroup::IsWithin(float x, float y, float width, float height) const
{
    return RectWithin(GetBounds(), x, y, width, height);
}

} // namespace corrieval
