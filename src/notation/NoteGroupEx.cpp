#include "notation/NoteGroupEx.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CNoteGroupEx, CNoteBase);

bool CNoteGroupEx::HitTestNote(float x, float y) const { return GetBounds().Contains(x, y); }

bool CNoteGroupEx::IsWithin(float x, float y, float width, float height) const
{
    return GetBounds().WithinOrTouching({x, y, width, height});
}

std::unique_ptr<CNoteBase> CNoteGroupEx::Clone() const { return std::make_unique<CNoteGroupEx>(); }

} // namespace corrieval
