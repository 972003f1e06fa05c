#include "formats/glenmarch/PipeConversion.h"

#include "model/BarEx.h"
#include "model/LineBreaks.h"
#include "model/Stave.h"
#include "model/StaveArea.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>
#include <utility>

namespace corrieval {

namespace {
// Room a stave keeps at its head for clef, key and time signature, inches; a little more than it
// takes, so that the bars measured here still fit once the staves have their final height.
constexpr float kStaveHeadRoom = 0.6f;
// Room for the heavier lines at a bar's ends, inches.
constexpr float kBarEdgeRoom = 0.06f;
constexpr double kThousandths = 1000.0;

// What a bar needs for notes of these widths; one of width 0 is not drawn.
class NeededRoom {
public:
    void Add(float width)
    {
        m_total += width;
        m_count += width > 0 ? 1 : 0;
    }
    float Width() const { return CBarEx::NeededWidth(m_total, m_count) + kBarEdgeRoom; }
    float WidthWith(float width) const
    {
        NeededRoom more = *this;
        more.Add(width);
        return more.Width();
    }

private:
    float m_total = 0;
    std::size_t m_count = 0;
};

float NeededWidth(const std::vector<float>& widths)
{
    NeededRoom room;
    for (const float width : widths)
        room.Add(width);
    return room.Width();
}

// A note after which a bar may be cut: a melody note, and at best one that leaves no beam open,
// so that gracenotes and movements stay with the note they lead to.
enum class Cut { No, Possible, Best };

Cut CutAfter(const CBar& bar, const CNote& note)
{
    if (note.Code >= CNote::GracenoteCode)
        return Cut::No;
    const CNoteGroup* beam = bar.GroupOf(note.Id);
    return beam == nullptr || beam->NoteIds.empty() || beam->NoteIds.back() == note.Id ? Cut::Best
                                                                                       : Cut::Possible;
}

// Where a bar too wide for a line is cut: the first note of each further piece. Each piece is
// as long as fits, cut after its last best place, else its last possible one, else where it is
// full; a single note wider than a line stands alone.
std::vector<std::size_t> BarCuts(const CBar& bar, const std::vector<float>& widths, float lineWidth)
{
    std::vector<std::size_t> cuts;
    if (NeededWidth(widths) <= lineWidth)
        return cuts;
    std::size_t start = 0;
    while (start < widths.size()) {
        NeededRoom room;
        room.Add(widths[start]);
        std::size_t end = start + 1;
        for (; end < widths.size() && room.WidthWith(widths[end]) <= lineWidth; ++end)
            room.Add(widths[end]);
        if (end == widths.size())
            break;
        std::size_t best = 0;
        std::size_t possible = 0;
        for (std::size_t i = start; i < end; ++i) {
            const Cut cut = CutAfter(bar, *bar.Notes[i]);
            possible = cut != Cut::No ? i + 1 : possible;
            best = cut == Cut::Best ? i + 1 : best;
        }
        start = best > 0 ? best : possible > 0 ? possible : end;
        cuts.push_back(start);
    }
    return cuts;
}

// Spaces the notes evenly across the bar, as the import first placed them, so that each piece of a
// split bar spreads over its own width.
void SpreadNotes(CBar& bar)
{
    const auto spacing = bar.Width / (static_cast<std::int32_t>(bar.Notes.size()) + 1);
    std::int32_t x = spacing;
    for (auto& note : bar.Notes) {
        note->X = x;
        x += spacing;
    }
}

// Moves the notes of `bar` from `first` on into a new bar that follows it, with the line at its
// end and the beams of those notes; a beam the cut crosses keeps the notes of its own bar.
std::unique_ptr<CBar> SplitOff(CBar& bar, std::size_t first)
{
    auto piece = std::make_unique<CBar>();
    piece->Top = bar.Top;
    piece->Height = bar.Height;
    piece->StaveGap = bar.StaveGap;
    piece->Left = bar.Left;
    piece->Width = bar.Width;
    piece->BarKind = std::exchange(bar.BarKind, CBar::Plain);
    piece->EndEdge = std::exchange(bar.EndEdge, CBar::Edge::Plain);
    const auto cut = bar.Notes.begin() + static_cast<std::ptrdiff_t>(first);
    std::int32_t index = 1;
    for (auto note = cut; note != bar.Notes.end(); ++note) {
        (*note)->Index = index++;
        piece->Notes.push_back(std::move(*note));
    }
    bar.Notes.erase(cut, bar.Notes.end());
    for (auto& beam : bar.Groups) {
        if (!beam->NoteIds.empty() && piece->HoldsNote(beam->NoteIds.front()))
            piece->Groups.push_back(std::move(beam));
    }
    std::erase(bar.Groups, nullptr);
    const auto keepOwn = [](CBar& owner) {
        for (auto& beam : owner.Groups)
            std::erase_if(beam->NoteIds, [&owner](std::int32_t id) { return !owner.HoldsNote(id); });
    };
    keepOwn(bar);
    keepOwn(*piece);
    return piece;
}

} // namespace

bool PipeConversion::FollowsContent() const { return m_fromText && !m_source.ReadStrictly; }

std::vector<float> PipeConversion::NoteWidths(const CBar& bar)
{
    // A beamed note is placed as a plain note, whatever its code.
    std::unordered_set<std::int32_t> beamed;
    for (const auto& beam : bar.Groups)
        beamed.insert(beam->NoteIds.begin(), beam->NoteIds.end());
    std::vector<float> widths;
    for (const auto& note : bar.Notes) {
        const auto code = static_cast<std::uint32_t>(note->Code);
        const float width = !note->Visible              ? 0.0f
                            : beamed.contains(note->Id) ? PlainNoteWidth
                                                        : WidthFromCode(code, m_definitions);
        widths.push_back(std::max(width, 0.0f));
    }
    return widths;
}

void PipeConversion::SplitWideBars(float lineWidth)
{
    std::vector<std::unique_ptr<CBar>> bars;
    for (auto& bar : m_source.Bars) {
        const std::vector<float> widths = NoteWidths(*bar);
        const std::vector<std::size_t> cuts = BarCuts(*bar, widths, lineWidth);
        // The pieces are taken off the end, each with the notes from its cut on.
        std::vector<std::unique_ptr<CBar>> pieces;
        for (auto cut = cuts.rbegin(); cut != cuts.rend(); ++cut)
            pieces.push_back(SplitOff(*bar, *cut));
        if (!pieces.empty())
            SpreadNotes(*bar);
        bars.push_back(std::move(bar));
        for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
            SpreadNotes(**piece);
            bars.push_back(std::move(*piece));
        }
    }
    m_source.Bars = std::move(bars);
}

void PipeConversion::FlowLines(float pageWidth)
{
    // Every bar needs at least the room of an empty one, so a line this long never holds more
    // bars than a line can take, even on the widest paper.
    const float longest = static_cast<float>(MaxColumns) * (CBarEx::NeededWidth(0, 0) + kBarEdgeRoom);
    const float lineWidth = std::min(pageWidth - kStaveHeadRoom, longest);
    SplitWideBars(lineWidth);
    std::vector<BarToPlace> bars;
    for (const auto& bar : m_source.Bars)
        bars.push_back({NeededWidth(NoteWidths(*bar)), bar->StartsLine});
    const std::vector<std::size_t> starts = BreakLines(bars, lineWidth);

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
