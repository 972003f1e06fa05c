#pragma once

class QContextMenuEvent;
class QKeyEvent;
class QMouseEvent;

namespace corrieval {

class CCorrievalView;

// What a press of a mouse button means in the score view: selecting, the rubber band, creating
// and dragging areas, bar lines, repeat markers and notes, placing from the palettes, the cursor
// shapes and the context menu. A drag is a state held between the view's mouse events, so timers
// and play go on while the button is down.
class ViewMouse {
public:
    explicit ViewMouse(CCorrievalView& view);

    void Pressed(QMouseEvent& event);
    void Moved(QMouseEvent& event);
    void Released(QMouseEvent& event);
    void ContextMenu(QContextMenuEvent& event);
    // A key while a drag runs; true when the drag took it.
    bool KeyPressed(const QKeyEvent& event);

private:
    CCorrievalView& m_view;
};

} // namespace corrieval
