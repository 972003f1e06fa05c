#pragma once

#include "model/Geometry.h"

#include <QPainterPath>
#include <QString>

#include <cstdint>

class QImage;

namespace corrieval {

// How a drawing pass is meant to end up: on the screen with the page furniture, or on paper.
enum class OutputMode { Screen = 0, PrintPreview = 1, Printer = 2 };

enum class DashStyle { Solid, Dash, Dot };

struct Pen {
    std::uint32_t Argb = 0xFF000000;
    float Width = 0.004f; // inches
    DashStyle Dash = DashStyle::Solid;
    bool Inset = false; // drawn inside the outline of a rectangle rather than centred on it
};

struct Brush {
    enum class Style { Solid, Hatch20Percent };
    Style Kind = Style::Solid;
    std::uint32_t Fore = 0xFF000000;
    std::uint32_t Back = 0xFFFFFFFF; // behind the hatch

    static Brush Solid(std::uint32_t argb) { return {Style::Solid, argb, 0}; }
    static Brush Hatch(std::uint32_t fore, std::uint32_t back) { return {Style::Hatch20Percent, fore, back}; }
};

enum class TextAlign { Near, Centre, Far };

// A font for text drawn in inches; the height is that of the em, in inches at the drawing scale.
struct TextFont {
    QString Family;
    float Height = 0.1f;
    int Weight = 400; // 400 regular, 700 bold
    bool Italic = false;
    bool Underline = false;
    bool StrikeOut = false;
};

// The drawing surface that score objects draw themselves onto. All coordinates and sizes are
// inches in document space; the back-end owns the scale to its device (zoom and resolution).
// Colours are ARGB words. One back-end forwards to QPainter, another records calls for tests.
class Painter {
public:
    virtual ~Painter() = default;

    // Whether any part of the rectangle can show on the surface; drawing skips what cannot.
    virtual bool IsVisible(const RectF& rect) const = 0;
    // The size in inches that `pixels` device pixels take at the present scale, for lines and
    // handles that keep their size on the screen at any zoom.
    virtual float PixelsToInches(float pixels) const = 0;
    // The zoom of the view being painted, 1.0 for files and paper.
    virtual float Zoom() const = 0;

    // Anti-aliasing for what follows; lines of the stave are drawn without it, outlines with it.
    virtual void SetSmoothing(bool on) = 0;
    virtual void DrawLine(float x1, float y1, float x2, float y2, const Pen& pen) = 0;
    virtual void DrawRect(const RectF& rect, const Pen& pen) = 0;
    virtual void FillRect(const RectF& rect, const Brush& brush) = 0;
    virtual void FillEllipse(const RectF& rect, const Brush& brush) = 0;
    virtual void StrokePath(const QPainterPath& path, const Pen& pen) = 0;
    virtual void FillPath(const QPainterPath& path, const Brush& brush) = 0;
    // Draws text laid out in `layout`, wrapped at its width, aligned as given.
    virtual void DrawText(const QString& text, const TextFont& font, const RectF& layout, TextAlign horizontal,
                          TextAlign vertical, std::uint32_t argb) = 0;
    // Draws the whole picture scaled into `target`, whatever its shape.
    virtual void DrawImage(const QImage& image, const RectF& target) = 0;
};

} // namespace corrieval
