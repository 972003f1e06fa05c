#include "editor/NoteDrag.h"

#include "editor/ScoSelection.h"
#include "notation/NoteEx.h"
#include "notation/TieEx.h"

#include <algorithm>
#include <utility>

namespace corrieval {

NoteDrag::NoteDrag(CScoSelection& selection, CScoObj& lead, PointF press,
                   std::function<void(const CScoObj&)> repaint)
    : m_selection(selection), m_lead(lead),
      m_grabOffset(lead.GetBounds().X + lead.GetBounds().Width * 0.5f - press.X),
      m_repaint(std::move(repaint))
{
    for (CNoteEx* note : m_selection.Notes())
        note->SaveState();
}

void NoteDrag::Move(PointF at)
{
    m_lastMoveFitted = MoveSelection(at.X + m_grabOffset, at.Y);
}

bool NoteDrag::MoveSelection(float x, float y)
{
    RepaintAll();
    const PointF offset = m_lead.DragTo(x, y);
    auto* leadNote = dynamic_cast<CNoteEx*>(&m_lead);
    const int steps = leadNote != nullptr
                          ? leadNote->Pitch - m_selection.SavedPitch(*leadNote).value_or(leadNote->Pitch)
                          : 0;
    bool fitted = true;
    for (CScoObj* item : m_selection.Items()) {
        if (item != &m_lead && item->IsNoteItem())
            fitted = item->MoveBy(offset.X, offset.Y) && fitted;
    }
    if (leadNote != nullptr) {
        // From each note's own starting pitch, so that a note held at the top or bottom regains
        // its distance when the drag comes back.
        for (CNoteEx* note : m_selection.Notes()) {
            if (note != leadNote)
                note->Pitch = std::clamp(m_selection.SavedPitch(*note).value_or(note->Pitch) + steps,
                                         HighestPitch, LowestPitch);
        }
    }
    RepaintAll();
    return fitted;
}

void NoteDrag::Finish()
{
    if (m_lastMoveFitted)
        return;
    for (CScoObj* item : m_selection.Items()) {
        if (!item->IsNoteItem())
            continue;
        m_repaint(*item);
        if (auto* note = dynamic_cast<CNoteEx*>(item))
            note->RestoreState();
        if (auto* shown = dynamic_cast<CNoteBase*>(item))
            shown->SetColour(CNoteBase::SelectedColour);
        m_repaint(*item);
    }
}

void NoteDrag::RepaintAll() const
{
    for (const CScoObj* item : m_selection.Items()) {
        m_repaint(*item);
        if (const auto* note = dynamic_cast<const CNoteEx*>(item); note != nullptr && note->Tie != nullptr)
            m_repaint(*note->Tie);
    }
}

} // namespace corrieval
