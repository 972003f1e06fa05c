#include "editor/StaveAreaShape.h"

#include "model/BarConfig.h"
#include "model/Stave.h"
#include "model/StaveArea.h"

#include <algorithm>

namespace corrieval {

namespace {

constexpr std::int32_t kMaxSpacing = 100;

CStaveGroup& LineAt(const CStaveArea& area, std::size_t line)
{
    return static_cast<CStaveGroup&>(*area.ChildAt(line));
}

void SetColumnCount(CStaveGroup& group, std::size_t columns)
{
    while (group.BarConfigs.size() < columns)
        group.InsertBarColumn(group.BarConfigs.size());
    // A line keeps one bar at least, so the loop stops there whatever it was asked.
    while (group.BarConfigs.size() > std::max<std::size_t>(columns, 1))
        group.RemoveBarColumn(group.BarConfigs.size() - 1, true);
}

} // namespace

void InsertLine(CStaveArea& area, std::size_t after, std::size_t lineCount, std::size_t partCount,
                std::int32_t spacing)
{
    auto group = std::make_unique<CStaveGroup>();
    group->SetStaveCount(partCount);
    auto& line = static_cast<CStaveGroup&>(*area.InsertChildAfter(after, std::move(group), true));
    // Places the new line among the others before its bars are made, so that they fit its staves.
    area.SetGroupCount(lineCount);
    SetColumnCount(line, NewLineBars);
    line.LayoutStaves();
    ApplySpacing(area, spacing);
}

void RemoveLine(CStaveArea& area, std::size_t line)
{
    // The area restacks the remaining lines as the line leaves.
    area.RemoveChild(area.ChildAt(line), true);
}

void InsertPart(CStaveArea& area, std::size_t after, std::size_t partCount,
                const std::vector<int>& barsPerLine, std::int32_t spacing)
{
    for (const auto& child : area.Children()) {
        auto& group = static_cast<CStaveGroup&>(*child);
        auto& stave = static_cast<CStave&>(*group.InsertChildAfter(after, std::make_unique<CStave>(), true));
        // The new stave's bars join the columns of the line, sharing their bar lines and time
        // signatures with the bars above and below them.
        for (std::size_t column = 0; column < group.BarConfigs.size(); ++column)
            stave.InsertBar(column, group.BarConfigs[column].get());
        group.LayoutStaves();
    }
    area.SetGroupCount(barsPerLine.size());
    area.SetPartCount(static_cast<std::int32_t>(partCount));
    SetBarsPerLine(area, barsPerLine);
    ApplySpacing(area, spacing);
}

void RemovePart(CStaveArea& area, std::size_t part, std::size_t partCount)
{
    for (const auto& child : area.Children()) {
        auto& group = static_cast<CStaveGroup&>(*child);
        if (part < group.ChildCount())
            group.RemoveChild(group.ChildAt(part), true);
    }
    // The part count follows at once, so that playback and new lines agree with the staves even
    // when the dialog is then cancelled.
    area.SetPartCount(static_cast<std::int32_t>(partCount));
}

void SetBarsPerLine(CStaveArea& area, const std::vector<int>& barsPerLine)
{
    const std::size_t lines = std::min(barsPerLine.size(), area.ChildCount());
    for (std::size_t i = 0; i < lines; ++i) {
        CStaveGroup& group = LineAt(area, i);
        SetColumnCount(group, static_cast<std::size_t>(std::max(barsPerLine[i], 1)));
        group.LayoutStaves();
    }
}

void ApplySpacing(CStaveArea& area, std::int32_t spacing)
{
    area.StaveSpacing = std::clamp(spacing, 0, kMaxSpacing);
    for (const auto& child : area.Children()) {
        auto& group = static_cast<CStaveGroup&>(*child);
        group.Spacing = area.StaveSpacing;
        group.LayoutStaves();
    }
    area.InvalidateSelf();
}

} // namespace corrieval
