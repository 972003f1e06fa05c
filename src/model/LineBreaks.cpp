#include "model/LineBreaks.h"

#include <algorithm>

namespace corrieval {

namespace {

// Fills lines of `width` one bar after another, and counts them; with `starts`, adds where each
// begins, counted from `first`.
std::size_t FillLines(std::span<const BarToPlace> run, float width, std::size_t first,
                      std::vector<std::size_t>* starts)
{
    std::size_t lines = 0;
    float used = 0;
    for (std::size_t i = 0; i < run.size(); ++i) {
        if (i == 0 || used + run[i].Need > width) {
            ++lines;
            if (starts != nullptr)
                starts->push_back(first + i);
            used = 0;
        }
        used += run[i].Need;
    }
    return lines;
}

// A tune's line too full for one line of the stave is split into lines of like length, rather
// than full lines and a short tail: the narrowest width that needs no more lines than `lineWidth`
// does.
float EvenWidth(std::span<const BarToPlace> run, float lineWidth)
{
    constexpr int steps = 20;
    const std::size_t lines = FillLines(run, lineWidth, 0, nullptr);
    const auto widest = std::max_element(
        run.begin(), run.end(), [](const BarToPlace& a, const BarToPlace& b) { return a.Need < b.Need; });
    if (lines < 2 || widest->Need > lineWidth)
        return lineWidth;
    float low = widest->Need;
    float high = lineWidth;
    for (int step = 0; step < steps; ++step) {
        const float middle = (low + high) / 2;
        (FillLines(run, middle, 0, nullptr) <= lines ? high : low) = middle;
    }
    return high;
}

} // namespace

std::vector<std::size_t> BreakLines(std::span<const BarToPlace> bars, float lineWidth)
{
    std::vector<std::size_t> starts;
    std::size_t begin = 0;
    while (begin < bars.size()) {
        std::size_t end = begin + 1;
        while (end < bars.size() && !bars[end].StartsLine)
            ++end;
        const std::span<const BarToPlace> run = bars.subspan(begin, end - begin);
        FillLines(run, EvenWidth(run, lineWidth), begin, &starts);
        begin = end;
    }
    return starts;
}

} // namespace corrieval
