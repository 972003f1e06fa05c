#include "editor/CorrievalView.h"
#include "editor/ViewHost.h"
#include "editor/ViewMouse.h"
#include "model/AbbreviationArea.h"
#include "model/BarEx.h"
#include "model/TunePage.h"
#include "notation/NoteBase.h"
#include "notation/RepeatTiming.h"

// What the pointer shows before any button is down: the cursor for what a press would do, and
// while placing, the item following the mouse over the bars.
namespace corrieval {

namespace {
// Corners clockwise from the top left, then the edge centres clockwise from the top.
constexpr Qt::CursorShape kHandleCursors[CPageArea::HandleCount] = {
    Qt::SizeFDiagCursor, Qt::SizeBDiagCursor, Qt::SizeFDiagCursor, Qt::SizeBDiagCursor,
    Qt::SizeVerCursor,   Qt::SizeHorCursor,   Qt::SizeVerCursor,   Qt::SizeHorCursor};

Qt::CursorShape HandleCursor(int handle)
{
    return handle >= 0 && handle < CPageArea::HandleCount ? kHandleCursors[handle] : Qt::SizeAllCursor;
}

// A legend takes notes only in its played row; the written row holds the marks.
bool TakesPlacedItems(const CBarEx& bar)
{
    const CScoObj* stave = bar.Parent();
    const CGraphObjContainer* group = stave != nullptr ? stave->Parent() : nullptr;
    const CScoObj* area = group != nullptr ? group->Parent() : nullptr;
    return dynamic_cast<const CAbbreviationArea*>(area) == nullptr || group->IndexOfChild(stave) != 0;
}
} // namespace

void ViewMouse::PaintGhost(Painter& painter) const
{
    const ViewEditState& edit = m_view.EditState();
    if (edit.Ghost == nullptr || edit.GhostTarget == nullptr)
        return;
    CNoteBase& ghost = *edit.Ghost;
    const std::uint32_t colour = ghost.Colour();
    ghost.SetColour(CNoteBase::SelectedColour);
    ghost.Draw(painter, OutputMode::Screen);
    ghost.SetColour(colour);
}

void ViewMouse::FollowMouse(PointF at)
{
    if (m_view.EditState().Placing())
        MoveGhost(at);
    else
        UpdateCursor(at);
}

void ViewMouse::MoveGhost(PointF at)
{
    ViewEditState& edit = m_view.EditState();
    if (edit.Ghost != nullptr)
        m_view.InvalidateObject(*edit.Ghost);
    CBarEx* bar = BarAt(at);
    CNoteBase* ghost = bar != nullptr && TakesPlacedItems(*bar)
                           ? m_view.Host().PalettePrototype(edit.PaletteEntry)
                           : nullptr;
    edit.Ghost = ghost;
    edit.GhostTarget = ghost != nullptr ? bar : nullptr;
    if (ghost == nullptr)
        return;
    // A prototype never placed has no size, and its default width follows its height: it takes
    // the bar's height first.
    if (ghost->Bounds().Height <= 0)
        ghost->SetBounds(at.X, bar->Bounds().Y, 0, bar->Bounds().Height);
    bar->PlaceItem(*ghost, at.X, at.Y);
    m_view.InvalidateObject(*ghost);
}

void ViewMouse::UpdateCursor(PointF at)
{
    QWidget& viewport = *m_view.viewport();
    if (const CPageArea* area = m_view.Selection().Single<CPageArea>(); area != nullptr && !Locked()) {
        if (const int handle = area->HitHandle(at.X, at.Y); handle != CPageArea::NoHandle) {
            viewport.setCursor(HandleCursor(handle));
            return;
        }
    }
    CTunePage* page = m_view.PageAt(at);
    CScoObj* hit = page != nullptr ? page->HitTest(at.X, at.Y) : nullptr;
    const auto* bar = dynamic_cast<const CBarEx*>(hit);
    const CStaveArea* area = hit != nullptr ? hit->FindAncestor<CStaveArea>() : nullptr;
    const CRepeatTiming* marker = area != nullptr ? area->RepeatMarkerAt(at.X, at.Y) : nullptr;
    if ((bar != nullptr && bar->HitBarLine(at.X, at.Y)) ||
        (marker != nullptr && marker->LegAt(at.X, at.Y) != CRepeatTiming::NoLeg))
        viewport.setCursor(Qt::SizeHorCursor);
    else if (page != nullptr && m_view.EditState().PendingArea != nullptr)
        viewport.setCursor(Qt::CrossCursor);
    else
        viewport.unsetCursor();
}

} // namespace corrieval
