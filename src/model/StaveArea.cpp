#include "model/StaveArea.h"

#include "model/BarEx.h"
#include "model/Stave.h"
#include "notation/RepeatTiming.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CStaveArea, CPageArea);
CORRIEVAL_IMPLEMENT_CLASS(CAbbreviationArea, CStaveArea);

CStaveArea::CStaveArea()
{
    LeftMargin = 0;
    RightMargin = 0;
    TopMargin = 0.1f;
    BottomMargin = 0;
}

CStaveArea::~CStaveArea() = default;

CRepeatTiming* CStaveArea::FindRepeatMarker(std::int32_t id) const
{
    for (const auto& marker : RepeatMarkers) {
        if (marker->RepeatId == id)
            return marker.get();
    }
    return nullptr;
}

CBarEx* CStaveArea::PreviousBar(const CBarEx& bar)
{
    const CGraphObjContainer* stave = bar.Parent();
    if (stave == nullptr)
        return nullptr;
    const int index = stave->IndexOfChild(&bar);
    return index > 0 ? static_cast<CBarEx*>(stave->ChildAt(static_cast<std::size_t>(index - 1))) : nullptr;
}

CBarEx* CStaveArea::NextBar(const CBarEx& bar)
{
    const CGraphObjContainer* stave = bar.Parent();
    if (stave == nullptr)
        return nullptr;
    const auto index = static_cast<std::size_t>(stave->IndexOfChild(&bar));
    if (index + 1 < stave->ChildCount())
        return static_cast<CBarEx*>(stave->ChildAt(index + 1));

    const CGraphObjContainer* group = stave->Parent();
    const CGraphObjContainer* area = group != nullptr ? group->Parent() : nullptr;
    if (area == nullptr)
        return nullptr;
    const int part = group->IndexOfChild(stave);
    const int groupIndex = area->IndexOfChild(group);
    if (part < 0 || groupIndex < 0 || static_cast<std::size_t>(groupIndex) + 1 >= area->ChildCount())
        return nullptr;
    const auto* next = static_cast<const CGraphObjContainer*>(area->ChildAt(static_cast<std::size_t>(groupIndex) + 1));
    if (static_cast<std::size_t>(part) >= next->ChildCount())
        return nullptr;
    const auto* nextStave = static_cast<const CGraphObjContainer*>(next->ChildAt(static_cast<std::size_t>(part)));
    return nextStave->ChildCount() > 0 ? static_cast<CBarEx*>(nextStave->ChildAt(0)) : nullptr;
}

CAbbreviationArea::CAbbreviationArea()
{
    auto* group = static_cast<CStaveGroup*>(AddChild(std::make_unique<CStaveGroup>(), true));
    auto makeStave = [group] {
        auto stave = std::make_unique<CStave>();
        stave->TopMargin = 0.1f;
        stave->BottomMargin = 0.1f;
        return static_cast<CStave*>(group->AddChild(std::move(stave), true));
    };
    WrittenStave = makeStave();
    PlayedStave = makeStave();
}

} // namespace corrieval
