#include "notation/FixedNoteGroup.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CFixedNoteGroup, CNoteBase);

bool CFixedNoteGroup::HitTestNote(float x, float y) const { return GetBounds().Contains(x, y); }

bool CFixedNoteGroup::IsWithin(float x, float y, float width, float height) const
{
    return GetBounds().WithinOrTouching({x, y, width, height});
}

std::unique_ptr<CNoteBase> CFixedNoteGroup::Clone() const { return std::make_unique<CFixedNoteGroup>(*this); }

} // namespace corrieval
