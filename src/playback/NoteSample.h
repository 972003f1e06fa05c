#pragma once

#include <cstdint>
#include <vector>

namespace corrieval {

class CBarEx;
class CNoteEx;

// One sound event of a play list: which recording sounds, from which tick, for how many ticks.
// The mixer reads and advances these records in place while it plays them. A record without a
// note is a repeat line met in the written order; it never reaches a play list.
struct CNoteSample {
    // Kinds of a repeat line record, kept in its Length.
    static constexpr std::uint32_t RepeatStart = 1;
    static constexpr std::uint32_t RepeatEnd = 2;

    std::uint32_t Start = 0;
    std::uint32_t Length = 0;
    CNoteEx* Note = nullptr;
    // The bar the note was written in; only the written lists keep it.
    const CBarEx* Bar = nullptr;
    // 0 Low G up to 8 High A.
    std::int32_t SampleIndex = 0;
    // The first word of the recording in the sample bank; null for a pitch outside the scale,
    // which sounds as silence.
    const std::int16_t* SampleData = nullptr;
    // The next word of the recording to play; the mixer's alone during play.
    std::uint32_t ReadPosition = 0;
    // The note is shown in the play colour; the mixer's alone during play.
    bool Highlighted = false;

    bool IsRepeatLine() const { return Note == nullptr; }
};

// A list of records that owns none of them: the one that fills a list frees its records, and
// the mixer's active lists only point into the play lists of a sequence.
using CNoteSampleArray = std::vector<CNoteSample*>;

} // namespace corrieval
