#include "model/AbbreviationArea.h"

#include "model/Stave.h"

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CAbbreviationArea, CStaveArea);

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
