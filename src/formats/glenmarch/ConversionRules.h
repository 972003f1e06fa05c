#pragma once

#include "notation/NoteEx.h"

#include <QString>
#include <cstdint>
#include <vector>

namespace corrieval {

class CTimeSig;

// The rules by which an older tune's values become the values of a score, apart from the walk
// over its bars that applies them.

// The tempo a converted tune starts at: from its time signature type, unless its type word (in
// lower case) names a strathspey or a slow air (60) or a jig (120).
std::int32_t TempoForTune(std::int32_t timeSigType, const QString& tuneType);

// What decides the value of a beamed note besides its own code and dot.
struct BeamedNoteContext {
    bool FromText = false;     // the tune came from a BWW or BMW file
    bool BeatDoubling = false; // the tune's flag: beamed notes are stored at half their value
    bool BusyBar = false;      // more than two beams in the bar, or the upbeat column
};

struct NoteValue {
    NoteDuration Duration;
    std::int32_t DotCut;
};

// The value of a beamed older note under the stave area's time signature. Older tunes store the
// beamed notes of a 2/4 tune, and the beamed notes of tunes in eighths, at other values than a
// score writes them; a BWW import writes its beamed semiquavers as cut quavers.
NoteValue BeamedNoteValue(std::int32_t code, std::int32_t dot, const CTimeSig& timeSig,
                          const BeamedNoteContext& context);

// The widths that share `total` in the proportions of `widths`; negative widths count as none.
// Empty when there is nothing to share by.
std::vector<float> FitWidths(const std::vector<double>& widths, float total);

} // namespace corrieval
