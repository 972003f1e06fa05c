#pragma once

#include "editor/MouseDrag.h"

#include <functional>

namespace corrieval {

class CScoObj;
class CScoSelection;

// Drags the selected notes, movements and groups by one of them, the lead. The lead goes to the
// bar under the mouse and takes its pitch from the height; the others move by the same distance
// and, if they are notes, by the same pitch steps from where they started, each kept between
// High A and Low G. When the last step left one of them outside a bar, all go back to where they
// were.
class NoteDrag : public MouseDrag {
public:
    // `press` is where the button went down on the lead; `repaint` is told every object whose
    // place changes, before and after.
    NoteDrag(CScoSelection& selection, CScoObj& lead, PointF press,
             std::function<void(const CScoObj&)> repaint);

    void Move(PointF at) override;
    void Finish() override;
    KeyRule Keys() const override { return KeyRule::EscapeEnds; }

    // Moves the lead so that its centre follows x, and the others along; true when every other
    // item landed inside a bar.
    bool MoveSelection(float x, float y);

private:
    void RepaintAll() const;

    CScoSelection& m_selection;
    CScoObj& m_lead;
    float m_grabOffset; // from the mouse to the lead's centre
    std::function<void(const CScoObj&)> m_repaint;
    bool m_lastMoveFitted = false;
};

} // namespace corrieval
