#pragma once

#include "samples/StereoSound.h"

#include <cstddef>

namespace corrieval::samples {

// Frames before a loop's start that its last frames are blended into.
inline constexpr std::size_t LoopBlendFrames = 64;

// Where in the held note `sound` a stretch of `loopFrames` that a player repeats end to start
// is best begun: from LoopBlendFrames on, at most `sound.Frames() - loopFrames`.
//
// A repeated stretch of a steady tone cannot in general hold a whole number of its periods, so
// its end never meets its start exactly. The start is put where the level just before the
// stretch's end is that just before its start (a beating sample swells and fades), and among
// such starts where the frames before the end most resemble those before the start, which the
// blend of CloseLoop mixes.
std::size_t ChooseLoopStart(const StereoSound& sound, std::size_t loopFrames);

// The loop: the last `loopFrames` of `leadAndLoop`, with its last LoopBlendFrames blended into
// the LoopBlendFrames before it, which lead up to its start. So the loop's last frame is
// followed by its first as in the note, and repeating it leaves no step.
StereoSound CloseLoop(const StereoSound& leadAndLoop, std::size_t loopFrames);

} // namespace corrieval::samples
