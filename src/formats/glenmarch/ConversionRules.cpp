#include "formats/glenmarch/ConversionRules.h"

#include "notation/TimeSig.h"

#include <algorithm>
#include <cmath>

namespace corrieval {

namespace {

constexpr std::int32_t kMarchTempo = 80;
constexpr std::int32_t kSlowTempo = 60;
constexpr std::int32_t kJigTempo = 120;
constexpr std::int32_t kOtherTempo = 74;

bool InRange(std::int32_t v, std::int32_t first, std::int32_t last)
{
    return v >= first && v <= last;
}

// Two crotchet beats: 2/4, or a custom signature of two beats in crotchets.
bool TwoCrotchetBeats(const CTimeSig& sig)
{
    const std::int32_t t = sig.Type;
    if (InRange(t, 2, 5) || InRange(t, 12, 16) || (t == CTimeSig::Custom && sig.CustomUnit != 4))
        return false;
    return sig.GetBeats() == 2;
}

bool BeatsInEighths(const CTimeSig& sig)
{
    return InRange(sig.Type, 12, 16) || (sig.Type == CTimeSig::Custom && sig.CustomUnit == 8);
}

// The plain note codes 0 to 4 are a semibreve to a semiquaver; any other code in a beam is drawn
// as a gracenote.
NoteDuration DurationOfCode(std::int32_t code)
{
    return InRange(code, 0, 4) ? NoteDuration{1} << code : 64;
}

} // namespace

std::int32_t TempoForTune(std::int32_t timeSigType, const QString& tuneType)
{
    std::int32_t tempo = kOtherTempo;
    if (InRange(timeSigType, 1, 6) || timeSigType == 8 || InRange(timeSigType, 12, 17))
        tempo = kMarchTempo;
    else if (timeSigType == 7 || InRange(timeSigType, 9, 11))
        tempo = kSlowTempo;
    // The words are tried in this order and the last one found wins.
    if (tuneType.contains(QLatin1String("strathspey")))
        tempo = kSlowTempo;
    if (tuneType.contains(QLatin1String("jig")))
        tempo = kJigTempo;
    if (tuneType.contains(QLatin1String("slow")))
        tempo = kSlowTempo;
    return tempo;
}

NoteValue BeamedNoteValue(std::int32_t code, std::int32_t dot, const CTimeSig& timeSig,
                          const BeamedNoteContext& context)
{
    const NoteDuration stored = DurationOfCode(code);
    NoteValue value{stored, dot};
    if (IsSmallDuration(stored))
        return value;
    const bool dotted = dot != 0;
    // A BWW tune writes each note at its own length; the adjustments below are for the Glenmarch
    // tunes, which wrote beamed notes relative to the beat.
    if (context.FromText) {
        if (stored == 16 && !dotted)
            value = {8, CNoteEx::Cut};
        return value;
    }
    if (context.BeatDoubling) {
        value.Duration = stored * 2;
        if (TwoCrotchetBeats(timeSig)) {
            if (value.Duration == 8 && dotted && context.BusyBar)
                value.Duration = 16;
            else if (value.Duration == 16 && !dotted)
                value.Duration = 8;
        }
        return value;
    }
    if (TwoCrotchetBeats(timeSig)) {
        if (value.Duration > 4)
            value.Duration /= 2;
        else if (value.Duration == 4 && dotted && context.BusyBar)
            value.Duration = 8;
    }
    if (BeatsInEighths(timeSig) && value.Duration >= 8)
        value.Duration /= 2;
    return value;
}

std::vector<float> FitWidths(const std::vector<double>& widths, float total)
{
    double sum = 0;
    for (double w : widths)
        sum += std::max(w, 0.0);
    if (!(sum > 0) || !std::isfinite(sum))
        return {};
    std::vector<float> fitted;
    fitted.reserve(widths.size());
    for (double w : widths)
        fitted.push_back(static_cast<float>(total * std::max(w, 0.0) / sum));
    return fitted;
}

} // namespace corrieval
