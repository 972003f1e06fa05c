#include "editor/CorrievalView.h"
#include "editor/EditCommands.h"
#include "editor/StaveNavigation.h"
#include "model/BarEx.h"
#include "notation/NoteBase.h"
#include "notation/NoteEx.h"

#include <QKeyEvent>
#include <algorithm>

// The keys a piper corrects a tune with, without reaching for the ribbon.

namespace corrieval {

bool EditCommands::KeyPressed(const QKeyEvent& event)
{
    // With Ctrl or Alt a letter is a shortcut of the frame's, not an edit.
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0)
        return false;
    switch (event.key()) {
    case Qt::Key_Delete:
        Delete();
        return true;
    case Qt::Key_C:
        ToggleDotCut(CNoteEx::Cut);
        return true;
    case Qt::Key_D:
        ToggleDotCut(CNoteEx::Dotted);
        return true;
    case Qt::Key_G:
        Group();
        return true;
    case Qt::Key_T:
        Tie();
        return true;
    case Qt::Key_U:
        Ungroup();
        return true;
    // Up is higher on the stave, a lower pitch number. Without notes the arrows scroll.
    case Qt::Key_Up:
        return MoveSelectedNotes(-1);
    case Qt::Key_Down:
        return MoveSelectedNotes(1);
    case Qt::Key_Left:
        return SelectAlongStave(false);
    case Qt::Key_Right:
        return SelectAlongStave(true);
    default:
        return false;
    }
}

bool EditCommands::MoveSelectedNotes(int steps)
{
    CScoSelection& selection = m_view.Selection();
    const auto& items = selection.Items();
    const bool notes = std::any_of(items.begin(), items.end(), [](const CScoObj* item) {
        return dynamic_cast<const CNoteBase*>(item) != nullptr;
    });
    if (!notes)
        return false;
    m_view.History().Record(QStringLiteral("Pitch"), [&] { MoveNotes(items, steps); });
    // A drag that follows moves the notes on from where the keys left them.
    selection.ResavePitches();
    return true;
}

bool EditCommands::SelectAlongStave(bool forwards)
{
    CScoSelection& selection = m_view.Selection();
    CScoObj* from = selection.Count() > 0 ? selection.Items().back() : nullptr;
    if (from == nullptr ||
        (dynamic_cast<CNoteBase*>(from) == nullptr && dynamic_cast<CBarEx*>(from) == nullptr))
        return false;
    if (CNoteBase* item = forwards ? NextItem(*from) : PreviousItem(*from)) {
        selection.Clear();
        selection.Add(item);
        m_view.KeepInView(item->GetBounds().Bottom());
    }
    return true;
}

} // namespace corrieval
