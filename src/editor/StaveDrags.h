#pragma once

#include "editor/MouseDrag.h"

#include <functional>

namespace corrieval {

class CBarEx;
class CCorrievalDoc;
class CRepeatTiming;
class CStaveGroup;

// Drags the line at the start of a bar, in every stave of its system; the bar before it takes up
// the difference. Keys do nothing here: the line stays with the mouse until the button goes up.
class BarLineDrag : public MouseDrag {
public:
    BarLineDrag(CStaveGroup& group, const CBarEx& bar) : m_group(group), m_bar(bar) {}

    void Move(PointF at) override;
    KeyRule Keys() const override { return KeyRule::AllIgnored; }

private:
    CStaveGroup& m_group;
    const CBarEx& m_bar;
};

// Drags one leg of a first-and-second-time bracket over the bars, and stamps the notes afresh
// when it ends, so that play follows the new sections.
class RepeatLegDrag : public MouseDrag {
public:
    using BarAt = std::function<CBarEx*(PointF)>;

    // `leg` as CRepeatTiming::LegAt gives it; `barAt` finds the bar under a point, or null.
    RepeatLegDrag(CCorrievalDoc& doc, CRepeatTiming& marker, int leg, BarAt barAt);

    void Move(PointF at) override;
    void Finish() override;

private:
    CCorrievalDoc& m_doc;
    CRepeatTiming& m_marker;
    int m_leg;
    BarAt m_barAt;
};

} // namespace corrieval
