#include "formats/glenmarch/PipeDoc.h"
#include "formats/glenmarch/PipeRecords.h"
#include "model/Messages.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace corrieval {

namespace {
// A stave of the older program is six line gaps high.
constexpr std::int32_t kGapsPerHeight = 6;
} // namespace

CBar::CBar()
{
    RecomputeStaveGap(1.0);
}

void CBar::RecomputeStaveGap(double factor)
{
    StaveGap = static_cast<double>(Height / kGapsPerHeight) * factor;
}

CNote* CBar::AddNote(std::int32_t code, std::int32_t x, std::int32_t y, CPipeDoc& doc)
{
    if (HasNotes == 0) {
        ShowMessage(QStringLiteral("Can't Add a new note to this bar!"));
        return nullptr;
    }
    // The nearest of the twelve stave positions, the lowest at two and a half gaps below the
    // middle of the stave, each half a gap above the one before.
    const double offset = static_cast<double>(y) - Top;
    const double lowest = std::trunc(StaveGap * 2.5);
    std::int32_t position = CNote::LowestPosition;
    double nearest = std::numeric_limits<double>::infinity();
    for (std::int32_t p = CNote::LowestPosition; p <= CNote::HighestPosition; ++p) {
        const double distance = std::abs(lowest - (p - CNote::LowestPosition) * StaveGap / 2 - offset);
        if (distance < nearest) {
            nearest = distance;
            position = p;
        }
    }
    const auto index = static_cast<std::int32_t>(Notes.size()) + 1;
    Notes.push_back(std::make_unique<CNote>(doc.NextNoteId++, index, position, code, x - Left));
    return Notes.back().get();
}

CNoteGroup* CBar::NewGroup(CPipeDoc& doc)
{
    Groups.push_back(std::make_unique<CNoteGroup>());
    Groups.back()->Id = doc.NextGroupId++;
    return Groups.back().get();
}

bool CBar::AddToGroup(CNoteGroup& group, const CNote& note, std::int32_t x, std::int32_t y) const
{
    const std::int64_t half = Height / 2;
    const bool inside = x >= Left && x <= std::int64_t{Left} + Width && y >= Top - half && y <= Top + half;
    if (!inside || group.NoteIds.size() >= static_cast<std::size_t>(CNoteGroup::MaxNotes))
        return false;
    group.Add(note);
    return true;
}

void CBar::MergeNotesFrom(CBar& other)
{
    std::int32_t lastIndex = 0;
    for (const auto& note : Notes)
        lastIndex = std::max(lastIndex, note->Index);
    for (auto& note : other.Notes) {
        note->Index += lastIndex;
        Notes.push_back(std::move(note));
    }
    other.Notes.clear();
}

void CBar::MergeGroupsFrom(CBar& other)
{
    for (auto& group : other.Groups)
        Groups.push_back(std::move(group));
    other.Groups.clear();
}

const CNoteGroup* CBar::GroupOf(std::int32_t noteId) const
{
    const auto it =
        std::find_if(Groups.begin(), Groups.end(), [&](const auto& g) { return g->Contains(noteId); });
    return it != Groups.end() ? it->get() : nullptr;
}

bool CBar::HoldsNote(std::int32_t noteId) const
{
    return std::any_of(Notes.begin(), Notes.end(), [&](const auto& note) { return note->Id == noteId; });
}

} // namespace corrieval
