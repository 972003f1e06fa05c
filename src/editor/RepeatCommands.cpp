#include "editor/RepeatCommands.h"

#include "editor/AreaBars.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/NoteEx.h"
#include "notation/RepeatTiming.h"
#include "playback/TuneSequence.h"

#include <unordered_set>

namespace corrieval {

namespace {

std::uint8_t RepeatState(const CBarEx& bar)
{
    return bar.Config != nullptr ? bar.Config->RepeatEnding : std::uint8_t{CBarConfig::NoEnding};
}

CStaveArea* AreaOf(const CBarEx& bar)
{
    return const_cast<CBarEx&>(bar).FindAncestor<CStaveArea>();
}

// The notes in written order, as play will meet them: what a marker stamps. Built afresh from
// the score rather than taken from the tune window's play lists, which may be playing and may
// point at notes that have gone since they were built.
class WrittenTune {
public:
    explicit WrittenTune(CCorrievalDoc& doc) : m_sequence(&doc) { m_sequence.Build(nullptr); }
    const WrittenNotes& Notes() const { return m_sequence; }

private:
    CTuneSequence m_sequence;
};

// The written notes that were not in the tune before.
class AddedNotes : public WrittenNotes {
public:
    AddedNotes(const WrittenNotes& all, const std::unordered_set<const CNoteEx*>& before)
        : m_all(all), m_before(before)
    {
    }
    void VisitPart(int part, const std::function<bool(const PlayedNote&)>& visit) const override
    {
        m_all.VisitPart(
            part, [&](const PlayedNote& played) { return m_before.contains(played.Note) || visit(played); });
    }

private:
    const WrittenNotes& m_all;
    const std::unordered_set<const CNoteEx*>& m_before;
};

} // namespace

bool CanInsertRepeat(const CBarEx& bar)
{
    return RepeatState(bar) == CBarConfig::NoEnding && AreaOf(bar) != nullptr &&
           CStaveArea::NextBar(bar) != nullptr;
}

void InsertRepeat(CBarEx& bar, CCorrievalDoc& doc)
{
    if (!CanInsertRepeat(bar))
        return;
    CStaveArea* area = AreaOf(bar);
    CBarEx* next = CStaveArea::NextBar(bar);
    CRepeatTiming* marker = area->AddRepeatMarker(std::make_unique<CRepeatTiming>(area, bar, false, 0, 0.0f));
    marker->Restamp(WrittenTune(doc).Notes());
    bar.RepeatTiming = marker;
    bar.Config->RepeatEnding = CBarConfig::FirstTime;
    if (next->Config != nullptr)
        next->Config->RepeatEnding = CBarConfig::SecondTime;
    area->InvalidateSelf();
}

bool CanDeleteRepeat(const CBarEx& bar)
{
    return RepeatState(bar) != CBarConfig::NoEnding && bar.RepeatTiming != nullptr;
}

void DeleteRepeat(CBarEx& bar, CCorrievalDoc& doc)
{
    CStaveArea* area = AreaOf(bar);
    if (!CanDeleteRepeat(bar) || area == nullptr || CStaveArea::NextBar(bar) == nullptr)
        return;
    // The bar after stays a second-time bar: a piper who moves the marker on keeps that bar's
    // ending as written.
    bar.Config->RepeatEnding = CBarConfig::NoEnding;
    CRepeatTiming* marker = std::exchange(bar.RepeatTiming, nullptr);
    marker->ClearStamps(WrittenTune(doc).Notes());
    area->RemoveRepeatMarker(marker);
}

void StampNotesAddedBy(CCorrievalDoc& doc, const std::function<void()>& change)
{
    std::unordered_set<const CNoteEx*> before;
    const WrittenTune earlier(doc);
    for (int part = 0; part < WrittenNotes::PartCount; ++part) {
        earlier.Notes().VisitPart(part, [&before](const PlayedNote& played) {
            before.insert(played.Note);
            return true;
        });
    }
    change();
    const WrittenTune later(doc);
    const AddedNotes added(later.Notes(), before);
    for (const auto& page : doc.Pages) {
        for (const auto& child : page->Children()) {
            if (const auto* area = dynamic_cast<const CStaveArea*>(child.get())) {
                for (const auto& marker : area->RepeatMarkers)
                    marker->Stamp(added);
            }
        }
    }
}

void DeleteMarker(CRepeatTiming& marker, CCorrievalDoc& doc)
{
    CStaveArea* area = marker.Area;
    if (area == nullptr)
        return;
    CBarEx* owner = nullptr;
    ForEachBar(*area, [&](CBarEx& bar) {
        if (bar.RepeatTiming == &marker)
            owner = &bar;
    });
    if (owner != nullptr && CanDeleteRepeat(*owner) && CStaveArea::NextBar(*owner) != nullptr) {
        DeleteRepeat(*owner, doc);
        return;
    }
    // A marker that no bar starts (as an older tune may have it) still lets go of its notes.
    if (owner != nullptr)
        owner->RepeatTiming = nullptr;
    marker.ClearStamps(WrittenTune(doc).Notes());
    area->RemoveRepeatMarker(&marker);
}

} // namespace corrieval
