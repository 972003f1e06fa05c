#include "formats/glenmarch/PipeConversion.h"

#include "model/BarEx.h"
#include "model/LineBreaks.h"
#include "model/Stave.h"
#include "model/StaveArea.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace corrieval {

namespace {
// Room a stave keeps at its head for clef, key and time signature, inches; a little more than it
// takes, so that the bars measured here still fit once the staves have their final height.
constexpr float kStaveHeadRoom = 0.6f;
// Room for the heavier lines at a bar's ends, inches.
constexpr float kBarEdgeRoom = 0.06f;
constexpr double kThousandths = 1000.0;
} // namespace

bool PipeConversion::FollowsContent() const { return m_fromText && !m_source.ReadStrictly; }

float PipeConversion::NeededWidth(const CBar& bar)
{
    // A beamed note is placed as a plain note, whatever its code.
    std::unordered_set<std::int32_t> beamed;
    for (const auto& beam : bar.Groups)
        beamed.insert(beam->NoteIds.begin(), beam->NoteIds.end());
    float widths = 0;
    std::size_t count = 0;
    for (const auto& note : bar.Notes) {
        if (!note->Visible)
            continue;
        const float width = beamed.contains(note->Id)
                                ? PlainNoteWidth
                                : WidthFromCode(static_cast<std::uint32_t>(note->Code), m_definitions);
        if (width <= 0)
            continue;
        widths += width;
        ++count;
    }
    return CBarEx::NeededWidth(widths, count) + kBarEdgeRoom;
}

void PipeConversion::FlowLines(float pageWidth)
{
    std::vector<BarToPlace> bars;
    for (const auto& bar : m_source.Bars)
        bars.push_back({NeededWidth(*bar), bar->StartsLine});
    // Every bar needs at least the room of an empty one, so a line this long never holds more
    // bars than a line can take, even on the widest paper.
    const float longest = static_cast<float>(MaxColumns) * (CBarEx::NeededWidth(0, 0) + kBarEdgeRoom);
    const std::vector<std::size_t> starts = BreakLines(bars, std::min(pageWidth - kStaveHeadRoom, longest));

    std::int32_t line = 0;
    std::int32_t column = 0;
    std::int32_t widest = 1;
    double left = 0;
    auto next = starts.begin();
    for (std::size_t i = 0; i < m_source.Bars.size(); ++i) {
        if (next != starts.end() && *next == i) {
            ++next;
            ++line;
            column = 0;
            left = 0;
        }
        CBar& bar = *m_source.Bars[i];
        bar.Line = line;
        bar.Column = ++column;
        bar.Left = static_cast<std::int32_t>(std::lround(left));
        bar.Width = std::max(1, static_cast<std::int32_t>(std::lround(bars[i].Need * kThousandths)));
        left += bar.Width;
        widest = std::max(widest, column);
    }
    m_source.BarsPerLine = widest;
    m_barAt.clear();
    for (const auto& bar : m_source.Bars)
        m_barAt.emplace(std::make_pair(bar->Line, bar->Column), bar.get());
}

void PipeConversion::FitBarsToContent(CStaveArea& area)
{
    for (const auto& group : area.Children()) {
        for (const auto& stave : static_cast<CStaveGroup&>(*group).Children())
            static_cast<CStave&>(*stave).LayoutBarsByContent();
    }
}

} // namespace corrieval
