#include "formats/glenmarch/WrittenEndings.h"

#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "notation/RepeatTiming.h"

#include <algorithm>
#include <memory>

namespace corrieval {

namespace {

// A leg that stands between two notes keeps this much room before the note it leads.
constexpr float kLegGap = 0.04f;

// The child of the bar that holds `object`: the object itself, or its beam.
const CScoObj* InBar(const CBarEx& bar, const CScoObj* object)
{
    while (object != nullptr && object->Parent() != &bar)
        object = object->Parent();
    return object;
}

struct Place {
    std::int32_t Row = -1; // the system in the area
    float Position = 0;    // a fraction of the stave's content width
};

Place PlaceOf(const CStaveArea& area, const CBarEx& bar, float x)
{
    const auto* stave = dynamic_cast<const CStave*>(bar.Parent());
    if (stave == nullptr || stave->Parent() == nullptr)
        return {};
    const RectF content = stave->ContentBox();
    const float position = content.Width > 0 ? (x - content.X) / content.Width : 0.0f;
    return {area.IndexOfChild(stave->Parent()), std::clamp(position, 0.0f, 1.0f)};
}

// A section that begins with a bar's first note begins at the bar line; one that begins within
// the bar, just before its note.
float StartX(const CBarEx& bar, const CScoObj* object)
{
    const CScoObj* child = InBar(bar, object);
    if (child == nullptr || bar.IndexOfChild(child) <= 0)
        return bar.ContentBox().X;
    return child->Bounds().X - kLegGap;
}

// A section that ends with a bar's last note ends at the bar line; one that ends within the bar,
// just after its note.
float EndX(const CBarEx& bar, const CScoObj* object)
{
    const CScoObj* child = InBar(bar, object);
    const RectF content = bar.ContentBox();
    if (child == nullptr || bar.IndexOfChild(child) + 1 >= static_cast<int>(bar.ChildCount()))
        return content.X + content.Width;
    const RectF b = child->Bounds();
    return b.X + b.Width + kLegGap;
}

} // namespace

RepeatLink WrittenEndings::Enter(std::uint8_t ending, CStaveArea& area, CBarEx& bar)
{
    m_waiting = nullptr;
    if (ending != m_current && ending != 0) {
        // A second time belongs to the first time before it, whatever stands between them.
        const bool ofLastPair = ending == 2 && !m_pairs.empty() && m_pairs.back().SecondStart.Bar == nullptr;
        if (!ofLastPair) {
            Pair pair;
            pair.Id = ++m_lastId;
            pair.Area = &area;
            m_pairs.push_back(pair);
            // A second time with no first time before it brackets only itself.
            m_pairs.back().FirstStart.Bar = &bar;
        }
        m_waiting = ending == 1 ? &m_pairs.back().FirstStart : &m_pairs.back().SecondStart;
        m_waiting->Bar = &bar;
    }
    m_current = ending;
    if (ending == 0)
        return {};
    bar.Config->RepeatEnding = ending == 1 ? CBarConfig::FirstTime : CBarConfig::SecondTime;
    m_pairs.back().Last.Bar = &bar;
    return {ending, m_pairs.back().Id};
}

void WrittenEndings::Placed(const CScoObj* object)
{
    if (m_current == 0 || object == nullptr)
        return;
    if (m_waiting != nullptr)
        m_waiting->Object = object;
    m_waiting = nullptr;
    m_pairs.back().Last.Object = object;
}

void WrittenEndings::AddMarkers() const
{
    for (const Pair& pair : m_pairs) {
        CStaveArea& area = *pair.Area;
        const Place start =
            PlaceOf(area, *pair.FirstStart.Bar, StartX(*pair.FirstStart.Bar, pair.FirstStart.Object));
        const Place end = PlaceOf(area, *pair.Last.Bar, EndX(*pair.Last.Bar, pair.Last.Object));
        const Place middle =
            pair.SecondStart.Bar != nullptr
                ? PlaceOf(area, *pair.SecondStart.Bar, StartX(*pair.SecondStart.Bar, pair.SecondStart.Object))
                : end;
        // A pair that runs on to the next page is bracketed no further than this one.
        if (start.Row < 0 || middle.Row < 0 || end.Row < 0)
            continue;
        auto marker = std::make_unique<CRepeatTiming>(&area, *pair.FirstStart.Bar, true, 0, 0.0f);
        marker->StartStave = start.Row;
        marker->StartPosition = start.Position;
        marker->MiddleStave = middle.Row;
        marker->MiddlePosition = middle.Position;
        marker->EndStave = end.Row;
        marker->EndPosition = end.Position;
        CRepeatTiming* added = area.AddRepeatMarker(std::move(marker));
        // The notes carry the tune's count of pairs, so the marker takes the same id.
        added->RepeatId = pair.Id;
        pair.FirstStart.Bar->RepeatTiming = added;
    }
}

} // namespace corrieval
