#include "editor/PaletteCommands.h"

#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "editor/ViewHost.h"
#include "model/CorrievalDoc.h"

#include <algorithm>

namespace corrieval {

namespace {
bool IsGallery(int id)
{
    return std::ranges::find(command::PaletteGalleries, id) != command::PaletteGalleries.end();
}
} // namespace

bool PaletteCommands::RunCommand(int id)
{
    if (!IsGallery(id))
        return false;
    const int entry = m_view.Host().PaletteEntries(id).Chosen;
    if (entry >= 0) {
        ViewEditState& edit = m_view.EditState();
        edit.PaletteEntry = entry;
        edit.PendingArea = nullptr;
    }
    return true;
}

bool PaletteCommands::UpdateCommand(int id, CommandState& state)
{
    if (!IsGallery(id))
        return false;
    state.enabled = m_view.Document()->Locked == 0;
    state.checked = m_view.Host().PaletteEntries(id).Holds(m_view.EditState().PaletteEntry);
    return true;
}

} // namespace corrieval
