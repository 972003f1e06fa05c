#include "formats/glenmarch/ConversionRules.h"
#include "formats/glenmarch/PipeConversion.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/StaveArea.h"
#include "notation/NoteEx.h"
#include "notation/NoteGroupEx.h"
#include "notation/RepeatTiming.h"
#include "notation/TieEx.h"

#include <algorithm>
#include <unordered_map>

namespace corrieval {

namespace {
// A movement is laid out at this much a note; the notes after it move on by that and a note more.
constexpr float kMovementNoteWidth = 0.078f;
// An anacrusis state from here on takes no part in endings.
constexpr std::int32_t kLastEndingAnacrusis = 3;
// The bar lines a BWW tune wrote; a Glenmarch bar has plain ones and leaves the bar as it is.
void SetBarLines(const CBar& older, CBarConfig& config)
{
    using Edge = CBar::Edge;
    if (older.StartEdge != Edge::Plain) {
        config.StartRepeat = older.StartEdge == Edge::Repeat;
        config.StartBarLine = older.StartEdge == Edge::Heavy;
    }
    if (older.EndEdge != Edge::Plain) {
        config.EndRepeat = older.EndEdge == Edge::Repeat;
        config.EndBarLine = older.EndEdge == Edge::Heavy;
    }
}

} // namespace

void PipeConversion::NextEnding()
{
    m_mode = EndingMode::None;
    while (m_nextPart < m_source.Parts.size()) {
        const CPart& part = *m_source.Parts[m_nextPart++];
        if (part.Version < 2) {
            // A part without a first-time note has nothing to mark.
            if (part.FirstTimeBar > 0) {
                m_mode = EndingMode::FirstTimeNote;
                m_mark = part.FirstTimeBar;
                return;
            }
            continue;
        }
        const bool located = part.FirstTimeLine != 0 || part.FirstTimeColumn != 0;
        const bool counts = part.AnacrusisState < kLastEndingAnacrusis;
        if (counts && part.EndingKind == CPart::FirstTime && !located) {
            m_mode = EndingMode::WholeLine;
            m_mark = part.Number;
            return;
        }
        if (counts && part.EndingKind == CPart::FirstAndSecondTime && located) {
            m_mode = EndingMode::FirstTimeNoteWithMarker;
            m_mark = part.FirstTimeBar;
            return;
        }
    }
}

void PipeConversion::PlaceBar(const BarPlacing& placing, CStaveArea& area)
{
    ++m_barCounter;
    CBarEx& bar = placing.Bar;
    bar.RecalcMargins();
    const RectF content = bar.ContentBox();
    float start = content.X;

    std::vector<const CNote*> notes;
    for (const auto& note : placing.Older.Notes)
        notes.push_back(note.get());
    std::stable_sort(notes.begin(), notes.end(),
                     [](const CNote* a, const CNote* b) { return a->Index < b->Index; });
    // A note belongs to the first beam that names it.
    std::unordered_map<std::int32_t, const CNoteGroup*> beamOf;
    for (const auto& beam : placing.Older.Groups) {
        for (std::int32_t id : beam->NoteIds)
            beamOf.emplace(id, beam.get());
    }

    float x = start;
    bool first = true;
    for (const CNote* note : notes) {
        if (!note->Visible)
            continue;
        FollowTie(note->Id);
        if (m_fromText) {
            const RepeatLink link = m_written.Enter(note->Ending, area, bar);
            m_timing = link.Kind;
            m_repeatId = link.Id;
        } else {
            HonourEnding(note->Id, placing, area);
        }
        const double offset = placing.ColumnWidth > 0 ? note->X / placing.ColumnWidth * content.Width : 0.0;
        // The first note keeps its distance from the bar line: the bar's start moves left by half.
        if (first) {
            start -= static_cast<float>(offset / 2);
            first = false;
        }
        // The notes go on in their order even where the older places run back.
        x = std::max(x, static_cast<float>(offset) + start);
        const auto beam = beamOf.find(note->Id);
        m_written.Placed(beam != beamOf.end() ? PlaceBeamed(*note, *beam->second, placing, x)
                                              : PlaceSingle(*note, placing, x));
        if (m_olderTie != nullptr && note->Id == m_olderTie->Last()) {
            m_olderTie = nullptr;
            m_tie = nullptr;
        }
    }
    CloseBeam(bar);
    if (m_sectionOpen && placing.Older.BarKind == CBar::SecondTimeFollows) {
        m_timing = 2;
    } else if (m_sectionOpen && placing.Older.BarKind == CBar::EndOfRepeat) {
        m_timing = 0;
        m_sectionOpen = false;
    }
    SetBarLines(placing.Older, *bar.Config);
    bar.AutoOrganise();
}

void PipeConversion::FollowTie(std::int32_t noteId)
{
    if (m_olderTie != nullptr && m_olderTie->Holds(noteId))
        return;
    // A tie whose later notes never came stays open until the next tie starts.
    const auto found = m_tieByFirst.find(noteId);
    if (found == m_tieByFirst.end())
        return;
    m_olderTie = found->second;
    auto tie = std::make_unique<CTieEx>();
    tie->Id = m_doc.NextTieId();
    m_tie = tie.get();
    m_doc.Ties.push_back(std::move(tie));
}

CTieEx* PipeConversion::TieFor(std::int32_t noteId) const
{
    return m_olderTie != nullptr && m_olderTie->Holds(noteId) ? m_tie : nullptr;
}

void PipeConversion::HonourEnding(std::int32_t noteId, const BarPlacing& placing, CStaveArea& area)
{
    bool used = false;
    switch (m_mode) {
    case EndingMode::None:
        return;
    case EndingMode::FirstTimeNote:
        if (m_mark == noteId) {
            OpenSection(placing.Bar);
            used = true;
        }
        break;
    case EndingMode::WholeLine:
        // The part's mark names a bar; the ending takes the whole line after that bar's line.
        if (m_mark == m_barCounter)
            m_targetLine = std::int64_t{placing.Older.Line} + 1;
        if (m_targetLine == placing.Older.Line) {
            OpenSection(placing.Bar);
            AddWholeLineMarker(area, placing.Bar);
            m_targetLine = -1;
            used = true;
        }
        break;
    case EndingMode::FirstTimeNoteWithMarker:
        if (m_mark == noteId) {
            OpenSection(placing.Bar);
            AddWholeLineMarker(area, placing.Bar);
            used = true;
        }
        break;
    }
    if (used)
        NextEnding();
}

void PipeConversion::OpenSection(CBarEx& bar)
{
    ++m_repeatId;
    m_timing = 1;
    m_sectionOpen = true;
    bar.Config->RepeatEnding = CBarConfig::FirstTime;
}

void PipeConversion::AddWholeLineMarker(CStaveArea& area, CBarEx& bar)
{
    CRepeatTiming* marker = area.AddRepeatMarker(std::make_unique<CRepeatTiming>(&area, bar, true, 0, 0.0f));
    // The notes carry the tune's count of sections, so the marker takes the same id.
    marker->RepeatId = m_repeatId;
    bar.RepeatTiming = marker;
}

const CScoObj* PipeConversion::PlaceBeamed(const CNote& note, const CNoteGroup& beam,
                                           const BarPlacing& placing, float x)
{
    const bool opens = note.X == beam.LeftmostX;
    const bool closes = note.X == beam.RightmostX;
    if (opens || m_beam == nullptr || m_olderBeam != &beam) {
        CloseBeam(placing.Bar);
        m_beam = std::make_unique<CNoteGroupEx>();
        m_olderBeam = &beam;
    }
    const RectF b = placing.Bar.Bounds();
    auto made = std::make_unique<CNoteEx>();
    made->SetBounds(x, b.Y, PlainNoteWidth, b.Height);
    made->Pitch = std::clamp(CNote::PitchBase - note.Pitch, HighestPitch, LowestPitch);
    const BeamedNoteContext context{m_fromText, m_source.BeatDoubling != 0,
                                    placing.Older.Groups.size() > 2 || placing.UpbeatColumn};
    const NoteValue value = BeamedNoteValue(note.Code, note.Dot, placing.TimeSig, context);
    made->Duration = value.Duration;
    made->DotCut = value.DotCut;
    made->Weight = note.Hold;
    made->RepeatKind = m_timing;
    made->RepeatId = m_timing > 0 ? m_repeatId : 0;
    if (CTieEx* tie = TieFor(note.Id))
        tie->AddNote(made.get());
    // The older codes count a beamed note's beams from one less, so the beam adds one.
    const CScoObj* placed = m_beam->AddChild(std::move(made), true);
    if (closes)
        CloseBeam(placing.Bar);
    return placed;
}

const CScoObj* PipeConversion::PlaceSingle(const CNote& note, const BarPlacing& placing, float& x)
{
    const RectF b = placing.Bar.Bounds();
    m_made.Object = nullptr;
    const OlderNote older{static_cast<std::uint32_t>(note.Code), note.Pitch, note.Dot, note.Hold};
    MovementFromCode(older, placing.Bar, x, b.Y, b.Height, TieFor(note.Id),
                     RepeatLink{m_timing, m_timing > 0 ? m_repeatId : 0}, m_definitions, m_made);
    const std::int32_t count = m_made.NoteCount;
    if (count > 1)
        x += kMovementNoteWidth * static_cast<float>(count < 4 ? count + 1 : count);
    return m_made.Object;
}

void PipeConversion::CloseBeam(CBarEx& bar)
{
    if (m_beam != nullptr)
        bar.AddNoteSorted(std::move(m_beam));
    m_beam.reset();
    m_olderBeam = nullptr;
}

} // namespace corrieval
