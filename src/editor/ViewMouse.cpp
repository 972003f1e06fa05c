#include "editor/ViewMouse.h"

#include "editor/AreaCreation.h"
#include "editor/AreaDrag.h"
#include "editor/CheckValues.h"
#include "editor/CorrievalView.h"
#include "editor/NoteDrag.h"
#include "editor/RepeatCommands.h"
#include "editor/RubberBand.h"
#include "editor/StaveDrags.h"
#include "editor/ViewHost.h"
#include "model/AbbreviationArea.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/TunePage.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TextArea.h"
#include "notation/TieEx.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace corrieval {

namespace {
QString Label(const char* text)
{
    return QCoreApplication::translate("ViewMouse", text);
}

} // namespace

ViewMouse::ViewMouse(CCorrievalView& view) : m_view(view)
{
    m_view.installEventFilter(this);
}

ViewMouse::~ViewMouse() = default;

bool ViewMouse::eventFilter(QObject* watched, QEvent* event)
{
    if (m_drag == nullptr)
        return QObject::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::FocusOut:
    case QEvent::WindowDeactivate:
    case QEvent::Hide:
        EndDrag();
        return false;
    // While a drag runs, every key comes to the drag as a key press, and no shortcut runs a
    // command (undo above all) under the objects it holds.
    case QEvent::ShortcutOverride:
        event->accept();
        return true;
    default:
        return false;
    }
}

void ViewMouse::Pressed(QMouseEvent& event)
{
    m_menuSwallowed = false;
    if (event.button() == Qt::RightButton)
        RightPressed();
    else if (event.button() == Qt::LeftButton && m_drag == nullptr) {
        m_press = event.position().toPoint();
        m_leftPress = false;
        LeftPressed(ToDocument(event.position()), event.modifiers().testFlag(Qt::ControlModifier));
    }
}

bool ViewMouse::StillAtPress(const QMouseEvent& event)
{
    m_leftPress = m_leftPress || event.position().toPoint() != m_press;
    return !m_leftPress;
}

// The order of these decisions matters: handles before what lies under them, bar lines before
// bars, repeat markers and ties before the notes beneath, and a click on what is selected
// already drags it rather than selecting afresh.
void ViewMouse::LeftPressed(PointF at, bool ctrl)
{
    CScoSelection& selection = m_view.Selection();
    ViewEditState& edit = m_view.EditState();
    const bool locked = Locked();
    if (edit.Placing()) {
        // The item is dropped when the button goes up.
        selection.Clear();
        return;
    }
    CTunePage* page = m_view.PageAt(at);
    if (page != nullptr && edit.PendingArea != nullptr) {
        StartBand(at, page);
        return;
    }
    if (CPageArea* area = selection.Single<CPageArea>(); area != nullptr && !locked) {
        if (const int handle = area->HitHandle(at.X, at.Y); handle != CPageArea::NoHandle) {
            StartDrag(std::make_unique<AreaDrag>(*area, handle, at, [this] { m_view.viewport()->update(); }),
                      handle == CPageArea::Border ? Label("Move Area") : Label("Size Area"));
            return;
        }
    }
    if (page == nullptr) {
        StartBand(at, nullptr);
        return;
    }
    CScoObj* hit = page->HitTest(at.X, at.Y);
    if (!locked) {
        if (hit == nullptr) {
            SelectOnly(page);
            return;
        }
        if (auto* bar = dynamic_cast<CBarEx*>(hit)) {
            if (auto* group =
                    dynamic_cast<CStaveGroup*>(bar->Parent() != nullptr ? bar->Parent()->Parent() : nullptr);
                group != nullptr && bar->HitBarLine(at.X, at.Y)) {
                StartDrag(std::make_unique<BarLineDrag>(*group, *bar), Label("Move Bar Line"));
                return;
            }
            if (!bar->ContentBox().Contains(at.X, at.Y))
                hit = bar->FindAncestor<CStaveArea>();
        }
        if (CStaveArea* area = hit != nullptr ? hit->FindAncestor<CStaveArea>() : nullptr) {
            if (CRepeatTiming* marker = area->RepeatMarkerAt(at.X, at.Y)) {
                if (const int leg = marker->LegAt(at.X, at.Y); leg != CRepeatTiming::NoLeg) {
                    auto barAt = [this](PointF point) { return BarBelow(point); };
                    StartDrag(std::make_unique<RepeatLegDrag>(*m_view.Document(), *marker, leg, barAt),
                              Label("Move Repeat"));
                    return;
                }
                // A click on a label will edit its text once the repeat dialog exists; until then
                // it selects the marker, as a click on its line does.
                if (marker->TextAt(at.X, at.Y) != 0 || marker->LineAt(at.X, at.Y)) {
                    SelectOnly(marker);
                    area->InvalidateSelf();
                    return;
                }
            }
        }
        // A click on a tie's figure will edit its value once the tie dialog exists; until then
        // it selects the tie's first note.
        if (CTieEx* tie = m_view.Document()->TieAt(at.X, at.Y)) {
            SelectOnly(tie->Notes.empty() ? nullptr : tie->Notes.front());
            return;
        }
    }
    // Ctrl never extends a selection: it lets a click reach a note inside a beamed group.
    if (ctrl || !selection.Contains(hit)) {
        if (auto* group = dynamic_cast<CNoteGroupEx*>(hit); group != nullptr && ctrl && !locked)
            hit = group->NoteAtPoint(at.X, at.Y);
        if (hit != nullptr && !(locked && dynamic_cast<CTextArea*>(hit) != nullptr))
            SelectOnly(hit);
    }
    if (hit != nullptr && selection.Contains(hit) && !locked && hit->IsNoteItem()) {
        auto repaint = [this](const CScoObj& object) { m_view.InvalidateObject(object); };
        StartDrag(std::make_unique<NoteDrag>(selection, *hit, at, repaint), Label("Move Notes"));
        return;
    }
    StartBand(at, page);
}

void ViewMouse::StartBand(PointF at, CTunePage* page)
{
    if (page == nullptr) {
        // No band runs off the pages, but the bar chosen before still counts.
        OneBarChosen();
        return;
    }
    auto repaint = [this](const RectF& band) {
        m_view.viewport()->update(m_view.Transform().DocumentRectToDevice(band).adjusted(-2, -2, 2, 2));
    };
    auto ended = [this, page](const RectF& band) {
        if (m_view.EditState().PendingArea != nullptr)
            CreatePendingArea(*page, band);
        else
            SelectInBand(page, band);
    };
    auto band = std::make_unique<RubberBand>(at, page->ContentBox(), repaint, ended);
    m_band = band.get();
    StartDrag(std::move(band), m_view.EditState().PendingArea != nullptr ? Label("Insert Area") : QString());
}

void ViewMouse::SelectInBand(CTunePage* page, const RectF& band)
{
    CScoSelection& selection = m_view.Selection();
    if (band.Width > 0 && band.Height > 0) {
        selection.Clear();
        // A note of a movement stands for its movement: the selection climbs to it.
        page->SelectInRect(band, [&selection](CScoObj& object) { selection.Add(&object); });
    }
    OneBarChosen();
}

void ViewMouse::OneBarChosen()
{
    ViewEditState& edit = m_view.EditState();
    if (m_view.Selection().Single<CBarEx>() != nullptr) {
        if (m_view.Host().RestartPlay())
            return;
        if (!Locked()) {
            edit.MayInsertRepeats = true;
            return;
        }
    }
    edit.MayInsertRepeats = false;
}

void ViewMouse::CreatePendingArea(CTunePage& page, const RectF& band)
{
    ViewEditState& edit = m_view.EditState();
    // A click without a band leaves the area pending, for a band drawn next.
    CPageArea* area = CreateArea(page, *edit.PendingArea, band);
    if (area == nullptr)
        return;
    edit.PendingArea = nullptr;
    // A new picture area is chosen here; its picture comes from its properties.
    SelectOnly(area);
    m_view.OnUpdate(area);
}

void ViewMouse::SelectOnly(CScoObj* object)
{
    m_view.Selection().Clear();
    m_view.Selection().Add(object);
}

void ViewMouse::StartDrag(std::unique_ptr<MouseDrag> drag, const QString& label)
{
    m_recording = !label.isEmpty();
    if (m_recording)
        m_view.History().BeginChange(label);
    // The press that starts a drag holds the mouse for the viewport until the button goes up,
    // wherever the pointer goes; a drag ended by a key lets go of nothing it needs.
    m_drag = std::move(drag);
}

void ViewMouse::EndDrag()
{
    // Out of the member first: finishing may repaint, and the band is no longer drawn then.
    const std::unique_ptr<MouseDrag> drag = std::move(m_drag);
    m_band = nullptr;
    drag->Finish();
    if (std::exchange(m_recording, false))
        m_view.History().EndChange();
    m_view.viewport()->update();
}

void ViewMouse::Moved(QMouseEvent& event)
{
    const PointF at = ToDocument(event.position());
    if (m_drag == nullptr)
        FollowMouse(at);
    else if (!StillAtPress(event))
        m_drag->Move(at);
}

void ViewMouse::Released(QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton)
        return;
    const PointF at = ToDocument(event.position());
    if (m_drag != nullptr) {
        if (!StillAtPress(event))
            m_drag->Release(at);
        EndDrag();
    }
    ViewEditState& edit = m_view.EditState();
    if (m_view.PageAt(at) != nullptr && edit.Ghost != nullptr && edit.GhostTarget != nullptr)
        DropGhost();
    else if (edit.CheckValuesArea != nullptr)
        CheckValuesClick();
}

void ViewMouse::DropGhost()
{
    ViewEditState& edit = m_view.EditState();
    // The new item keeps the place and pitch the ghost showed; placing goes on for the next. Inside
    // a first or second time bracket it plays on that pass only, as the bracket's notes do.
    m_view.History().Record(Label("Place"), [this, &edit] {
        StampNotesAddedBy(*m_view.Document(),
                          [&edit] { edit.GhostTarget->AddNoteSorted(edit.Ghost->Clone()); });
    });
    m_view.InvalidateObject(*edit.GhostTarget);
}

void ViewMouse::CheckValuesClick()
{
    ViewEditState& edit = m_view.EditState();
    CStaveArea* area = edit.CheckValuesArea;
    CScoObj* head = m_view.Selection().Head();
    if (m_view.Selection().Single<CStaveArea>() == area ||
        (head != nullptr && head->FindAncestor<CStaveArea>() == area))
        return;
    m_view.Document()->CheckValues = 0;
    ShowBarValues(*area, false);
    edit.CheckValuesArea = nullptr;
}

void ViewMouse::RightPressed()
{
    m_view.viewport()->setCursor(Qt::ArrowCursor);
    ViewEditState& edit = m_view.EditState();
    if (m_drag != nullptr) {
        EndDrag();
        m_menuSwallowed = true;
    } else if (edit.Placing()) {
        if (edit.Ghost != nullptr)
            m_view.InvalidateObject(*edit.Ghost);
        edit.PaletteEntry = -1;
        edit.Ghost = nullptr;
        edit.GhostTarget = nullptr;
        m_menuSwallowed = true;
    }
}

void ViewMouse::ContextMenu(QContextMenuEvent& event)
{
    // The menu of a right press comes as its own event, after the press.
    if (std::exchange(m_menuSwallowed, false) && event.reason() == QContextMenuEvent::Mouse)
        return;
    m_view.Host().ShowContextMenu(event.globalPos());
}

bool ViewMouse::KeyPressed(const QKeyEvent& event)
{
    if (m_drag == nullptr)
        return false;
    const bool escape = event.key() == Qt::Key_Escape;
    switch (m_drag->Keys()) {
    case MouseDrag::KeyRule::AllIgnored:
        return true;
    case MouseDrag::KeyRule::EscapeIgnored:
        if (!escape)
            EndDrag();
        return true;
    case MouseDrag::KeyRule::EscapeEnds:
        if (!escape)
            return false;
        EndDrag();
        return true;
    }
    return false;
}

void ViewMouse::PaintOverlay(QPainter& painter) const
{
    if (m_band == nullptr)
        return;
    const QRect band = m_view.Transform().DocumentRectToDevice(m_band->Band());
    painter.setPen(QPen(Qt::black, 1, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(band);
}

CBarEx* ViewMouse::BarAt(PointF at) const
{
    CTunePage* page = m_view.PageAt(at);
    CScoObj* hit = page != nullptr ? page->HitTest(at.X, at.Y) : nullptr;
    return hit != nullptr ? hit->FindAncestor<CBarEx>() : nullptr;
}

CBarEx* ViewMouse::BarBelow(PointF at) const
{
    if (CBarEx* bar = BarAt(at))
        return bar;
    CTunePage* page = m_view.PageAt(at);
    CScoObj* hit = page != nullptr ? page->HitTest(at.X, at.Y) : nullptr;
    auto* group = hit != nullptr ? hit->FindAncestor<CStaveGroup>() : nullptr;
    if (group == nullptr || group->ChildCount() == 0)
        return nullptr;
    for (const auto& bar : static_cast<CGraphObjContainer&>(*group->ChildAt(0)).Children()) {
        if (bar->Bounds().X <= at.X && at.X < bar->Bounds().Right())
            return dynamic_cast<CBarEx*>(bar.get());
    }
    return nullptr;
}

bool ViewMouse::Locked() const
{
    return m_view.Document()->Locked != 0;
}

PointF ViewMouse::ToDocument(const QPointF& device) const
{
    return m_view.Transform().DeviceToDocument(device);
}

} // namespace corrieval
