#include "model/StaveArea.h"

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
