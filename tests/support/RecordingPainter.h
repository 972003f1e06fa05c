#pragma once

#include "model/Painter.h"

#include <QPainterPath>
#include <cstddef>
#include <optional>
#include <vector>

namespace corrieval::testing {

// One call made on a RecordingPainter, with the arguments the tests look at. Text and images are
// recorded by their box only, so that a test can still tell that nothing at all was drawn.
struct PaintCall {
    enum class Kind { Line, Rect, FillRect, FillEllipse, StrokePath, FillPath, Text, Image };

    Kind Op = Kind::Line;
    float X1 = 0, Y1 = 0, X2 = 0, Y2 = 0; // Line
    RectF Rect;                           // Rect, FillRect, FillEllipse, Image; the layout box of Text
    Pen Stroke;                           // Line, Rect, StrokePath
    Brush Fill;                           // FillRect, FillEllipse, FillPath
    QPainterPath Path;                    // StrokePath, FillPath
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
    float PixelsToInches(float pixels) const override { return pixels / 96.0f; }
    float Zoom() const override { return 1.0f; }

    void SetSmoothing(bool) override {}
    void DrawLine(float x1, float y1, float x2, float y2, const Pen& pen) override
    {
        PaintCall& c = Record(PaintCall::Kind::Line, {}, pen);
        c.X1 = x1;
        c.Y1 = y1;
        c.X2 = x2;
        c.Y2 = y2;
    }
    void DrawRect(const RectF& rect, const Pen& pen) override { Record(PaintCall::Kind::Rect, rect, pen); }
    void FillRect(const RectF& rect, const Brush& brush) override
    {
        Record(PaintCall::Kind::FillRect, rect, {}, brush);
    }
    void FillEllipse(const RectF& rect, const Brush& brush) override
    {
        Record(PaintCall::Kind::FillEllipse, rect, {}, brush);
    }
    void StrokePath(const QPainterPath& path, const Pen& pen) override
    {
        Record(PaintCall::Kind::StrokePath, {}, pen).Path = path;
    }
    void FillPath(const QPainterPath& path, const Brush& brush) override
    {
        Record(PaintCall::Kind::FillPath, {}, {}, brush).Path = path;
    }
    void DrawText(const QString&, const TextFont&, const RectF& layout, TextAlign, TextAlign,
                  std::uint32_t) override
    {
        Record(PaintCall::Kind::Text, layout);
    }
    void DrawImage(const QImage&, const RectF& target) override { Record(PaintCall::Kind::Image, target); }

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
    void Clear() { Calls.clear(); }

    std::vector<PaintCall> Calls;
    std::optional<RectF> Visible; // none: the whole document is visible

private:
    PaintCall& Record(PaintCall::Kind kind, const RectF& rect, const Pen& stroke = {}, const Brush& fill = {})
    {
        PaintCall& c = Calls.emplace_back();
        c.Op = kind;
        c.Rect = rect;
        c.Stroke = stroke;
        c.Fill = fill;
        return c;
    }
};

} // namespace corrieval::testing
