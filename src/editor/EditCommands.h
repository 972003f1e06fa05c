#pragma once

#include "editor/CommandTarget.h"

class QKeyEvent;

namespace corrieval {

class CCorrievalView;

// The commands that change a tune, on the view's selection: the Insert and Edit categories of the
// ribbon, the clipboard, undo and redo, and the keys a piper corrects a tune with. Every change
// is recorded in the view's undo history.
class EditCommands : public CommandTarget {
public:
    explicit EditCommands(CCorrievalView& view);

    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;
    // The letter keys, Delete and the arrows; false for any other key.
    bool KeyPressed(const QKeyEvent& event);

private:
    CCorrievalView& m_view;
};

} // namespace corrieval
