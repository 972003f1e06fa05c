#pragma once

#include "editor/MouseDrag.h"

#include <QObject>
#include <QPoint>
#include <QString>
#include <memory>

class QContextMenuEvent;
class QKeyEvent;
class QMouseEvent;
class QPainter;

namespace corrieval {

class CBarEx;
class CCorrievalView;
class CScoObj;
class CTunePage;
class Painter;
class RubberBand;

// What a press of a mouse button means in the score view: selecting, the rubber band, creating
// and dragging areas, bar lines, repeat markers and notes, placing from the palettes, the cursor
// shapes and the context menu. A drag is a state held between the view's mouse events, so timers
// and play go on while the button is down.
//
// Every change a drag, a drop or a new area makes is one step of the view's undo history, and
// only a kept step marks the tune modified: a click that moved nothing leaves it as it was.
class ViewMouse : public QObject {
public:
    explicit ViewMouse(CCorrievalView& view);
    ~ViewMouse() override;

    void Pressed(QMouseEvent& event);
    void Moved(QMouseEvent& event);
    void Released(QMouseEvent& event);
    void ContextMenu(QContextMenuEvent& event);
    // A key while a drag runs; true when the drag took it.
    bool KeyPressed(const QKeyEvent& event);

    bool Dragging() const { return m_drag != nullptr; }
    // Draws the item being placed in blue where a drop would put it.
    void PaintGhost(Painter& painter) const;
    // Draws the rubber band, if one runs, over the painted view.
    void PaintOverlay(QPainter& painter) const;

protected:
    // The view losing the focus or its window ends a drag.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void LeftPressed(PointF at, bool ctrl);
    void RightPressed();
    // Runs `drag` as one undo step named `label` (none when empty).
    void StartDrag(std::unique_ptr<MouseDrag> drag, const QString& label = {});
    void EndDrag();
    // The band from `at` that selects what lies in it, or creates the pending area on `page`.
    void StartBand(PointF at, CTunePage* page);
    void SelectInBand(CTunePage* page, const RectF& band);
    void CreatePendingArea(CTunePage& page, const RectF& band);
    // A bar chosen alone restarts play from it, or may take repeats.
    void OneBarChosen();
    void SelectOnly(CScoObj* object);
    void DropGhost();
    // Check values ends when a click leaves its area.
    void CheckValuesClick();
    void FollowMouse(PointF at);
    void MoveGhost(PointF at);
    void UpdateCursor(PointF at);
    // The bar under the point, or the bar of the item under it.
    CBarEx* BarAt(PointF at) const;
    // The same, or above and below the staves the bar of the system's first stave at that x:
    // a bracket's leg is dragged along the bracket, over the stave.
    CBarEx* BarBelow(PointF at) const;
    // A click is not a drag: until the pointer leaves the pixel it was pressed on, nothing
    // moves, so a click on a note's stem keeps its pitch and one by a bar line keeps the line.
    bool StillAtPress(const QMouseEvent& event);
    bool Locked() const;
    PointF ToDocument(const QPointF& device) const;

    CCorrievalView& m_view;
    std::unique_ptr<MouseDrag> m_drag;
    RubberBand* m_band = nullptr; // the drag, while it is a band
    bool m_recording = false;     // the drag is an undo step
    QPoint m_press;               // viewport pixel of the last left press
    bool m_leftPress = false;     // the pointer has moved off it since
    // A right press that ended a drag or placing: its context menu event shows nothing.
    bool m_menuSwallowed = false;
};

} // namespace corrieval
