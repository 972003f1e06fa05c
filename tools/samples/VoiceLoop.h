#pragma once

#include "samples/SoundFontRenderer.h"
#include "samples/StereoSound.h"

#include <QString>

#include <cstddef>
#include <optional>

namespace corrieval::samples {

// One voice of a note, the chanter or a drone, as a loop, and how far from its pitch the loop
// measured.
struct VoiceLoop {
    StereoSound Sound;
    double Cents = 0;
};

inline constexpr double ToleranceCents = 0.1;

// Plays `request` (its length is chosen here) and makes of it a loop of `loopFrames` that
// repeats without a step (see LoopMaker.h), at request.Hz within ToleranceCents as measured
// over the loop itself: a sampled note wavers, and the loop is all of it that is heard.
//
// FluidSynth tunes to whole cents and the SoundFont's samples are a cent or two out themselves,
// so the note is measured and played faster or slower by what is missing, and measured again.
// Gives the problem instead when the preset gives no steady tone near the pitch.
std::optional<VoiceLoop> MakeVoiceLoop(SoundFontRenderer& renderer, VoiceRequest request,
                                       std::size_t loopFrames, QString& problem);

} // namespace corrieval::samples
