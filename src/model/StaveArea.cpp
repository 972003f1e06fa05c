#include "model/StaveArea.h"

#include "model/ActiveView.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/Stave.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"

#include <algorithm>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CStaveArea, CPageArea);

namespace {
constexpr float kMinimumHeightPerStave = 0.5f;

CStaveGroup* GroupAt(const CGraphObjContainer& area, std::size_t i) { return static_cast<CStaveGroup*>(area.ChildAt(i)); }

// Copies what a bar holds into another bar at the same offsets. Beamed groups are rebuilt from
// copies of their notes; ties and repeat markers are not carried over.
void CopyBarContent(const CBarEx& from, CBarEx& to)
{
    const float dx = to.Bounds().X - from.Bounds().X;
    const float dy = to.Bounds().Y - from.Bounds().Y;
    for (const auto& child : from.Children()) {
        const auto* item = dynamic_cast<const CNoteBase*>(child.get());
        if (item == nullptr)
            continue;
        std::unique_ptr<CNoteBase> copy = item->Clone();
        if (const auto* group = dynamic_cast<const CNoteGroupEx*>(item)) {
            for (const auto& member : group->Children())
                copy->AddChild(static_cast<const CNoteBase&>(*member).Clone(), false);
        }
        const RectF r = child->GetBounds();
        copy->SetBounds(r.X + dx, r.Y + dy, r.Width, r.Height);
        to.AddChild(std::move(copy), false);
    }
}
} // namespace

CStaveArea::CStaveArea()
{
    LeftMargin = 0;
    RightMargin = 0;
    TopMargin = 0.1f;
    BottomMargin = 0;
}

CStaveArea::~CStaveArea() = default;

void CStaveArea::UpdateMinimumHeight()
{
    MinimumHeight = static_cast<float>(std::max(PartCount, 1)) * static_cast<float>(ChildCount()) * kMinimumHeightPerStave;
}

void CStaveArea::SetGroupCount(std::size_t count)
{
    while (ChildCount() > count)
        RemoveChild(ChildAt(ChildCount() - 1), true);
    while (ChildCount() < count) {
        auto group = std::make_unique<CStaveGroup>();
        group->Spacing = StaveSpacing;
        group->SetStaveCount(static_cast<std::size_t>(std::max(PartCount, 0)));
        group->LayoutStaves();
        AddChild(std::move(group), true);
    }
    UpdateMinimumHeight();
    Relayout();
}

void CStaveArea::SetPartCount(std::int32_t count)
{
    PartCount = count;
    for (std::size_t i = 0; i < ChildCount(); ++i)
        GroupAt(*this, i)->SetStaveCount(static_cast<std::size_t>(std::max(count, 0)));
    MinimumHeight = static_cast<float>(ChildCount()) * static_cast<float>(count) * kMinimumHeightPerStave;
}

void CStaveArea::FillDefaultContent()
{
    const RectF box = ContentBox();
    const auto groups = static_cast<std::size_t>(std::max(1, static_cast<int>(box.Height)));
    const auto bars = static_cast<std::size_t>(std::max(1, static_cast<int>(box.Width * 0.6f)));
    SetGroupCount(groups);
    SetPartCount(1);
    for (std::size_t i = 0; i < ChildCount(); ++i) {
        CStaveGroup& group = *GroupAt(*this, i);
        while (group.BarConfigs.size() < bars)
            group.InsertBarColumn(group.BarConfigs.size());
        while (group.BarConfigs.size() > bars)
            group.RemoveBarColumn(group.BarConfigs.size() - 1, true);
        group.LayoutStaves();
    }
}

void CStaveArea::Relayout()
{
    const std::size_t count = ChildCount();
    if (count > 0) {
        const RectF box = ContentBox();
        const float height = box.Height / static_cast<float>(count);
        float y = box.Y;
        for (const auto& group : Children()) {
            group->SetBounds(box.X, y, box.Width, height);
            y += height;
        }
    }
    // Every re-layout returns to the standard spacing, also one chosen in the properties.
    StaveSpacing = StandardSpacing;
    for (std::size_t i = 0; i < count; ++i) {
        CStaveGroup& group = *GroupAt(*this, i);
        group.Spacing = StandardSpacing;
        group.LayoutStaves();
    }
}

void CStaveArea::AutoOrganiseArea(bool even, bool space)
{
    Relayout();
    for (std::size_t i = 0; i < ChildCount(); ++i) {
        CStaveGroup& group = *GroupAt(*this, i);
        group.LayoutStaves();
        for (const auto& stave : group.Children())
            static_cast<CStave&>(*stave).LayoutBars(even, space);
    }
    InvalidateSelf();
}

void CStaveArea::SetClef(std::size_t part, std::int32_t kind)
{
    for (std::size_t i = 0; i < ChildCount(); ++i) {
        CStaveGroup& group = *GroupAt(*this, i);
        if (part >= group.ChildCount())
            continue;
        auto& stave = static_cast<CStave&>(*group.ChildAt(part));
        stave.Clef.SetType(kind);
        stave.InvalidateSelf();
    }
}

CRepeatTiming* CStaveArea::AddRepeatMarker(std::unique_ptr<CRepeatTiming> marker)
{
    std::int32_t highest = 0;
    for (const auto& m : RepeatMarkers)
        highest = std::max(highest, m->RepeatId);
    marker->RepeatId = highest + 1;
    marker->Area = this;
    CRepeatTiming* raw = RepeatMarkers.emplace_back(std::move(marker)).get();
    raw->SetBounds(Bounds());
    return raw;
}

std::unique_ptr<CRepeatTiming> CStaveArea::RemoveRepeatMarker(CRepeatTiming* marker)
{
    auto it = std::find_if(RepeatMarkers.begin(), RepeatMarkers.end(), [marker](const auto& m) { return m.get() == marker; });
    if (it == RepeatMarkers.end())
        return nullptr;
    std::unique_ptr<CRepeatTiming> taken = std::move(*it);
    RepeatMarkers.erase(it);
    InvalidateSelf();
    return taken;
}

CRepeatTiming* CStaveArea::FindRepeatMarker(std::int32_t id) const
{
    for (const auto& marker : RepeatMarkers) {
        if (marker->RepeatId == id)
            return marker.get();
    }
    return nullptr;
}

CRepeatTiming* CStaveArea::RepeatMarkerAt(float x, float y) const
{
    for (const auto& marker : RepeatMarkers) {
        if (marker->HitAt(x, y))
            return marker.get();
    }
    return nullptr;
}

CBarEx* CStaveArea::PreviousBar(const CBarEx& bar)
{
    const CGraphObjContainer* stave = bar.Parent();
    if (stave == nullptr)
        return nullptr;
    const int index = stave->IndexOfChild(&bar);
    return index > 0 ? static_cast<CBarEx*>(stave->ChildAt(static_cast<std::size_t>(index - 1))) : nullptr;
}

CBarEx* CStaveArea::NextBar(const CBarEx& bar)
{
    const CGraphObjContainer* stave = bar.Parent();
    if (stave == nullptr)
        return nullptr;
    const auto index = static_cast<std::size_t>(stave->IndexOfChild(&bar));
    if (index + 1 < stave->ChildCount())
        return static_cast<CBarEx*>(stave->ChildAt(index + 1));

    const CGraphObjContainer* group = stave->Parent();
    const CGraphObjContainer* area = group != nullptr ? group->Parent() : nullptr;
    if (area == nullptr)
        return nullptr;
    const int part = group->IndexOfChild(stave);
    const int groupIndex = area->IndexOfChild(group);
    if (part < 0 || groupIndex < 0 || static_cast<std::size_t>(groupIndex) + 1 >= area->ChildCount())
        return nullptr;
    const auto* next = static_cast<const CGraphObjContainer*>(area->ChildAt(static_cast<std::size_t>(groupIndex) + 1));
    if (static_cast<std::size_t>(part) >= next->ChildCount())
        return nullptr;
    const auto* nextStave = static_cast<const CGraphObjContainer*>(next->ChildAt(static_cast<std::size_t>(part)));
    return nextStave->ChildCount() > 0 ? static_cast<CBarEx*>(nextStave->ChildAt(0)) : nullptr;
}

std::unique_ptr<CPageArea> CStaveArea::Clone() const
{
    auto copy = std::make_unique<CStaveArea>();
    copy->StaveSpacing = StaveSpacing;
    copy->Background = Background;
    copy->LeftMargin = LeftMargin;
    copy->RightMargin = RightMargin;
    copy->TopMargin = TopMargin;
    copy->BottomMargin = BottomMargin;
    copy->InitialTimeSig.SetType(InitialTimeSig.Type);
    copy->ShowTimeSig = ShowTimeSig;
    copy->ShowKeySig = ShowKeySig;
    copy->ShowBarLines = ShowBarLines;
    copy->SetBounds(Bounds());
    copy->SetGroupCount(ChildCount());
    copy->SetPartCount(std::max(PartCount, 1));

    for (std::size_t g = 0; g < ChildCount() && g < copy->ChildCount(); ++g) {
        const CStaveGroup& source = *GroupAt(*this, g);
        CStaveGroup& target = *GroupAt(*copy, g);
        while (target.BarConfigs.size() < source.BarConfigs.size())
            target.InsertBarColumn(target.BarConfigs.size());
        target.LayoutStaves();
        for (std::size_t s = 0; s < source.ChildCount() && s < target.ChildCount(); ++s) {
            const auto& from = static_cast<const CStave&>(*source.ChildAt(s));
            auto& to = static_cast<CStave&>(*target.ChildAt(s));
            for (std::size_t b = 0; b < from.ChildCount() && b < to.ChildCount(); ++b) {
                const auto& fromBar = static_cast<const CBarEx&>(*from.ChildAt(b));
                auto& toBar = static_cast<CBarEx&>(*to.ChildAt(b));
                // Only the bar before counts, not a running sum: the copy keeps that quirk.
                float excess = 0;
                if (b > 0) {
                    const auto& prevTo = static_cast<const CBarEx&>(*to.ChildAt(b - 1));
                    const auto& prevFrom = static_cast<const CBarEx&>(*from.ChildAt(b - 1));
                    excess = prevTo.Bounds().Width - prevFrom.Bounds().Width;
                }
                const RectF r = toBar.Bounds();
                toBar.SetBounds(r.X - excess, r.Y, fromBar.Bounds().Width, r.Height);
                CopyBarContent(fromBar, toBar);
            }
            // Of the configurations only the first bar's lines and signature come along.
            const CBarConfig* fromConfig = from.ChildCount() > 0 ? static_cast<const CBarEx&>(*from.ChildAt(0)).Config : nullptr;
            CBarConfig* toConfig = to.ChildCount() > 0 ? static_cast<CBarEx&>(*to.ChildAt(0)).Config : nullptr;
            if (fromConfig != nullptr && toConfig != nullptr) {
                toConfig->StartRepeat = fromConfig->StartRepeat;
                toConfig->StartBarLine = fromConfig->StartBarLine && !fromConfig->StartRepeat;
                toConfig->EndRepeat = fromConfig->EndRepeat;
                toConfig->EndBarLine = fromConfig->EndBarLine && !fromConfig->EndRepeat;
                toConfig->TimeSig.SetType(fromConfig->TimeSig.Type);
            }
        }
    }
    return copy;
}

void CStaveArea::AfterBoundsChange(const RectF&)
{
    for (const auto& marker : RepeatMarkers)
        marker->SetBounds(Bounds());
    Relayout();
}

void CStaveArea::OnChildRemoved(CScoObj*) { Relayout(); }

void CStaveArea::Draw(Painter& painter, OutputMode mode)
{
    CPageArea::Draw(painter, mode);
    for (const auto& marker : RepeatMarkers) {
        marker->Area = this;
        marker->DrawIfVisible(painter, mode);
    }
}

} // namespace corrieval
