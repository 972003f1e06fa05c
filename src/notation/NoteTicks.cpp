#include "notation/NoteEx.h"
#include "notation/TimeSig.h"

#include <cmath>
#include <limits>

namespace corrieval {

namespace {

// The note value as a denominator of a semibreve; the small notes and the further glyph count
// as demisemiquavers. 0 for a code that no note of this program carries.
int Denominator(NoteDuration duration)
{
    switch (duration) {
    case 1:
    case 2:
    case 4:
    case 8:
    case 16:
    case 32: return duration;
    case 64:
    case 128:
    case 256:
    case 512: return 32;
    default: return 0;
    }
}

// Truncates towards zero. A weight or signature from a damaged file may give a negative or
// unbounded share; it counts as nothing rather than overflowing the conversion.
std::uint32_t Truncate(double ticks)
{
    if (!std::isfinite(ticks) || ticks <= 0)
        return 0;
    if (ticks >= static_cast<double>(std::numeric_limits<std::uint32_t>::max()))
        return std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(ticks);
}

} // namespace

std::uint32_t CNoteEx::NoteTicks(const CTimeSig& timeSig) const
{
    const int denominator = Denominator(Duration);
    if (denominator == 0)
        return 0;
    const double weight = Weight;
    if (!IsSmallDuration(Duration)) {
        // A share of a bar of 1920: a crotchet of 4/4 takes 480 and one of 2/4 takes 960.
        const double beats = timeSig.GetBeats();
        return Truncate((4.0 / beats) * 480.0 / denominator * weight * 4.0);
    }
    // A light gracenote is its weighted demisemiquaver, any other 40 per unit of weight; then
    // scaled by the unit so that it is the same share of any bar.
    std::uint32_t ticks = Truncate(960.0 / denominator * weight * 4.0);
    if (ticks > 40)
        ticks = Truncate(weight * 40.0);
    const std::int32_t unit = timeSig.GetBeatUnit();
    if (unit == 2)
        ticks *= 2;
    else if (unit == 8)
        ticks >>= 1;
    return ticks;
}

} // namespace corrieval
