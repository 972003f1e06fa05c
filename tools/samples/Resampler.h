#pragma once

#include "samples/StereoSound.h"

#include <cstddef>
#include <vector>

namespace corrieval::samples {

// Plays `input` faster by `ratio`, which raises its pitch by that ratio: output frame n is the
// input at position start + n * ratio, found by windowed-sinc interpolation. For the small
// corrections of tuning only (a ratio within 3 per cent of 1), where no band limiting is needed.
// The input must reach Margin frames either side of every position read.
class Resampler {
public:
    static constexpr std::size_t Margin = 16; // the half-width of the kernel, in input frames

    Resampler();
    StereoSound Resample(const StereoSound& input, double start, double ratio, std::size_t frames) const;

private:
    std::vector<double> m_kernel; // sampled at Steps points per input frame, over +-Margin
};

} // namespace corrieval::samples
