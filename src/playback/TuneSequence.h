#pragma once

#include "notation/RepeatTiming.h"
#include "playback/NoteSample.h"

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <vector>

namespace corrieval {

class CCorrievalDoc;
class CScoObj;
class CTimeSig;

// What a tune sounds like, worked out afresh from the score at every start of play: for each
// part (a stave index of the systems) one flat play list of notes, each with its start and
// length in ticks. Everything musical is decided here: the order of pages, areas and bars,
// repeats with first and second time, ties, triplets, dots and cuts, weights, gracenotes taking
// their time from the note after them, and the cut to what the user selected. The mixer only
// counts ticks.
//
// Time is in ticks: a full bar is 7680 / beat unit ticks whatever its beats, so a crotchet is
// 480 ticks in 4/4 and 960 in 2/4, and at a given tempo every full bar lasts as long.
//
// The sequence also offers the written notes to repeat markers, which stamp the notes they
// bracket (see CRepeatTiming::Restamp).
//
// Builds run on the user-interface thread, inside the mixer's reset and under its lock, so the
// audio worker never sees a list change under it.
class CTuneSequence : public WrittenNotes {
public:
    static constexpr int PartCount = WrittenNotes::PartCount;

    // The document is not owned; null gives empty lists.
    explicit CTuneSequence(CCorrievalDoc* document);
    CTuneSequence(const CTuneSequence&) = delete;
    CTuneSequence& operator=(const CTuneSequence&) = delete;
    ~CTuneSequence() override;

    // Rebuilds every list from the score. `selection` is the view's selection in the order it
    // was made, or null: one selected bar plays from that bar to the end, a run of selected notes
    // plays alone from tick 0, and a selection without notes plays the whole tune. Records of an
    // earlier build are freed, so the mixer must have let go of them (its reset does that first).
    void Build(const std::vector<CScoObj*>* selection);

    // What sounds in the part, in sounding order, starts contiguous from 0. The mixer plays these
    // records in place. A part outside 0 to 3 throws std::out_of_range.
    const CNoteSampleArray& PlayList(int part) const { return m_play.at(static_cast<std::size_t>(part)); }
    // The part's notes in written order with its repeat lines, each note with its bar.
    const CNoteSampleArray& WrittenList(int part) const
    {
        return m_written.at(static_cast<std::size_t>(part));
    }

    // The time signature that the last build ended on; null before any build, and after a build
    // that found no music.
    const CTimeSig* CurrentTimeSig() const { return m_timeSig; }
    // Ticks per second of the mixer's word clock at `tempo` beats per minute under the current
    // time signature; 0 without one. The clock counts 16-bit words, so with stereo recordings
    // real time runs at twice this rate. Only the beat unit counts, never the beats, so every
    // full bar lasts 120 / tempo seconds.
    double TicksPerSecond(std::int32_t tempo) const;

    CCorrievalDoc* Document() const { return m_document; }

    void VisitPart(int part, const std::function<bool(const PlayedNote&)>& visit) const override;

    // Keeps every selected note of a scattered selection instead of the first unbroken run only.
    // No command sets it; the view clears it again on each import.
    bool AllowGaps = false;

private:
    void FreeAllSamples();
    void ExpandRepeats(int part);
    void CutToSelection(CNoteSampleArray& list, const std::vector<CScoObj*>& selection) const;

    CCorrievalDoc* m_document;
    // Every record of the eight lists lives here, so that a build frees them all at once; the
    // lists, and the mixer's active lists, only point in. A deque never moves what it holds.
    std::deque<CNoteSample> m_records;
    std::array<CNoteSampleArray, PartCount> m_written;
    std::array<CNoteSampleArray, PartCount> m_play;
    const CTimeSig* m_timeSig = nullptr;
};

} // namespace corrieval
