#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace corrieval {

class CStaveArea;

// The changes of shape that the music area's properties make: lines (systems) and parts (staves
// of each system) added or taken away, bars per line, and the room around each line.

// The bars of a line added by InsertLine.
constexpr int NewLineBars = 4;

// A new line after line `after`, with a stave for each part and NewLineBars bars; `lineCount` is
// the number of lines with it.
void InsertLine(CStaveArea& area, std::size_t after, std::size_t lineCount, std::size_t partCount,
                std::int32_t spacing);
void RemoveLine(CStaveArea& area, std::size_t line);
// A new treble stave after part `after` in every line, with a bar for each of the line's columns.
// `barsPerLine` is what the dialog holds for each line, and is applied along with it.
void InsertPart(CStaveArea& area, std::size_t after, std::size_t partCount,
                const std::vector<int>& barsPerLine, std::int32_t spacing);
// Takes part `part` out of every line, leaving `partCount` parts.
void RemovePart(CStaveArea& area, std::size_t part, std::size_t partCount);

// Line i gets `barsPerLine[i]` bars: new bars at the end, or bars taken from the end.
void SetBarsPerLine(CStaveArea& area, const std::vector<int>& barsPerLine);
// The room above and below every line, in percent, clamped to 0 to 100.
void ApplySpacing(CStaveArea& area, std::int32_t spacing);

} // namespace corrieval
