#include "platform/QtPainter.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace corrieval::platform {
namespace {

constexpr std::uint32_t kBlack = 0xFF000000;
constexpr QRgb kWhite = 0xFFFFFFFF;

// Paints on a white image of `width` x `height` pixels through a QtPainter and returns the image.
QImage Paint(int width, int height, float dpi, float zoom, PointF origin,
             const std::function<void(Painter&)>& draw)
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter device(&image);
    {
        QtPainter painter(device, dpi, zoom, origin);
        draw(painter);
    }
    device.end();
    return image;
}

// The rows from the first to the last that hold ink, and the same for columns.
QRect InkBounds(const QImage& image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != kWhite)
                box |= QRect(x, y, 1, 1);
        }
    }
    return box;
}

TEST(QtPainter, MapsInchesToDevicePixelsByZoomResolutionAndOrigin)
{
    // 200 pixels an inch; the page starts 11.7 inches down the document.
    const QImage image = Paint(400, 400, 100, 2, {0, 11.7f}, [](Painter& p) {
        EXPECT_FLOAT_EQ(p.PixelsToInches(1), 1.0f / 200);
        p.FillRect({1, 12.7f, 0.5f, 0.25f}, Brush::Solid(0xFF336699));
        p.FillRect({0.25f, 11.95f, 0.25f, 0.25f}, Brush::Solid(0x800000FF));
    });
    for (const auto& [x, y, colour] : {std::tuple{200, 200, 0xFF336699},
                                       {299, 249, 0xFF336699},
                                       {199, 225, kWhite},
                                       {300, 225, kWhite},
                                       {250, 199, kWhite},
                                       {250, 250, kWhite}})
        EXPECT_EQ(image.pixel(x, y), colour) << x << ", " << y;
    // Half-transparent blue over white.
    const QColor blended = image.pixelColor(75, 75);
    EXPECT_NEAR(blended.red(), 127, 1);
    EXPECT_EQ(blended.blue(), 255);
}

TEST(QtPainter, OnlyWhatOverlapsTheDeviceOrItsClipIsVisible)
{
    QImage image(100, 200, QImage::Format_RGB32);
    QPainter device(&image);
    {
        // One inch wide, two high, from document Y 10. A QtPainter holds the device's transform
        // until it goes, so each is gone before the next is made or the clip is set.
        const QtPainter painter(device, 100, 1, {0, 10});
        for (const auto& [rect, visible] :
             {std::pair{RectF{0.2f, 10.2f, 0.1f, 0.1f}, true},
              {RectF{-5, 9, 10, 10}, true},
              {RectF{0.1f, 11, 0.5f, 0}, true},        // a horizontal line
              {RectF{0.5f, 10.5f, -0.2f, 0.1f}, true}, // given right to left
              {RectF{0, 12, 1, 1}, false},             // the next page, touching the bottom edge
              {RectF{0, 8, 1, 2}, false},
              {RectF{1.5f, 10.5f, 0.2f, 0.2f}, false}})
            EXPECT_EQ(painter.IsVisible(rect), visible) << rect.X << ", " << rect.Y;
    }
    EXPECT_FALSE(QtPainter(device, 100, 2, {0, 10}).IsVisible({0.6f, 10.6f, 0.2f, 0.2f})) << "zoomed";
    device.setClipRect(0, 0, 50, 50);
    const QtPainter clipped(device, 100, 1, {0, 10});
    EXPECT_TRUE(clipped.IsVisible({0.2f, 10.2f, 0.1f, 0.1f}));
    EXPECT_FALSE(clipped.IsVisible({0.6f, 10.6f, 0.2f, 0.2f}));
}

TEST(QtPainter, TextHeightInInchesBecomesThatManyDevicePixels)
{
    // Half an inch at 100 dpi is a font of 50 pixels, at twice the zoom one of 100.
    const TextFont font{QStringLiteral("DejaVu Sans"), 0.5f};
    for (const int zoom : {1, 2}) {
        QFont reference(font.Family);
        reference.setPixelSize(50 * zoom);
        const QFontMetricsF metrics(reference);
        const QRectF letter = metrics.tightBoundingRect(QStringLiteral("H"));

        const QImage image = Paint(300 * zoom, 200 * zoom, 100, float(zoom), {0, 5}, [&font](Painter& p) {
            p.DrawText(QStringLiteral("H"), font, {0.5f, 5.5f, 2, 1}, TextAlign::Centre, TextAlign::Near,
                       kBlack);
        });
        const QRect ink = InkBounds(image);
        EXPECT_NEAR(ink.height(), letter.height(), 1.5) << "zoom " << zoom;
        EXPECT_NEAR(ink.center().x(), 150 * zoom, 2) << "centred across the box, zoom " << zoom;
        // Hung from the top of the box: the baseline one ascent below it.
        EXPECT_NEAR(ink.top(), 50 * zoom + metrics.ascent() + letter.top(), 1.5) << "zoom " << zoom;
    }

    // Text too small or of no size at all does not break the painting.
    const QImage image = Paint(100, 100, 100, 1, {}, [](Painter& p) {
        for (const float height : {0.001f, std::numeric_limits<float>::quiet_NaN()})
            p.DrawText(QStringLiteral("x"), TextFont{QString(), height}, {0, 0, 1, 1}, TextAlign::Near,
                       TextAlign::Near, kBlack);
        p.FillRect({0.5f, 0.5f, 0.1f, 0.1f}, Brush::Solid(kBlack));
    });
    EXPECT_EQ(InkBounds(image), QRect(50, 50, 10, 10));
}

} // namespace
} // namespace corrieval::platform
