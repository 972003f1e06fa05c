#pragma once

#include <QPainterPath>
#include <QRawFont>

#include <unordered_map>

namespace corrieval {

// One character of the music font in ems: x from the start of its advance, y down from the
// baseline. A code the font lacks has an empty path and no advance.
struct GlyphOutline {
    QPainterPath Path;
    float Advance = 0;
};

// The outlines of the music font, each taken from the font once, at its design size, and kept
// for the life of the process. Text paths made at the sizes a score is drawn at (fractions of an
// inch) come back from Qt rounded to whole pixels, so symbols are scaled from these instead.
// Drawing happens on the GUI thread only; the cache takes no lock.
class GlyphOutlines {
public:
    static GlyphOutlines& Instance();

    // The outline of a character; empty while the music font is not loaded (see LoadMusicFont).
    const GlyphOutline& Find(char16_t code);
    // The font's line above and below the baseline, in ems: a glyph is centred by its line.
    float Ascent() const { return m_ascent; }
    float Descent() const { return m_descent; }

private:
    bool Open();

    QRawFont m_font;
    float m_ascent = 0;
    float m_descent = 0;
    std::unordered_map<char16_t, GlyphOutline> m_glyphs;
};

} // namespace corrieval
