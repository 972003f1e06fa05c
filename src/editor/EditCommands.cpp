#include "editor/EditCommands.h"

#include "editor/CorrievalView.h"

namespace corrieval {

EditCommands::EditCommands(CCorrievalView& view) : m_view(view) {}

bool EditCommands::RunCommand(int)
{
    return false;
}

bool EditCommands::UpdateCommand(int, CommandState&)
{
    return false;
}

bool EditCommands::KeyPressed(const QKeyEvent&)
{
    return false;
}

} // namespace corrieval
