#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace corrieval {

// A bar waiting for a line: the width it needs to space its items without overlap, and whether
// the tune itself starts a line with it.
struct BarToPlace {
    float Need = 0;
    bool StartsLine = false;
};

// Where the lines of a run of bars start, as indexes of their first bars. A line starts where the
// tune starts one. A line of the tune whose bars need more than `lineWidth` is split into as few
// lines as will hold them, of like length; a bar wider than a whole line stands on a line of its
// own. Empty for no bars.
std::vector<std::size_t> BreakLines(std::span<const BarToPlace> bars, float lineWidth);

} // namespace corrieval
