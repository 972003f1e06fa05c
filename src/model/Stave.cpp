#include "model/Stave.h"

#include "model/AbbreviationArea.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/StaveArea.h"

#include <algorithm>
#include <vector>

namespace corrieval {

CORRIEVAL_IMPLEMENT_CLASS(CStave, CGraphObjContainer);
CORRIEVAL_IMPLEMENT_CLASS(CStaveGroup, CGraphObjContainer);

namespace {
constexpr std::uint32_t kBlack = 0xFF000000;
constexpr int kStaveLines[] = {5, 7, 9, 11, 13};

// Bars of a stave, typed; a stave holds nothing else.
CBarEx* BarAt(const CGraphObjContainer& stave, std::size_t i) { return static_cast<CBarEx*>(stave.ChildAt(i)); }
CStave* StaveAt(const CGraphObjContainer& group, std::size_t i) { return static_cast<CStave*>(group.ChildAt(i)); }
} // namespace

CStave::CStave()
{
    Clef.SetType(CClef::Treble);
    TimeSig.Stave = this;
}

CStave::Grid CStave::Positions() const
{
    // Accumulated by addition, as the layout has always done, so positions round the same way.
    const float unit = (Bounds().Height - (TopMargin + BottomMargin)) / 19.0f;
    Grid grid{};
    float y = 0;
    for (float& position : grid) {
        position = y;
        y += unit;
    }
    return grid;
}

bool CStave::ShowsKeySig() const
{
    const auto* area = const_cast<CStave*>(this)->FindAncestor<CStaveArea>();
    return area != nullptr && area->ShowKeySig;
}

void CStave::LayoutHeader(bool showKey)
{
    const RectF b = Bounds();
    const float h = b.Height;
    Clef.SetBounds(b.X, b.Y + Positions()[4], h / 3.8f, h * 0.7f);
    float w = (h / 3.8f) * 1.2f;
    if (showKey) {
        KeySig.SetBounds(b.X + w / 3, b.Y, h * 0.5f, h * 1.7f);
        w *= 2;
    }
    TimeSig.SetBounds(b.X + w, b.Y, h / 6, h * 0.7f);
    LeftMargin = w + h / 6;
}

void CStave::LayoutBars(bool even, bool space)
{
    LayoutHeader(ShowsKeySig());
    if (!even || ChildCount() == 0)
        return;
    const RectF box = ContentBox();
    const float width = box.Width / static_cast<float>(ChildCount());
    for (std::size_t i = 0; i < ChildCount(); ++i) {
        CBarEx* bar = BarAt(*this, i);
        bar->SetBounds(box.X + width * static_cast<float>(i), box.Y, width, box.Height);
        if (space)
            bar->AutoOrganise();
    }
}

void CStave::LayoutBarsByContent()
{
    LayoutHeader(ShowsKeySig());
    if (ChildCount() == 0)
        return;
    std::vector<float> needs;
    float total = 0;
    for (std::size_t i = 0; i < ChildCount(); ++i) {
        CBarEx* bar = BarAt(*this, i);
        bar->RecalcMargins();
        needs.push_back(bar->NeededWidth());
        total += needs.back();
    }
    const RectF box = ContentBox();
    const float scale = box.Width / total;
    float x = box.X;
    for (std::size_t i = 0; i < ChildCount(); ++i) {
        CBarEx* bar = BarAt(*this, i);
        const float width = needs[i] * scale;
        bar->SetBounds(x, box.Y, width, box.Height);
        bar->AutoOrganise();
        x += width;
    }
}

CBarEx* CStave::InsertBar(std::size_t index, CBarConfig* config)
{
    // Each bar of a legend's "Written" row shows a mark of its own; when all are in use the row
    // gets no bar, silently.
    CAbbreviationArea* legend = CAbbreviationArea::OfWrittenRow(*this);
    const auto mark = legend != nullptr ? CAbbreviationArea::FreeAbbreviation() : std::nullopt;
    if (legend != nullptr && !mark)
        return nullptr;
    auto* bar = static_cast<CBarEx*>(InsertChildAt(index, std::make_unique<CBarEx>(config), true));
    LayoutBars(true, true);
    if (legend != nullptr)
        legend->FillWrittenBar(*bar, *mark);
    return bar;
}

void CStave::RemoveBar(std::size_t index, bool relayout)
{
    if (index >= ChildCount())
        return;
    const CBarConfig* removedConfig = BarAt(*this, index)->Config;
    const std::int32_t removedTimeSig = removedConfig != nullptr ? removedConfig->TimeSig.Type : CTimeSig::None;
    if (CAbbreviationArea::OfWrittenRow(*this) != nullptr)
        CAbbreviationArea::ReleaseWrittenBar(*BarAt(*this, index));
    RemoveChild(ChildAt(index), true);
    if (relayout)
        LayoutBars(true, true);

    // The opening time signature of the tune survives the loss of the first bar.
    const CGraphObjContainer* group = Parent();
    const CGraphObjContainer* area = group != nullptr ? group->Parent() : nullptr;
    if (index == 0 && ChildCount() > 0 && dynamic_cast<const CStaveArea*>(area) != nullptr &&
        area->IndexOfChild(group) == 0) {
        if (CBarConfig* first = BarAt(*this, 0)->Config)
            first->TimeSig.SetType(removedTimeSig);
    }
    if (relayout && ChildCount() > 0)
        BarAt(*this, std::min(index, ChildCount() - 1))->SetSelected(true);
}

void CStave::AfterBoundsChange(const RectF& oldBounds)
{
    const RectF oldBox{oldBounds.X + LeftMargin, oldBounds.Y + TopMargin, oldBounds.Width - (LeftMargin + RightMargin),
                       oldBounds.Height - (TopMargin + BottomMargin)};
    LayoutHeader(ShowsKeySig());
    const RectF box = ContentBox();
    for (const auto& child : Children()) {
        const RectF r = child->Bounds();
        // A stave that had no width yet spreads nothing: its bars keep their places.
        const float scale = oldBox.Width != 0 ? box.Width / oldBox.Width : 1.0f;
        child->SetBounds(box.X + (r.X - oldBox.X) * scale, box.Y, r.Width * scale, box.Height);
    }
}

void CStave::Draw(Painter& painter, OutputMode mode)
{
    const Grid grid = Positions();
    const RectF b = Bounds();
    const float top = b.Y + TopMargin;
    const Pen pen{kBlack, GetStaveLineWidth()};
    auto* area = FindAncestor<CStaveArea>();

    if (area != nullptr) {
        const float headEnd = ChildCount() > 0 ? BarAt(*this, 0)->Bounds().X : b.X;
        painter.FillRect({b.X, top + grid[5], headEnd - b.X, grid[13] - grid[5]}, Brush::Solid(area->Background));
    }
    painter.SetSmoothing(false);
    for (int line : kStaveLines)
        painter.DrawLine(b.X, top + grid[line], b.Right(), top + grid[line], pen);

    if (painter.IsVisible(Clef.Bounds()))
        Clef.Draw(painter, mode);
    if (area != nullptr) {
        LayoutHeader(area->ShowKeySig);
        if (area->ShowKeySig && painter.IsVisible(KeySig.Bounds()))
            KeySig.Draw(painter, mode);
        // Only the first system shows the time signature at its head.
        if (area->IndexOfChild(Parent()) == 0 && area->ShowTimeSig) {
            TimeSig = area->InitialTimeSig;
            if (painter.IsVisible(TimeSig.Bounds()))
                TimeSig.Draw(painter, mode);
        }
    }
    CGraphObjContainer::Draw(painter, mode);
}

CStaveGroup::CStaveGroup() = default;
CStaveGroup::~CStaveGroup() = default;

void CStaveGroup::SetStaveCount(std::size_t count)
{
    while (ChildCount() > count)
        RemoveChild(ChildAt(ChildCount() - 1), true);
    while (ChildCount() < count) {
        auto* stave = static_cast<CStave*>(AddChild(std::make_unique<CStave>(), true));
        for (const auto& config : BarConfigs)
            stave->InsertBar(stave->ChildCount(), config.get());
    }
    LayoutStaves();
}

void CStaveGroup::InsertBarColumn(std::size_t index)
{
    index = std::min(index, BarConfigs.size());
    CBarConfig* config =
        BarConfigs.insert(BarConfigs.begin() + static_cast<std::ptrdiff_t>(index), std::make_unique<CBarConfig>())->get();
    for (std::size_t i = 0; i < ChildCount(); ++i)
        StaveAt(*this, i)->InsertBar(index, config);
}

void CStaveGroup::RemoveBarColumn(std::size_t index, bool relayout)
{
    if (index < BarConfigs.size() && BarConfigs.size() >= 2) {
        for (std::size_t i = 0; i < ChildCount(); ++i)
            StaveAt(*this, i)->RemoveBar(index, relayout);
        BarConfigs.erase(BarConfigs.begin() + static_cast<std::ptrdiff_t>(index));
    }
    if (!relayout)
        return;
    auto* area = dynamic_cast<CStaveArea*>(Parent());
    if (area == nullptr) {
        Spacing = CStaveArea::StandardSpacing;
        LayoutStaves();
        return;
    }
    area->StaveSpacing = CStaveArea::StandardSpacing;
    for (const auto& group : area->Children()) {
        auto* g = static_cast<CStaveGroup*>(group.get());
        g->Spacing = CStaveArea::StandardSpacing;
        g->LayoutStaves();
    }
}

void CStaveGroup::LayoutStaves()
{
    const RectF b = Bounds();
    TopMargin = BottomMargin = (static_cast<float>(Spacing) / 100) * b.Height / 3;
    if (ChildCount() == 0)
        return;
    const RectF box = ContentBox();
    const float height = box.Height / static_cast<float>(ChildCount());
    float y = box.Y;
    for (const auto& stave : Children()) {
        stave->SetBounds(box.X, y, box.Width, height);
        y += height;
    }
}

void CStaveGroup::SetBarLines(std::size_t column, std::int32_t startType, std::int32_t endType)
{
    if (column < 1 || column > BarConfigs.size())
        return;
    CBarConfig& config = *BarConfigs[column - 1];
    if (startType == StartRepeatLine || startType == StartPlainLine) {
        config.StartRepeat = startType == StartRepeatLine;
        config.StartBarLine = startType == StartPlainLine;
    }
    if (endType == EndRepeatLine || endType == EndPlainLine) {
        config.EndRepeat = endType == EndRepeatLine;
        config.EndBarLine = endType == EndPlainLine;
    }
}

void CStaveGroup::SetBarWidth(std::size_t column, float width)
{
    for (std::size_t i = 0; i < ChildCount(); ++i) {
        CStave& stave = *StaveAt(*this, i);
        if (column < 1 || column >= stave.ChildCount())
            continue;
        CBarEx* bar = BarAt(stave, column);
        CBarEx* before = BarAt(stave, column - 1);
        const RectF b = bar->Bounds();
        const RectF p = before->Bounds();
        const float beforeWidth = p.Width + (b.Width - width);
        if (width <= 0.1f || beforeWidth <= 0.1f)
            continue;
        before->SetBounds(p.X, p.Y, beforeWidth, p.Height);
        bar->SetBounds(b.Right() - width, b.Y, width, b.Height);
        before->InvalidateSelf();
        bar->InvalidateSelf();
    }
}

void CStaveGroup::MoveBarLine(const CBarEx& bar, float x)
{
    const CGraphObjContainer* ownStave = bar.Parent();
    if (ownStave == nullptr)
        return;
    const int column = ownStave->IndexOfChild(&bar);
    if (column < 1)
        return;
    for (std::size_t i = 0; i < ChildCount(); ++i) {
        CStave& stave = *StaveAt(*this, i);
        if (static_cast<std::size_t>(column) >= stave.ChildCount())
            continue;
        CBarEx* after = BarAt(stave, static_cast<std::size_t>(column));
        CBarEx* before = BarAt(stave, static_cast<std::size_t>(column - 1));
        const RectF a = after->Bounds();
        const RectF p = before->Bounds();
        if (x - p.X <= 0.5f || a.Right() - x <= 0.5f)
            continue;
        before->SetBounds(p.X, p.Y, x - p.X, p.Height);
        after->SetBounds(x, a.Y, a.Right() - x, a.Height);
        before->InvalidateSelf();
        after->InvalidateSelf();
    }
}

void CStaveGroup::AfterBoundsChange(const RectF&) { LayoutStaves(); }

void CStaveGroup::OnChildRemoved(CScoObj*) { LayoutStaves(); }

} // namespace corrieval
