#include "model/BarEx.h"

#include "model/ActiveView.h"
#include "model/BarConfig.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/AbbreviationArea.h"
#include "model/StaveArea.h"
#include "notation/FixedNoteGroup.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/TieEx.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CBarEx, CGraphObjContainer);
CORRIEVAL_IMPLEMENT_CLASS(CBarConfig, CObject);

namespace {

// Room a change of time signature takes at the left of its bar, inches.
constexpr float kTimeSigRoom = 0.2f;
// A bar at the start of a stave draws its heavy line clear of the stave's head.
constexpr float kStaveHeadClearance = 0.07f;
// The spacing keeps more room at the ends of a stave, and less within one, inches.
constexpr float kStaveEndInset = 0.2f;
constexpr float kInnerInset = 0.1f;
// A gracenote or movement stands a fifth of a gap before its note; at this gap, inches, that
// fifth still shows.
constexpr float kLeastGap = 0.05f;
constexpr float kShortItemShare = 0.2f;
// How near a bar line the pointer must be to grab it, inches.
constexpr float kBarLineGrab = 0.03f;
// What a bar outside any music area is measured against: a new area starts in common time.
constexpr std::int32_t kCommonTime = 1;

// A full bar is this many ticks divided by the beat unit, whatever the beats.
constexpr std::uint32_t kWholeBarTicks = 7680;
// A melody note left with fewer ticks than this after paying back its gracenotes is counted
// as if it still owed kOwedTicks: a bar of gracenotes and movements then comes out exact.
constexpr std::uint32_t kLeastMelodyTicks = 40;
constexpr std::uint32_t kOwedTicks = 60;
// A difference at or above this went below zero in unsigned arithmetic.
constexpr std::uint32_t kWrappedTicks = 65536;

CStave* StaveOf(const CBarEx& bar) { return dynamic_cast<CStave*>(bar.Parent()); }

const CStaveArea* AreaOf(const CBarEx& bar)
{
    return bar.Parent() != nullptr ? bar.Parent()->FindAncestor<CStaveArea>() : nullptr;
}

bool IsFirstInStave(const CBarEx& bar)
{
    return bar.Parent() != nullptr && bar.Parent()->IndexOfChild(&bar) == 0;
}

bool IsLastInStave(const CBarEx& bar)
{
    const CGraphObjContainer* stave = bar.Parent();
    return stave != nullptr && stave->IndexOfChild(&bar) == static_cast<int>(stave->ChildCount()) - 1;
}

// The "Written" row of an abbreviation legend shows marks, not music to be measured.
bool InWrittenRow(const CBarEx& bar)
{
    const CStave* stave = StaveOf(bar);
    if (stave == nullptr || stave->Parent() == nullptr || stave->Parent()->IndexOfChild(stave) != 0)
        return false;
    return stave->Parent()->FindAncestor<CAbbreviationArea>() != nullptr;
}

float WidthOf(const CScoObj& object)
{
    const auto* note = dynamic_cast<const CNoteBase*>(&object);
    return note != nullptr ? note->GetWidth() : object.GetBounds().Width;
}

template <class T> void SortByX(std::vector<T*>& items)
{
    std::stable_sort(items.begin(), items.end(),
                     [](const T* a, const T* b) { return a->GetBounds().X < b->GetBounds().X; });
}

// The single notes of the bar in playing order, each member of a group in the group's place.
std::vector<CNoteEx*> NotesInOrder(const CBarEx& bar)
{
    std::vector<CNoteEx*> notes;
    for (const auto& child : bar.Children()) {
        if (auto* note = dynamic_cast<CNoteEx*>(child.get())) {
            notes.push_back(note);
        } else if (const auto* group = dynamic_cast<const CGraphObjContainer*>(child.get())) {
            for (const auto& member : group->Children()) {
                if (auto* memberNote = dynamic_cast<CNoteEx*>(member.get()))
                    notes.push_back(memberNote);
            }
        }
    }
    SortByX(notes);
    return notes;
}

// A movement or a gracenote: it sits close to the note that it leads into.
bool IsShortItem(const CNoteBase& item)
{
    if (dynamic_cast<const CFixedNoteGroup*>(&item) != nullptr)
        return true;
    const auto* note = dynamic_cast<const CNoteEx*>(&item);
    return note != nullptr && note->Duration == 64;
}

// The ticks the notes of a bar add up to. Gracenotes count in full and are paid back by the
// next melody note; notes tied together are only counted when the tie ends, and the notes under
// a tie of three or more count two thirds each, as a triplet. Unsigned on purpose: a melody note
// that cannot pay back its gracenotes wraps, and the wrap is what the floor test catches.
std::uint32_t ValueTotal(const std::vector<CNoteEx*>& notes, const CTimeSig& sig)
{
    std::uint32_t total = 0;
    std::uint32_t pending = 0;
    std::uint32_t carry = 0;
    bool tied = false;
    const CTieEx* tie = nullptr;
    for (const CNoteEx* note : notes) {
        if (tied) {
            tied = note->Tie != nullptr;
            if (!tied && pending != 0) {
                total += pending;
                pending = 0;
            }
        } else {
            tie = note->Tie;
            tied = tie != nullptr;
        }

        std::uint32_t ticks = note->NoteTicks(sig);
        if (tied && tie != nullptr && tie->Notes.size() > 2) {
            ticks = static_cast<std::uint32_t>(std::uint64_t{ticks} * 2 / 3);
            tie = nullptr;
            tied = false;
        }

        if (IsSmallDuration(note->Duration)) {
            carry += ticks;
        } else {
            if (note->DotCut == CNoteEx::Cut)
                ticks /= 2;
            else if (note->DotCut == CNoteEx::Dotted)
                ticks += ticks / 2;
            ticks -= carry;
            if (ticks < kLeastMelodyTicks || ticks >= kWrappedTicks) {
                pending = kOwedTicks;
                carry = kOwedTicks;
            } else {
                carry = 0;
            }
        }
        pending += ticks;

        if (!tied) {
            total += pending;
            pending = 0;
        }
    }
    // A tie running on into the next bar still counts here.
    if (pending != 0 && !notes.empty() && notes.back()->Tie != nullptr)
        total += pending;
    return total;
}

// The bar lines and repeat dots of one bar, measured on its stave's grid.
class BarLines {
public:
    BarLines(const CBarEx& bar, const CStave& stave)
        : m_bar(bar), m_config(bar.Config), m_thin{kBlack, bar.GetPenWidth()}
    {
        const CStave::Grid p = stave.Positions();
        const RectF& r = bar.Bounds();
        // The lines of a group run from the top line of its first stave to the bottom line of
        // its last, across the room between the staves.
        const CGraphObjContainer* group = stave.Parent();
        const int index = group != nullptr ? group->IndexOfChild(&stave) : 0;
        const bool first = index == 0;
        const bool last = group == nullptr || index == static_cast<int>(group->ChildCount()) - 1;
        const float offset = first ? p[5] : p[0];
        const float length = first ? (last ? p[13] : p[19]) - p[5] : (last ? p[13] : p[19]);
        m_top = r.Y + offset;
        m_bottom = m_top + length;
        const float gap = p[2] - p[0];
        m_dot = gap * 0.4f;
        // In the spaces either side of the middle line.
        m_dotTops = {r.Y + p[7] + gap * 0.3f, r.Y + p[9] + gap * 0.3f};
    }

    void DrawStart(Painter& painter, bool showBarLines) const
    {
        const RectF& r = m_bar.Bounds();
        const bool first = IsFirstInStave(m_bar);
        if (m_config == nullptr || !(m_config->StartBarLine || m_config->StartRepeat)) {
            // The head of the stave stands where a first bar's line would.
            if (!first && showBarLines)
                Line(painter, r.X, m_thin);
            return;
        }
        // The light line stands off by the room kept for the lines. With a change of time
        // signature that room is all signature, so heavy line, light line and dots coincide.
        const CTimeSig& sig = m_config->TimeSig;
        const float sigWidth = sig.Type != CTimeSig::None ? sig.Bounds().Width : 0.0f;
        const float light = (m_bar.LeftMargin - sigWidth) * 1.2f;
        const float x = r.X + (first ? kStaveHeadClearance : 0.0f);
        Line(painter, x, Heavy(m_thin.Width * 8));
        Line(painter, x + light, m_thin);
        if (m_config->StartRepeat)
            Dots(painter, x + light * 1.5f);
    }

    void DrawEnd(Painter& painter, bool showBarLines) const
    {
        const float right = m_bar.Bounds().Right();
        if (m_config == nullptr || !(m_config->EndBarLine || m_config->EndRepeat)) {
            if (showBarLines || IsLastInStave(m_bar))
                Line(painter, right, m_thin);
            return;
        }
        const float light = m_bar.RightMargin * 1.1f;
        const float half = m_thin.Width * 4; // half the heavy line, which stays inside the bar
        Line(painter, right - half, Heavy(half * 2));
        Line(painter, right - light - half, m_thin);
        if (m_config->EndRepeat)
            Dots(painter, right - half - light * 1.5f - m_dot);
    }

private:
    static constexpr std::uint32_t kBlack = 0xFF000000;

    Pen Heavy(float width) const
    {
        Pen pen = m_thin;
        pen.Width = width;
        return pen;
    }
    void Line(Painter& painter, float x, const Pen& pen) const
    {
        painter.DrawLine(x, m_top, x, m_bottom, pen);
    }
    void Dots(Painter& painter, float left) const
    {
        painter.SetSmoothing(true);
        for (const float top : m_dotTops)
            painter.FillEllipse({left, top, m_dot, m_dot}, Brush::Solid(kBlack));
        painter.SetSmoothing(false);
    }

    const CBarEx& m_bar;
    const CBarConfig* m_config;
    Pen m_thin;
    float m_top = 0;
    float m_bottom = 0;
    float m_dot = 0;
    std::array<float, 2> m_dotTops{};
};

// Pitch of the stave position under y, over a bar of the given top and height.
NotePitch PitchAt(float y, float top, float height)
{
    const float position = (y - top) / height * 19.0f + 0.5f;
    if (!(position > static_cast<float>(HighestPitch))) // also a bar of no height
        return HighestPitch;
    if (position >= static_cast<float>(LowestPitch))
        return LowestPitch;
    return static_cast<NotePitch>(position);
}

} // namespace

CScoObj* CBarEx::AddNoteSorted(std::unique_ptr<CScoObj> object)
{
    if (!object)
        return nullptr;
    const float x = object->GetBounds().X;
    const ChildList& children = Children();
    const auto further = std::find_if(children.begin(), children.end(),
                                      [x](const auto& child) { return child->GetBounds().X > x; });
    return InsertChildAt(static_cast<std::size_t>(further - children.begin()), std::move(object), true);
}

CScoObj* CBarEx::AppendNote(std::unique_ptr<CScoObj> object) { return AddChild(std::move(object), true); }

std::unique_ptr<CBarEx> CBarEx::Clone() const { return std::unique_ptr<CBarEx>(new CBarEx(*this)); }

void CBarEx::PlaceItem(CNoteBase& item, float x, float y)
{
    float width = item.GetWidth();
    if (width < 0.001f)
        width = item.GetDefaultWidth();
    const RectF& r = Bounds();
    const float left = r.X + LeftMargin;
    const float right = left + ContentBox().Width;
    float itemX = left;
    if (width / 2 + x > right)
        itemX = right - width;
    else if (x - width / 2 > left)
        itemX = x - width / 2;
    item.SetBounds(itemX, r.Y, width, r.Height);
    if (auto* note = dynamic_cast<CNoteEx*>(&item))
        note->Pitch = PitchAt(y, r.Y, r.Height);
}

bool CBarEx::ContainsItem(const CScoObj& item) const
{
    const RectF r = item.GetBounds();
    const RectF box = ContentBox();
    return r.X >= box.X && r.Right() <= box.Right() && r.Y >= Bounds().Y && r.Bottom() <= Bounds().Bottom();
}

bool CBarEx::HitBarLine(float x, float y) const
{
    const CStave* stave = StaveOf(*this);
    if (stave == nullptr || IsFirstInStave(*this))
        return false;
    const CStave::Grid p = stave->Positions();
    const RectF& r = Bounds();
    return std::fabs(x - r.X) < kBarLineGrab && y >= r.Y + p[5] && y <= r.Y + p[13];
}

CTimeSig CBarEx::GetActiveTimeSig() const
{
    for (const CBarEx* bar = this; bar != nullptr; bar = CStaveArea::PreviousBar(*bar)) {
        if (bar->Config != nullptr && bar->Config->TimeSig.Type != CTimeSig::None)
            return bar->Config->TimeSig;
    }
    if (const CStaveArea* area = AreaOf(*this))
        return area->InitialTimeSig;
    return CTimeSig(kCommonTime);
}

bool CBarEx::UpdateValueColour(bool on, bool redraw)
{
    if (!on) {
        UseBackground = true;
        if (const CStaveArea* area = AreaOf(*this))
            Colour = area->Background;
        if (redraw)
            InvalidateSelf();
        return true;
    }
    if (ChildCount() == 0 || InWrittenRow(*this))
        return true;

    const CTimeSig sig = GetActiveTimeSig();
    const std::int32_t unit = sig.GetBeatUnit();
    const std::uint32_t target = unit > 0 ? kWholeBarTicks / static_cast<std::uint32_t>(unit) : 0;
    const std::uint32_t total = ValueTotal(NotesInOrder(*this), sig);
    UseBackground = false;
    Colour = total < target ? ShortColour : total == target ? ExactColour : OverColour;
    if (redraw)
        InvalidateSelf();
    return false;
}

void CBarEx::RecalcMargins()
{
    // Outside a stave there is no grid to measure by; the margins stay as they are.
    CStave* stave = StaveOf(*this);
    if (stave == nullptr)
        return;
    const CStave::Grid p = stave->Positions();
    const float step = (p[2] - p[0]) * 0.5f;
    const RectF& r = Bounds();
    float left = 0;
    float right = 0;
    if (Config != nullptr) {
        Config->TimeSig.Stave = stave;
        if (Config->StartBarLine || Config->StartRepeat)
            left = step;
        if (Config->EndBarLine || Config->EndRepeat)
            right = step;
        if (Config->TimeSig.Type != CTimeSig::None) {
            // The signature is shared by the column, so it stands wherever its bar last put it.
            Config->TimeSig.SetBounds(r.X + left, r.Y, left + kTimeSigRoom, r.Height);
            left += kTimeSigRoom;
        }
    }
    LeftMargin = left;
    RightMargin = right;
    TopMargin = p[5];
    BottomMargin = r.Height - p[13];
}

void CBarEx::BeforeBoundsChange(const RectF& newBounds)
{
    RecalcMargins();
    const RectF old = Bounds();
    for (const auto& child : Children()) {
        const RectF c = child->GetBounds();
        // Each child's centre keeps its fraction of the width; a bar of no width had none to
        // keep, so its children keep their distance from the left edge.
        const float centre = c.X + c.Width / 2;
        const float x = old.Width > 0
                            ? ((centre - old.X) / old.Width) * newBounds.Width + newBounds.X - c.Width / 2
                            : c.X - old.X + newBounds.X;
        child->SetBounds(x, newBounds.Y, c.Width, newBounds.Height);
    }
}

void CBarEx::AutoOrganise()
{
    RecalcMargins();
    std::vector<CNoteBase*> items = SpacedItems();
    if (items.empty())
        return;
    SortByX(items);

    float widths = 0;
    for (const CNoteBase* item : items)
        widths += item->GetWidth();
    const bool first = IsFirstInStave(*this);
    const bool last = IsLastInStave(*this);
    // The ends of a stave keep more room: the first bar clears the stave's head.
    const float inset = first || last ? kStaveEndInset : kInnerInset;
    const float gap = (ContentBox().Width - widths - inset) / static_cast<float>(items.size());

    const RectF r = Bounds();
    float x = r.X + LeftMargin + gap * 0.5f + (first ? kStaveEndInset : kInnerInset);
    // A gracenote or movement takes a fifth of a gap, and the note it leads into the rest, so
    // the gaps still add up to an even spacing.
    bool afterShort = false;
    for (CNoteBase* item : items) {
        const float width = item->GetWidth();
        item->SetBounds(x, r.Y, width, r.Height);
        if (IsShortItem(*item)) {
            x += width + gap * kShortItemShare;
            afterShort = true;
        } else {
            x += width + gap;
            if (afterShort) {
                afterShort = false;
                x += gap * (1 - kShortItemShare);
            }
        }
    }
}

std::vector<CNoteBase*> CBarEx::SpacedItems() const
{
    std::vector<CNoteBase*> items;
    for (const auto& child : Children()) {
        auto* item = dynamic_cast<CNoteBase*>(child.get());
        if (item == nullptr)
            continue;
        if (dynamic_cast<CNoteEx*>(item) != nullptr || dynamic_cast<CFixedNoteGroup*>(item) != nullptr) {
            items.push_back(item);
            continue;
        }
        for (const auto& member : item->Children()) {
            if (auto* memberItem = dynamic_cast<CNoteBase*>(member.get()))
                items.push_back(memberItem);
        }
    }
    return items;
}

float CBarEx::NeededWidth(float itemWidths, std::size_t itemCount)
{
    return itemWidths + static_cast<float>(itemCount) * kLeastGap + kStaveEndInset;
}

float CBarEx::NeededWidth() const
{
    const std::vector<CNoteBase*> items = SpacedItems();
    float widths = 0;
    for (const CNoteBase* item : items)
        widths += item->GetWidth();
    return NeededWidth(widths, items.size()) + LeftMargin + RightMargin;
}

void CBarEx::RefitContent()
{
    RecalcMargins();
    if (ChildCount() == 0)
        return;

    float widths = 0;
    bool anyPlaced = false;
    float firstX = 0;
    float extent = 0;
    std::vector<CNoteBase*> pasted;
    for (const auto& child : Children()) {
        widths += WidthOf(*child);
        auto* item = dynamic_cast<CNoteBase*>(child.get());
        if (item == nullptr)
            continue;
        if (item->Pasted) {
            pasted.push_back(item);
            continue;
        }
        const RectF c = item->GetBounds();
        if (!anyPlaced) {
            anyPlaced = true;
            firstX = c.X;
        }
        extent = std::max(extent, item->GetWidth() + c.X - firstX);
    }

    if (!pasted.empty()) {
        const float gap =
            std::clamp((ContentBox().Width - widths) / static_cast<float>(ChildCount()), 0.0f, 0.1f);
        const RectF r = Bounds();
        // The pasted notes keep their offsets from the first of them and go in after the room
        // that the notes already there take, counted from the start of the content box.
        const RectF lead = pasted.front()->GetBounds();
        for (CNoteBase* item : pasted) {
            const RectF c = item->GetBounds();
            item->SetBounds(r.X + LeftMargin + gap * 0.5f + c.X - lead.X + gap + extent, c.Y + r.Y - lead.Y,
                            item->GetWidth(), r.Height);
            item->Pasted = false;
        }
    }
    AutoOrganise();
}

void CBarEx::Draw(Painter& painter, OutputMode mode)
{
    ScoreView* view = ActiveView();
    const CCorrievalDoc* doc = view != nullptr ? view->Document() : nullptr;
    if (doc != nullptr && doc->CheckValues != 0)
        UpdateValueColour(true, false);
    RecalcMargins();

    if (const CStave* stave = StaveOf(*this)) {
        const CStaveArea* area = AreaOf(*this);
        const RectF r = Bounds();
        // The check-values and selection fill is for the screen only.
        if (view != nullptr && view->PrintIdle() && area != nullptr) {
            const std::uint32_t fill = Selected() ? SelectedFill : UseBackground ? area->Background : Colour;
            const RectF band{r.X, r.Y + TopMargin, r.Width, r.Height - (BottomMargin + TopMargin)};
            painter.FillRect(band, Brush::Solid(fill));
        }
        const BarLines lines(*this, *stave);
        const bool showBarLines = area == nullptr || area->ShowBarLines;
        lines.DrawStart(painter, showBarLines);
        if (Config != nullptr && (area == nullptr || area->ShowTimeSig))
            Config->TimeSig.DrawIfVisible(painter, mode);
        lines.DrawEnd(painter, showBarLines);
    }
    CGraphObjContainer::Draw(painter, mode);
}

} // namespace corrieval
