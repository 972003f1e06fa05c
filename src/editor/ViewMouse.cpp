#include "editor/ViewMouse.h"

#include "editor/CorrievalView.h"

namespace corrieval {

ViewMouse::ViewMouse(CCorrievalView& view) : m_view(view) {}

void ViewMouse::Pressed(QMouseEvent&) {}

void ViewMouse::Moved(QMouseEvent&) {}

void ViewMouse::Released(QMouseEvent&) {}

void ViewMouse::ContextMenu(QContextMenuEvent&) {}

bool ViewMouse::KeyPressed(const QKeyEvent&)
{
    return false;
}

} // namespace corrieval
