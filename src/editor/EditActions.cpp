#include "editor/CheckValues.h"
#include "editor/CommandIds.h"
#include "editor/CorrievalView.h"
#include "editor/DeleteCommands.h"
#include "editor/EditCommands.h"
#include "editor/PropertyDialogs.h"
#include "editor/RepeatCommands.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Messages.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/GroupCommands.h"
#include "notation/ImageArea.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TextArea.h"
#include "notation/TieCommand.h"

#include <algorithm>
#include <iterator>

// What each editing command does to the tune, every change one step of the view's history.

namespace corrieval {

using namespace command;

namespace {

// Each command's caption, which names its step in the undo history ("Undo Delete").
struct CommandCaption {
    int Id;
    const char* Text;
};
constexpr CommandCaption kCaptions[] = {
    {InsertPage, "Page"},
    {Dot, "Dot"},
    {CutNote, "Cut"},
    {command::Tie, "Tie"},
    {command::Group, "Group"},
    {command::Ungroup, "Ungroup"},
    {command::InsertBar, "Insert bar"},
    {InsertRepeats, "Repeats"},
    {DeleteRepeats, "Delete repeats"},
    {command::Delete, "Delete"},
    {command::Properties, "Properties"},
    {command::AutoOrganise, "Auto organise"},
    {BringToFront, "Bring to front"},
    {SendToBack, "Send to back"},
    {AlignLeft, "Left"},
    {AlignRight, "Right"},
    {AlignCentre, "Centre"},
    {CheckValues, "Check values"},
};

QString Caption(int id)
{
    const auto* found = std::find_if(std::begin(kCaptions), std::end(kCaptions),
                                     [id](const CommandCaption& each) { return each.Id == id; });
    return found != std::end(kCaptions) ? QString::fromLatin1(found->Text) : QString();
}

bool InDocument(const CCorrievalDoc& doc, const CScoObj* object)
{
    return std::any_of(doc.Pages.begin(), doc.Pages.end(),
                       [object](const auto& page) { return page->ContainsDeep(object); });
}

} // namespace

void EditCommands::AddPage()
{
    CCorrievalDoc& doc = *m_view.Document();
    m_view.History().Record(Caption(InsertPage), [&] { doc.AddPage(doc.Pages.size()); });
}

void EditCommands::PendArea(const CRuntimeClass& kind)
{
    if (!Editable())
        return;
    ViewEditState& edit = m_view.EditState();
    edit.PendingArea = &kind;
    // Drawing an area ends placing notes.
    edit.PaletteEntry = -1;
    edit.Ghost = nullptr;
    edit.GhostTarget = nullptr;
    m_view.viewport()->update();
}

void EditCommands::ToggleDotCut(int kind)
{
    m_view.History().Record(Caption(kind == CNoteEx::Dotted ? Dot : CutNote), [&] {
        for (CNoteEx* note : m_view.Selection().Notes())
            note->SetDotCut(note->DotCut == kind ? CNoteEx::Plain : kind);
    });
}

void EditCommands::Tie()
{
    m_view.History().Record(Caption(command::Tie),
                            [&] { ToggleTie(m_view.Selection().Items(), *m_view.Document()); });
}

void EditCommands::Group()
{
    CScoSelection& selection = m_view.Selection();
    if (!CanGroup(selection.Items()))
        return;
    m_view.History().Record(Caption(command::Group), [&] {
        GroupNotes(selection.Items());
        selection.Clear();
    });
}

void EditCommands::Ungroup()
{
    CScoSelection& selection = m_view.Selection();
    if (!CanUngroup(selection.Items()))
        return;
    m_view.History().Record(Caption(command::Ungroup), [&] {
        const std::vector<CScoObj*> items = selection.Items();
        // Ungrouping may delete a group that is selected: the selection lets go first.
        selection.Clear();
        UngroupNotes(items);
    });
}

void EditCommands::Delete()
{
    m_view.History().Record(Caption(command::Delete),
                            [&] { DeleteSelected(m_view.Selection(), *m_view.Document()); });
    ForgetRemoved();
    m_view.OnUpdate();
}

void EditCommands::ForgetRemoved()
{
    ViewEditState& edit = m_view.EditState();
    // The mouse finds the bar under it again at its next move.
    edit.GhostTarget = nullptr;
    if (edit.CheckValuesArea != nullptr && !InDocument(*m_view.Document(), edit.CheckValuesArea))
        edit.CheckValuesArea = nullptr;
}

void EditCommands::InsertBar()
{
    auto* bar = dynamic_cast<CBarEx*>(m_view.Selection().Head());
    auto* stave = bar != nullptr ? dynamic_cast<CStave*>(bar->Parent()) : nullptr;
    auto* group = stave != nullptr ? dynamic_cast<CStaveGroup*>(stave->Parent()) : nullptr;
    if (group == nullptr)
        return;
    const auto config = std::find_if(group->BarConfigs.begin(), group->BarConfigs.end(),
                                     [bar](const auto& each) { return each.get() == bar->Config; });
    const auto column = config != group->BarConfigs.end()
                            ? static_cast<std::size_t>(config - group->BarConfigs.begin())
                            : static_cast<std::size_t>(std::max(stave->IndexOfChild(bar), 0));
    m_view.History().Record(Caption(command::InsertBar), [&] {
        group->InsertBarColumn(column);
        group->InvalidateSelf();
    });
}

void EditCommands::InsertRepeat()
{
    auto* bar = m_view.Selection().Single<CBarEx>();
    if (bar == nullptr || !Enabled(InsertRepeats))
        return;
    m_view.History().Record(Caption(InsertRepeats),
                            [&] { corrieval::InsertRepeat(*bar, *m_view.Document()); });
}

void EditCommands::DeleteRepeat()
{
    auto* bar = m_view.Selection().Single<CBarEx>();
    if (bar == nullptr)
        return;
    m_view.History().Record(Caption(DeleteRepeats),
                            [&] { corrieval::DeleteRepeat(*bar, *m_view.Document()); });
}

void EditCommands::Properties()
{
    CScoSelection& selection = m_view.Selection();
    CScoObj* head = selection.Head();
    if (head == nullptr)
        return;
    CCorrievalDoc& doc = *m_view.Document();
    PropertyDialogs& dialogs = CurrentPropertyDialogs();
    const bool alone = selection.Count() == 1;
    m_view.History().Record(Caption(command::Properties), [&] {
        // Bars coloured by their values and a zoom that follows the width would both react to
        // what the dialog changes while it is open: they wait until it closes.
        const std::int32_t checkValues = std::exchange(doc.CheckValues, 0);
        const bool fitWidth = m_view.ZoomsToWidth();
        m_view.SetZoomsToWidth(false);
        bool changed = false;
        if (auto* area = dynamic_cast<CTextArea*>(head))
            changed = dialogs.EditTextArea(alone ? area : nullptr, &m_view);
        else if (auto* image = dynamic_cast<CImageArea*>(head))
            changed = dialogs.EditImageArea(*image, &m_view);
        else if (auto* music = dynamic_cast<CStaveArea*>(head))
            changed = dialogs.EditStaveArea(alone ? music : nullptr, &m_view);
        else if (auto* bar = dynamic_cast<CBarEx*>(head))
            changed = dialogs.EditBar(*bar, &m_view);
        else if (dynamic_cast<CNoteBase*>(head) != nullptr)
            changed = dialogs.EditNotes(selection.Items(), &m_view);
        doc.CheckValues = checkValues;
        m_view.SetZoomsToWidth(fitWidth);
        if (changed)
            m_view.OnUpdate();
    });
}

void EditCommands::AutoOrganise()
{
    CScoSelection& selection = m_view.Selection();
    if (auto* area = selection.Single<CStaveArea>()) {
        const bool space = ShowMessage(QStringLiteral("Include auto space of notes within all bars?"),
                                       MessageKind::YesNo) == MessageAnswer::Yes;
        m_view.History().Record(Caption(command::AutoOrganise), [&] { area->AutoOrganiseArea(true, space); });
        return;
    }
    CScoObj* item = selection.Single<CBarEx>();
    if (item == nullptr)
        item = selection.Single<CNoteGroupEx>();
    if (item == nullptr)
        return;
    m_view.History().Record(Caption(command::AutoOrganise), [&] {
        item->AutoOrganise();
        item->InvalidateSelf();
    });
}

void EditCommands::Restack(bool toFront)
{
    auto* area = m_view.Selection().Single<CPageArea>();
    CGraphObjContainer* page = area != nullptr ? area->Parent() : nullptr;
    if (page == nullptr)
        return;
    m_view.History().Record(Caption(toFront ? BringToFront : SendToBack), [&] {
        if (toFront)
            page->BringToFront(area);
        else
            page->SendToBack(area);
        page->InvalidateSelf();
    });
}

void EditCommands::Justify(int alignment)
{
    auto* area = m_view.Selection().Single<CTextArea>();
    if (area == nullptr)
        return;
    const int id = alignment == CTextArea::Left    ? AlignLeft
                   : alignment == CTextArea::Right ? AlignRight
                                                   : AlignCentre;
    m_view.History().Record(Caption(id), [&] {
        area->Alignment = alignment;
        area->InvalidateSelf();
    });
}

void EditCommands::ToggleCheckValues()
{
    auto* area = m_view.Selection().Single<CStaveArea>();
    if (area == nullptr)
        return;
    CCorrievalDoc& doc = *m_view.Document();
    m_view.History().Record(Caption(CheckValues), [&] {
        doc.CheckValues = doc.CheckValues != 0 ? 0 : 1;
        ShowBarValues(*area, doc.CheckValues != 0);
    });
    m_view.EditState().CheckValuesArea = doc.CheckValues != 0 ? area : nullptr;
}

} // namespace corrieval
