#include "editor/CorrievalView.h"
#include "editor/DeleteCommands.h"
#include "editor/EditCommands.h"
#include "editor/RepeatCommands.h"
#include "editor/ScoreClipboard.h"
#include "model/CorrievalDoc.h"
#include "model/TunePage.h"

// Cut, copy and paste as the view runs them: the clipboard itself knows nothing of views.

namespace corrieval {

CScoObj* EditCommands::PasteTarget() const
{
    if (CScoObj* head = m_view.Selection().Head())
        return head;
    return m_view.FirstPageInView();
}

void EditCommands::Cut()
{
    CScoSelection& selection = m_view.Selection();
    if (!ScoreClipboard::CanCut(selection.Items()))
        return;
    ScoreClipboard::Instance().Copy(selection.Items());
    // What was copied goes as Delete takes it: a bar with its column, a page after the question,
    // and tied notes not at all.
    m_view.History().Record(QStringLiteral("Cut"), [&] { DeleteSelected(selection, *m_view.Document()); });
    ForgetRemoved();
    m_view.OnUpdate();
}

void EditCommands::Paste()
{
    CScoObj* target = PasteTarget();
    if (!ScoreClipboard::Instance().CanPaste(target))
        return;
    // Pasted notes arrive out of any bracket; those landing inside one play on its pass only.
    m_view.History().Record(QStringLiteral("Paste"), [&] {
        StampNotesAddedBy(*m_view.Document(), [target] { ScoreClipboard::Instance().Paste(target); });
    });
    m_view.OnUpdate();
}

} // namespace corrieval
