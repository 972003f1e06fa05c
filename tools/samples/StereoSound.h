#pragma once

#include <cstddef>
#include <vector>

namespace corrieval::samples {

// Two channels of sound at 44,100 frames a second, full scale at +-1.
struct StereoSound {
    std::vector<float> Left;
    std::vector<float> Right;

    std::size_t Frames() const { return Left.size(); }
};

} // namespace corrieval::samples
