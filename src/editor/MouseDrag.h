#pragma once

#include "model/Geometry.h"

namespace corrieval {

// One drag of the left button in the score view, held between the view's mouse events so that
// timers and play go on while it runs. It starts on a press, follows the mouse, and ends once:
// on the button's release, on a key its rule says ends it, on a right press, or when the view
// loses the mouse. Positions are in document inches.
class MouseDrag {
public:
    // What keys do while the drag runs.
    enum class KeyRule {
        // Escape is ignored, so that a habit of pressing it cannot throw away a drag; any other
        // key ends the drag where it stands.
        EscapeIgnored,
        // Every key is ignored.
        AllIgnored,
        // Escape ends the drag without a further step; other keys keep their usual meaning.
        EscapeEnds,
    };

    virtual ~MouseDrag() = default;

    virtual void Move(PointF at) = 0;
    // The button went up at the point; the drag ends after this.
    virtual void Release(PointF at) { Move(at); }
    // The drag is over, however it ended.
    virtual void Finish() {}
    virtual KeyRule Keys() const { return KeyRule::EscapeIgnored; }
};

} // namespace corrieval
