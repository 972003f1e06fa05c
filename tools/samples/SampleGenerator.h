#pragma once

#include "samples/GeneratorOptions.h"

#include <QString>

#include <functional>

namespace corrieval::samples {

// Why generating stopped: the file concerned and the problem, both empty on success.
struct GeneratorResult {
    QString File;
    QString Problem;

    bool Ok() const { return Problem.isEmpty(); }
};

// Makes the nine recordings of each chosen instrument in options.Folder (which must be given),
// from a General MIDI SoundFont, for the player to load as if they were recordings: stereo,
// 16-bit, 44,100 Hz, 524,288 bytes of sound each.
//
// Each note is the chanter's preset held at its pitch over Low A, tuned to within 0.1 cent,
// with the drones mixed in for the pipes. Its recording starts where the stretch that the
// player loops (its first 65,536 frames) joins on to itself most smoothly. Each set is brought
// to about -15 dBFS with its peaks at or below -1 dBFS, one gain for all nine notes so that
// their balance stays. The output is the same, byte for byte, from run to run.
//
// A file that exists is never overwritten, so recordings put there by the user stay; a set
// whose nine files all exist is not generated at all. Each line of progress goes to `report`.
GeneratorResult GenerateSamples(const GeneratorOptions& options,
                                const std::function<void(const QString&)>& report);

} // namespace corrieval::samples
