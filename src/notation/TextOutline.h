#pragma once

#include <QPainterPath>
#include <QString>

namespace corrieval {

// A short label as an outline, in the platform's generic sans-serif face, regular. Labels that
// are hit-tested by their drawn shape (tie figures, repeat marker texts) are filled as paths
// rather than drawn as text, so that the shape drawn and the shape hit are the same.
struct TextOutline {
    QPainterPath Path; // the line box's top left at the origin
    float Width = 0;   // advance of the text
    float Height = 0;  // ascent and descent
};

// The outline of `text` with an em of `emSize` inches. Qt rounds font sizes in inches to whole
// units, so the outline is taken at a large pixel size and scaled down.
TextOutline SansSerifOutline(const QString& text, float emSize);

} // namespace corrieval
