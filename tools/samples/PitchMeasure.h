#pragma once

#include <span>

namespace corrieval::samples {

// The frequency in Hz of the strongest component of `signal` within 60 cents of `nearHz`,
// averaged over the whole signal, to far better than a hundredth of a cent for a steady tone
// of a few seconds. 0 when the signal is too short to tell.
//
// The spectrum finds the component; then the advance of its phase between windows ever
// further apart narrows it down, averaged over every pair of windows so that a note that beats
// or wavers is given its mean pitch.
double MeasureFrequency(std::span<const float> signal, double sampleRate, double nearHz);

// The distance from `hz` to `targetHz` in cents.
double CentsFrom(double targetHz, double hz);

} // namespace corrieval::samples
