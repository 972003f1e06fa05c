#include "model/LineBreaks.h"

namespace corrieval {

std::vector<std::size_t> BreakLines(std::span<const BarToPlace> bars, float lineWidth)
{
    std::vector<std::size_t> starts;
    float used = 0;
    for (std::size_t i = 0; i < bars.size(); ++i) {
        if (starts.empty() || bars[i].StartsLine || used + bars[i].Need > lineWidth) {
            starts.push_back(i);
            used = 0;
        }
        used += bars[i].Need;
    }
    return starts;
}

} // namespace corrieval
