#pragma once

#include "model/GraphObjContainer.h"

namespace corrieval {

// One page of a tune. Its margins are the page margins; its children are the page areas, in
// stacking order.
class CTunePage : public CGraphObjContainer {
    CORRIEVAL_DECLARE_CLASS()

public:
    static constexpr float DefaultMargin = 0.4f;

    CTunePage();

    // Moving a page carries its areas along; a change of paper size never reflows them.
    void AfterBoundsChange(const RectF& oldBounds) override;
    // The paper with its shadow and the margin hatch on the screen, then the areas.
    void Draw(Painter& painter, OutputMode mode) override;
};

} // namespace corrieval
