#pragma once

#include "model/GraphObjContainer.h"

#include <array>

namespace corrieval {

// A free rectangle on a page that can be placed, sized and stacked by hand: what music, text,
// image and abbreviation areas have in common. None of its own fields is stored in the file.
class CPageArea : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    CPageArea();
    CPageArea(const CPageArea& other);

    bool IsSelectable() const override { return true; }
    bool IsAreaItem() const override { return true; }

    float MinimumWidth = 2.0f;
    float MinimumHeight = 0.2f;
    std::array<RectF, 8> Handles{};
    float FrameWidth = 0;
    float HandleSize = 0;
};

} // namespace corrieval
