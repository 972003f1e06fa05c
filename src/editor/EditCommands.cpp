#include "editor/EditCommands.h"

#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "editor/RepeatCommands.h"
#include "editor/ScoreClipboard.h"
#include "model/AbbreviationArea.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/TunePage.h"
#include "notation/GroupCommands.h"
#include "notation/ImageArea.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TextArea.h"

#include <algorithm>

namespace corrieval {

using namespace command;

namespace {

// A tie joins two notes of one pitch, or any three as a triplet, on one stave; or a group of
// three becomes a triplet.
bool MayTie(const CScoSelection& selection)
{
    if (const auto* group = selection.Single<CNoteGroupEx>())
        return group->Notes().size() == 3;
    const std::vector<CNoteEx*> notes = selection.Notes();
    if (notes.size() < 2)
        return false;
    const CScoObj* stave = notes.front()->FindAncestor<CStave>();
    const bool oneStave = std::all_of(
        notes.begin(), notes.end(), [stave](CNoteEx* note) { return note->FindAncestor<CStave>() == stave; });
    const bool onePitch = std::all_of(
        notes.begin(), notes.end(), [&](const CNoteEx* note) { return note->Pitch == notes.front()->Pitch; });
    return oneStave && (notes.size() == 3 || onePitch);
}

} // namespace

EditCommands::EditCommands(CCorrievalView& view) : m_view(view) {}

bool EditCommands::Editable() const
{
    return m_view.Document()->Locked == 0;
}

const EditCommands::ActionTable& EditCommands::Actions()
{
    static const ActionTable table = {
        {InsertPage, [](EditCommands& c) { c.AddPage(); }},
        {InsertText, [](EditCommands& c) { c.PendArea(CTextArea::Class); }},
        {InsertMusic, [](EditCommands& c) { c.PendArea(CStaveArea::Class); }},
        {InsertAbbreviation, [](EditCommands& c) { c.PendArea(CAbbreviationArea::Class); }},
        {InsertImage, [](EditCommands& c) { c.PendArea(CImageArea::Class); }},
        {Dot, [](EditCommands& c) { c.ToggleDotCut(CNoteEx::Dotted); }},
        {CutNote, [](EditCommands& c) { c.ToggleDotCut(CNoteEx::Cut); }},
        {command::Tie, [](EditCommands& c) { c.Tie(); }},
        {command::Group, [](EditCommands& c) { c.Group(); }},
        {command::Ungroup, [](EditCommands& c) { c.Ungroup(); }},
        {command::InsertBar, [](EditCommands& c) { c.InsertBar(); }},
        {InsertRepeats, [](EditCommands& c) { c.InsertRepeat(); }},
        {DeleteRepeats, [](EditCommands& c) { c.DeleteRepeat(); }},
        {command::Delete, [](EditCommands& c) { c.Delete(); }},
        {command::Properties, [](EditCommands& c) { c.Properties(); }},
        {command::AutoOrganise, [](EditCommands& c) { c.AutoOrganise(); }},
        {BringToFront, [](EditCommands& c) { c.Restack(true); }},
        {SendToBack, [](EditCommands& c) { c.Restack(false); }},
        {AlignLeft, [](EditCommands& c) { c.Justify(CTextArea::Left); }},
        {AlignRight, [](EditCommands& c) { c.Justify(CTextArea::Right); }},
        {AlignCentre, [](EditCommands& c) { c.Justify(CTextArea::Centre); }},
        {CheckValues, [](EditCommands& c) { c.ToggleCheckValues(); }},
        {Copy, [](EditCommands& c) { ScoreClipboard::Instance().Copy(c.m_view.Selection().Items()); }},
        {command::Cut, [](EditCommands& c) { c.Cut(); }},
        {command::Paste, [](EditCommands& c) { c.Paste(); }},
        {command::SelectAll, [](EditCommands& c) { c.SelectAllNotes(); }},
        {Undo, [](EditCommands& c) { c.m_view.History().Undo(); }},
        {Redo, [](EditCommands& c) { c.m_view.History().Redo(); }},
    };
    return table;
}

bool EditCommands::RunCommand(int id)
{
    const auto action = Actions().find(id);
    if (action == Actions().end())
        return false;
    action->second(*this);
    return true;
}

bool EditCommands::UpdateCommand(int id, CommandState& state)
{
    if (!Actions().contains(id))
        return false;
    state.enabled = Enabled(id);
    state.checked = Checked(id);
    return true;
}

bool EditCommands::Enabled(int id) const
{
    const CScoSelection& selection = m_view.Selection();
    const CCorrievalDoc& doc = *m_view.Document();
    const CScoObj* head = selection.Head();
    const auto* bar = selection.Single<CBarEx>();
    const bool repeatsMayChange = bar != nullptr && m_view.EditState().MayInsertRepeats && Editable();
    switch (id) {
    case Dot:
    case CutNote:
        return dynamic_cast<const CNoteEx*>(head) != nullptr;
    case command::Tie:
        return MayTie(selection);
    case command::Group:
        return CanGroup(selection.Items());
    case command::Ungroup:
        return CanUngroup(selection.Items());
    case command::InsertBar:
        return dynamic_cast<const CBarEx*>(head) != nullptr;
    case InsertRepeats:
        return repeatsMayChange && CanInsertRepeat(*bar);
    case DeleteRepeats:
        return repeatsMayChange && CanDeleteRepeat(*bar);
    case command::Delete:
        return head != nullptr && Editable() &&
               !(dynamic_cast<const CTunePage*>(head) != nullptr && doc.Pages.size() == 1);
    case command::Properties:
        return head != nullptr && Editable();
    case command::AutoOrganise:
        return bar != nullptr || selection.Single<CStaveArea>() != nullptr ||
               selection.Single<CNoteGroupEx>() != nullptr;
    case BringToFront:
    case SendToBack:
        return selection.Single<CPageArea>() != nullptr;
    case AlignLeft:
    case AlignRight:
    case AlignCentre:
        return selection.Single<CTextArea>() != nullptr;
    case CheckValues:
        return selection.Single<CStaveArea>() != nullptr;
    case Copy:
        return ScoreClipboard::CanCopy(selection.Items());
    case command::Cut:
        return ScoreClipboard::CanCut(selection.Items());
    case command::Paste:
        return ScoreClipboard::Instance().CanPaste(PasteTarget());
    case command::SelectAll:
        return SelectAllArea() != nullptr;
    case Undo:
        return m_view.History().CanUndo();
    case Redo:
        return m_view.History().CanRedo();
    default:
        return true; // the page and the four areas
    }
}

bool EditCommands::Checked(int id) const
{
    const CRuntimeClass* pending = m_view.EditState().PendingArea;
    const auto* note = dynamic_cast<const CNoteEx*>(m_view.Selection().Head());
    switch (id) {
    case InsertText:
        return pending == &CTextArea::Class;
    case InsertMusic:
        return pending == &CStaveArea::Class;
    case InsertAbbreviation:
        return pending == &CAbbreviationArea::Class;
    case InsertImage:
        return pending == &CImageArea::Class;
    case Dot:
        return note != nullptr && note->DotCut == CNoteEx::Dotted;
    case CutNote:
        return note != nullptr && note->DotCut == CNoteEx::Cut;
    case CheckValues:
        return m_view.Document()->CheckValues != 0;
    default:
        return false;
    }
}

} // namespace corrieval
