#include "playback/TuneSequence.h"

#include "model/AbbreviationArea.h"
#include "model/BarConfig.h"
#include "model/BarEx.h"
#include "model/CorrievalDoc.h"
#include "model/Stave.h"
#include "model/StaveArea.h"
#include "model/TunePage.h"
#include "notation/FixedNoteGroup.h"
#include "notation/NoteEx.h"
#include "notation/TieEx.h"
#include "notation/TimeSig.h"
#include "playback/SampleBank.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace corrieval {

namespace {

// A tie over more than two notes is really a triplet bracket: each note takes two thirds.
constexpr double kTripletShare = 0.6666666666666666;
// A melody note that its gracenotes leave shorter than this is clamped to kSqueezedLength, and
// the next note of the bar pays the clamp back.
constexpr std::uint32_t kShortestMelody = 40;
constexpr std::uint32_t kSqueezedLength = 60;
constexpr std::uint32_t kHighBits = 0xFFFF0000u;

// The areas that sound: music areas, but not the legends of abbreviation marks.
template <class Visit> void ForEachMusicArea(const CCorrievalDoc& doc, Visit&& visit)
{
    for (const auto& page : doc.Pages) {
        for (const auto& child : page->Children()) {
            const auto* area = dynamic_cast<const CStaveArea*>(child.get());
            if (area != nullptr && dynamic_cast<const CAbbreviationArea*>(area) == nullptr)
                visit(*area);
        }
    }
}

// The largest number of staves in the first system of any music area, at most four.
int PartsOf(const CCorrievalDoc& doc)
{
    std::size_t parts = 0;
    ForEachMusicArea(doc, [&parts](const CStaveArea& area) {
        for (const auto& child : area.Children()) {
            if (const auto* group = dynamic_cast<const CStaveGroup*>(child.get())) {
                parts = std::max(parts, group->ChildCount());
                return;
            }
        }
    });
    return static_cast<int>(std::min<std::size_t>(parts, CTuneSequence::PartCount));
}

// The notes of a bar in the order they sound: a beamed group or a movement gives its own notes,
// one level down, and all are ordered by where they stand, not by the order of the lists. Notes
// at the same place keep their list order. A movement's gracenotes stand where the movement puts
// them, which needs no drawing: a page never shown still plays in order.
std::vector<CNoteEx*> NotesInPlayOrder(const CBarEx& bar)
{
    std::vector<std::pair<float, CNoteEx*>> placed;
    for (const auto& child : bar.Children()) {
        if (auto* note = dynamic_cast<CNoteEx*>(child.get())) {
            placed.emplace_back(note->Bounds().X, note);
        } else if (const auto* holder = dynamic_cast<const CGraphObjContainer*>(child.get())) {
            const auto* movement = dynamic_cast<const CFixedNoteGroup*>(holder);
            for (std::size_t i = 0; i < holder->ChildCount(); ++i) {
                if (auto* innerNote = dynamic_cast<CNoteEx*>(holder->ChildAt(i)))
                    placed.emplace_back(movement != nullptr ? movement->NoteLeft(i) : innerNote->Bounds().X,
                                        innerNote);
            }
        }
    }
    std::stable_sort(placed.begin(), placed.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<CNoteEx*> notes;
    notes.reserve(placed.size());
    for (const auto& [x, note] : placed)
        notes.push_back(note);
    return notes;
}

// The recording a note plays; a pitch outside the scale (a damaged file) plays silence.
void SetSample(CNoteSample& record, const CNoteEx& note)
{
    const std::int64_t index = std::int64_t{11} - note.Pitch;
    record.SampleIndex = static_cast<std::int32_t>(index);
    record.SampleData = index >= 0 && index < static_cast<std::int64_t>(SampleBank::SlotCount)
                            ? SampleBank::Slot(static_cast<std::size_t>(index))
                            : nullptr;
}

std::uint32_t DottedOrCut(std::uint32_t ticks, std::int32_t dotCut)
{
    if (dotCut == CNoteEx::Cut)
        return ticks >> 1;
    if (dotCut == CNoteEx::Dotted)
        return ticks + (ticks >> 1);
    return ticks;
}

// Whether a note of this repeat kind sounds on this pass: 0 on every pass, 1 on the first time
// through a repeat only, 2 everywhere but there.
bool PlaysOnPass(std::int32_t repeatKind, int pass)
{
    switch (repeatKind) {
    case 0:
        return true;
    case 1:
        return pass == 1;
    case 2:
        return pass != 1;
    default:
        return false;
    }
}

// One part's walk through the score into its written list. Part ticks and the tie carry run on
// from bar to bar and over areas and pages; a tie that crosses a bar line is written with the
// note that ends it.
class PartWalk {
public:
    PartWalk(int part, CNoteSampleArray& list, std::deque<CNoteSample>& records)
        : m_part(static_cast<std::size_t>(part)), m_list(list), m_records(records)
    {
    }

    void WalkArea(const CStaveArea& area)
    {
        m_timeSig = &area.InitialTimeSig;
        for (const auto& child : area.Children()) {
            const auto* group = dynamic_cast<const CStaveGroup*>(child.get());
            // A system with fewer staves than the tune has parts is silent in the missing ones.
            const auto* stave = group != nullptr && m_part < group->ChildCount()
                                    ? dynamic_cast<const CStave*>(group->ChildAt(m_part))
                                    : nullptr;
            if (stave == nullptr)
                continue;
            const std::size_t bars = std::min(group->BarConfigs.size(), stave->ChildCount());
            for (std::size_t i = 0; i < bars; ++i) {
                if (const auto* bar = dynamic_cast<const CBarEx*>(stave->ChildAt(i)))
                    WalkBar(*bar);
            }
        }
    }

    const CTimeSig* TimeSig() const { return m_timeSig; }

private:
    void WalkBar(const CBarEx& bar)
    {
        const CBarConfig* config = bar.Config;
        if (config != nullptr && config->TimeSig.Type != CTimeSig::None)
            m_timeSig = &config->TimeSig;
        // A repeat line costs one tick of the written count, so that it has a place of its own.
        if (config != nullptr && config->StartRepeat)
            AppendRepeatLine(CNoteSample::RepeatStart);
        WalkNotes(bar);
        if (config != nullptr && config->EndRepeat)
            AppendRepeatLine(CNoteSample::RepeatEnd);
    }

    void WalkNotes(const CBarEx& bar)
    {
        const std::vector<CNoteEx*> notes = NotesInPlayOrder(bar);
        std::uint32_t barTicks = 0;
        std::uint32_t graceDebt = 0;
        std::uint32_t pendingStart = 0;
        const CTieEx* tie = nullptr;
        bool inTie = false;
        // Ticks of what is about to be written; a tie open from the bar before is part of it.
        std::uint32_t carry = m_tieCarry;

        for (std::size_t i = 0; i < notes.size(); ++i) {
            CNoteEx& note = *notes[i];
            if (inTie) {
                inTie = note.Tie != nullptr;
                if (note.Tie == nullptr && carry != 0) {
                    // The tied pair ended on the note before. It is written with the first note
                    // of the pair, two back, which has the same pitch; a run that began on the
                    // first note of the bar has no note two back and takes that first note.
                    AppendNote(pendingStart, carry, *notes[i >= 2 ? i - 2 : 0], bar);
                    barTicks += carry;
                    carry = 0;
                    pendingStart = m_partTicks + barTicks;
                }
            } else {
                tie = note.Tie;
                inTie = tie != nullptr;
            }
            if (pendingStart == 0)
                pendingStart = m_partTicks + barTicks;

            std::uint32_t ticks = note.NoteTicks(*m_timeSig);
            if (inTie && tie != nullptr && tie->Notes.size() > 2) {
                ticks = static_cast<std::uint32_t>(std::trunc(ticks * kTripletShare));
                tie = nullptr;
                inTie = false;
            }

            if (IsSmallDuration(note.Duration)) {
                graceDebt += ticks;
                carry += ticks;
            } else {
                ticks = DottedOrCut(ticks, note.DotCut);
                const std::uint32_t rest = ticks - graceDebt; // wraps when the gracenotes took more
                if (rest < kShortestMelody || (rest & kHighBits) != 0) {
                    // Squeezed by its gracenotes: the note keeps an audible minimum, whatever tie
                    // was carried, and the next note of the bar pays it back. A note that the
                    // gracenotes overdrew by more than the minimum is left with nothing rather
                    // than wrapping round to a note of a day's length.
                    const std::uint32_t deficit = graceDebt > ticks ? graceDebt - ticks : 0;
                    carry = deficit > 0 ? kSqueezedLength - std::min(deficit, kSqueezedLength)
                                        : kSqueezedLength + rest;
                    graceDebt = kSqueezedLength;
                } else {
                    carry += rest;
                    graceDebt = 0;
                }
            }

            if (inTie && m_tieCarry == 0)
                continue; // the tied run goes on growing
            if (inTie) {
                // This note ends a tie from the bar before: the run began there.
                pendingStart -= m_tieCarry;
                inTie = false;
            }
            AppendNote(pendingStart, carry, note, bar);
            // The part of a crossing tie that lay in the bar before was counted there.
            barTicks += carry - m_tieCarry;
            m_tieCarry = 0;
            carry = 0;
            pendingStart = 0;
        }

        if (carry != 0 && !notes.empty() && notes.back()->Tie != nullptr) {
            CNoteEx& last = *notes.back();
            const CTieEx& lastTie = *last.Tie;
            if (!lastTie.Notes.empty() && lastTie.Notes.front() == &last)
                m_tieCarry = carry; // the tie goes over the bar line: written where it ends
            else
                AppendNote(pendingStart, carry, last, bar);
            barTicks += carry;
        }
        // Gracenotes at the very end of a bar take nothing from the next bar.
        m_partTicks += barTicks;
    }

    void AppendNote(std::uint32_t start, std::uint32_t length, CNoteEx& note, const CBarEx& bar)
    {
        CNoteSample& record = m_records.emplace_back();
        record.Start = start;
        record.Length = length;
        record.Note = &note;
        record.Bar = &bar;
        SetSample(record, note);
        m_list.push_back(&record);
    }

    void AppendRepeatLine(std::uint32_t kind)
    {
        CNoteSample& record = m_records.emplace_back();
        record.Start = m_partTicks;
        record.Length = kind;
        m_list.push_back(&record);
        m_partTicks += 1;
    }

    std::size_t m_part;
    CNoteSampleArray& m_list;
    std::deque<CNoteSample>& m_records;
    const CTimeSig* m_timeSig = nullptr;
    std::uint32_t m_partTicks = 0;
    // Ticks of a tied note still open across a bar line.
    std::uint32_t m_tieCarry = 0;
};

} // namespace

CTuneSequence::CTuneSequence(CCorrievalDoc* document) : m_document(document) {}

CTuneSequence::~CTuneSequence() = default;

void CTuneSequence::FreeAllSamples()
{
    for (CNoteSampleArray& list : m_written)
        list.clear();
    for (CNoteSampleArray& list : m_play)
        list.clear();
    m_records.clear();
}

void CTuneSequence::Build(const std::vector<CScoObj*>* selection)
{
    FreeAllSamples();
    m_timeSig = nullptr;
    if (m_document == nullptr)
        return;
    const int parts = PartsOf(*m_document);
    // One part is finished before the next begins; the signature left behind is the last part's.
    for (int part = 0; part < parts; ++part) {
        PartWalk walk(part, m_written[static_cast<std::size_t>(part)], m_records);
        ForEachMusicArea(*m_document, [&walk](const CStaveArea& area) { walk.WalkArea(area); });
        m_timeSig = walk.TimeSig();
        ExpandRepeats(part);
        if (selection != nullptr)
            CutToSelection(m_play[static_cast<std::size_t>(part)], *selection);
    }
}

void CTuneSequence::ExpandRepeats(int part)
{
    const CNoteSampleArray& written = m_written[static_cast<std::size_t>(part)];
    CNoteSampleArray& play = m_play[static_cast<std::size_t>(part)];
    play.clear();
    // Pass 0: outside any repeat; 1: first time through; 2: the second time. Repeats do not
    // nest: a start inside an open repeat is passed over, an end outside one is ignored.
    int pass = 0;
    std::ptrdiff_t restart = 0;
    std::uint32_t at = 0;
    const auto count = static_cast<std::ptrdiff_t>(written.size());
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const CNoteSample& record = *written[static_cast<std::size_t>(i)];
        if (!record.IsRepeatLine()) {
            if (!PlaysOnPass(record.Note->RepeatKind, pass))
                continue;
            // A fresh record: the mixer plays it in place, the written one stays as it was.
            CNoteSample& played = m_records.emplace_back();
            played.Start = at;
            played.Length = record.Length;
            played.Note = record.Note;
            SetSample(played, *record.Note);
            play.push_back(&played);
            at += record.Length;
        } else if (record.Length == CNoteSample::RepeatStart) {
            if (pass == 0) {
                restart = i - 1; // the walk goes on at restart + 1: this start line again
                pass = 1;
            }
        } else if (record.Length == CNoteSample::RepeatEnd) {
            if (pass == 1) {
                i = restart;
                restart = 0;
                pass = 2;
            } else if (pass == 2) {
                pass = 0;
            }
        }
    }
}

void CTuneSequence::CutToSelection(CNoteSampleArray& list, const std::vector<CScoObj*>& selection) const
{
    // One selected bar plays from its first note to the end of the tune.
    const CBarEx* fromBar = selection.size() == 1 ? dynamic_cast<const CBarEx*>(selection.front()) : nullptr;
    const auto isNote = [](const CScoObj* object) { return dynamic_cast<const CNoteEx*>(object) != nullptr; };
    if (fromBar == nullptr && std::none_of(selection.begin(), selection.end(), isNote))
        return; // nothing to play from: the whole tune plays
    const std::unordered_set<const CScoObj*> chosen(selection.begin(), selection.end());

    const bool keepRest = fromBar != nullptr || AllowGaps;
    bool started = false;
    bool stopped = false;
    bool inside = false;
    std::size_t kept = 0;
    for (CNoteSample* record : list) {
        if (record->IsRepeatLine()) {
            list[kept++] = record;
            continue;
        }
        if (fromBar != nullptr)
            inside = inside || fromBar->ContainsItem(*record->Note);
        else
            inside = chosen.contains(record->Note) || chosen.contains(record->Note->Parent());
        if (inside && !stopped) {
            started = true;
            list[kept++] = record;
        } else if (started && !keepRest) {
            // Only the first unbroken run of selected notes sounds.
            stopped = true;
        }
    }
    list.resize(kept);
    std::uint32_t at = 0;
    for (CNoteSample* record : list) {
        record->Start = at;
        at += record->Length;
    }
}

double CTuneSequence::TicksPerSecond(std::int32_t tempo) const
{
    if (m_timeSig == nullptr)
        return 0;
    const double rate = std::trunc(tempo / 60.0 * 480.0 * 0.5);
    switch (m_timeSig->GetBeatUnit()) {
    case 4:
        return rate * 2;
    case 2:
        return rate * 4;
    default:
        return rate;
    }
}

void CTuneSequence::VisitPart(int part, const std::function<bool(const PlayedNote&)>& visit) const
{
    for (const CNoteSample* record : WrittenList(part)) {
        if (!record->IsRepeatLine() && !visit(PlayedNote{record->Note, record->Bar}))
            return;
    }
}

} // namespace corrieval
