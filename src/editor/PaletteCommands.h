#pragma once

#include "editor/CommandTarget.h"

namespace corrieval {

class CCorrievalView;

// The commands of the four movement galleries on one view. Choosing an entry in a gallery makes it
// the entry the mouse places, in place of any area waiting to be drawn; the gallery whose entry is
// being placed is lit. Nothing can be placed in a locked tune.
class PaletteCommands : public CommandTarget {
public:
    explicit PaletteCommands(CCorrievalView& view) : m_view(view) {}

    bool RunCommand(int id) override;
    bool UpdateCommand(int id, CommandState& state) override;

private:
    CCorrievalView& m_view;
};

} // namespace corrieval
