#pragma once

#include "model/Painter.h"

#include <QImage>
#include <QPainterPath>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace corrieval::testing {

// One call made on a RecordingPainter, with its arguments. Only the fields of its kind are set.
struct PaintCall {
    enum class Kind { Line, Rect, FillRect, FillEllipse, StrokePath, FillPath, Text, Image };

    Kind Op = Kind::Line;
    bool Smoothing = false; // whether smoothing was on when the call was made
    float X1 = 0, Y1 = 0, X2 = 0, Y2 = 0; // Line
    RectF Rect;                           // Rect, FillRect, FillEllipse, Image; the layout box of Text
    Pen Stroke;                           // Line, Rect, StrokePath
    Brush Fill;                           // FillRect, FillEllipse, FillPath
    QPainterPath Path;                    // StrokePath, FillPath
    QString Text;                         // Text
    TextFont Font;
    TextAlign Horizontal = TextAlign::Near;
    TextAlign Vertical = TextAlign::Near;
    std::uint32_t TextArgb = 0;
    QImage Picture; // Image

    bool IsVerticalLine() const { return Op == Kind::Line && X1 == X2; }
};

// A painter that draws nothing and records every call, for tests that probe what an object
// draws and where. Everything is visible unless a visible rectangle is set.
class RecordingPainter : public Painter {
public:
    bool IsVisible(const RectF& rect) const override
    {
        if (!Visible)
            return true;
        // Edges count, so a line of no width on the border is visible.
        return rect.X <= Visible->Right() && Visible->X <= rect.Right() && rect.Y <= Visible->Bottom() &&
               Visible->Y <= rect.Bottom();
    }
    float PixelsToInches(float pixels) const override { return pixels / (Dpi * ViewZoom); }
    float Zoom() const override { return ViewZoom; }

    void SetSmoothing(bool on) override
    {
        Smoothing = on;
        ++SmoothingChanges;
    }
    void DrawLine(float x1, float y1, float x2, float y2, const Pen& pen) override
    {
        PaintCall& c = Record(PaintCall::Kind::Line);
        c.X1 = x1;
        c.Y1 = y1;
        c.X2 = x2;
        c.Y2 = y2;
        c.Stroke = pen;
    }
    void DrawRect(const RectF& rect, const Pen& pen) override
    {
        PaintCall& c = Record(PaintCall::Kind::Rect);
        c.Rect = rect;
        c.Stroke = pen;
    }
    void FillRect(const RectF& rect, const Brush& brush) override
    {
        PaintCall& c = Record(PaintCall::Kind::FillRect);
        c.Rect = rect;
        c.Fill = brush;
    }
    void FillEllipse(const RectF& rect, const Brush& brush) override
    {
        PaintCall& c = Record(PaintCall::Kind::FillEllipse);
        c.Rect = rect;
        c.Fill = brush;
    }
    void StrokePath(const QPainterPath& path, const Pen& pen) override
    {
        PaintCall& c = Record(PaintCall::Kind::StrokePath);
        c.Path = path;
        c.Stroke = pen;
    }
    void FillPath(const QPainterPath& path, const Brush& brush) override
    {
        PaintCall& c = Record(PaintCall::Kind::FillPath);
        c.Path = path;
        c.Fill = brush;
    }
    void DrawText(const QString& text, const TextFont& font, const RectF& layout, TextAlign horizontal,
                  TextAlign vertical, std::uint32_t argb) override
    {
        PaintCall& c = Record(PaintCall::Kind::Text);
        c.Text = text;
        c.Font = font;
        c.Rect = layout;
        c.Horizontal = horizontal;
        c.Vertical = vertical;
        c.TextArgb = argb;
    }
    void DrawImage(const QImage& image, const RectF& target) override
    {
        PaintCall& c = Record(PaintCall::Kind::Image);
        c.Picture = image;
        c.Rect = target;
    }

    // The recorded calls of one kind, in order.
    std::vector<PaintCall> Of(PaintCall::Kind kind) const
    {
        std::vector<PaintCall> found;
        for (const PaintCall& c : Calls) {
            if (c.Op == kind)
                found.push_back(c);
        }
        return found;
    }
    std::size_t Count(PaintCall::Kind kind) const { return Of(kind).size(); }
    void Clear()
    {
        Calls.clear();
        SmoothingChanges = 0;
    }

    std::vector<PaintCall> Calls;
    std::optional<RectF> Visible; // none: the whole document is visible
    float ViewZoom = 1.0f;
    float Dpi = 96.0f;
    bool Smoothing = false;
    int SmoothingChanges = 0;

private:
    PaintCall& Record(PaintCall::Kind kind)
    {
        PaintCall& c = Calls.emplace_back();
        c.Op = kind;
        c.Smoothing = Smoothing;
        return c;
    }
};

} // namespace corrieval::testing
