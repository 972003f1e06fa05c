#include "platform/QtPainter.h"

#include <QFontMetricsF>
#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <vector>

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

bool Ink(const QImage& image, int x, int y)
{
    return image.pixel(x, y) != kWhite;
}

// The lengths of the alternating runs of ink and paper along row `y` from `x0` to `x1`, ink first.
std::vector<int> Runs(const QImage& image, int y, int x0, int x1)
{
    std::vector<int> runs{0};
    bool ink = true;
    for (int x = x0; x < x1; ++x) {
        if (Ink(image, x, y) != ink) {
            ink = !ink;
            runs.push_back(0);
        }
        ++runs.back();
    }
    return runs;
}

// The rows from the first to the last that hold ink, and the same for columns.
QRect InkBounds(const QImage& image)
{
    QRect box;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (Ink(image, x, y))
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
        EXPECT_FLOAT_EQ(p.Zoom(), 2);
        p.FillRect({1, 12.7f, 0.5f, 0.25f}, Brush::Solid(0xFF336699));
        p.FillRect({0.25f, 11.95f, 0.25f, 0.25f}, Brush::Solid(0x800000FF));
    });
    EXPECT_EQ(image.pixel(200, 200), 0xFF336699);
    EXPECT_EQ(image.pixel(299, 249), 0xFF336699);
    EXPECT_EQ(image.pixel(199, 225), kWhite);
    EXPECT_EQ(image.pixel(300, 225), kWhite);
    EXPECT_EQ(image.pixel(250, 199), kWhite);
    EXPECT_EQ(image.pixel(250, 250), kWhite);

    // Half-transparent blue over white.
    const QColor blended = image.pixelColor(75, 75);
    EXPECT_NEAR(blended.red(), 127, 1);
    EXPECT_NEAR(blended.green(), 127, 1);
    EXPECT_EQ(blended.blue(), 255);
}

TEST(QtPainter, OnlyWhatOverlapsTheDeviceOrItsClipIsVisible)
{
    QImage image(100, 200, QImage::Format_RGB32);
    QPainter device(&image);
    {
        // One inch wide, two high, from document Y 10.
        const QtPainter painter(device, 100, 1, {0, 10});
        EXPECT_TRUE(painter.IsVisible({0.2f, 10.2f, 0.1f, 0.1f}));
        EXPECT_TRUE(painter.IsVisible({-5, 9, 10, 10})) << "a rectangle around the device";
        EXPECT_TRUE(painter.IsVisible({0.1f, 11, 0.5f, 0})) << "a horizontal line";
        EXPECT_TRUE(painter.IsVisible({0.5f, 10.5f, -0.2f, 0.1f})) << "a rectangle given right to left";
        EXPECT_FALSE(painter.IsVisible({0, 12, 1, 1})) << "the next page touching the bottom edge";
        EXPECT_FALSE(painter.IsVisible({0, 8, 1, 2})) << "the page above";
        EXPECT_FALSE(painter.IsVisible({1.5f, 10.5f, 0.2f, 0.2f}));
    }
    {
        const QtPainter zoomed(device, 100, 2, {0, 10});
        EXPECT_FALSE(zoomed.IsVisible({0.6f, 10.6f, 0.2f, 0.2f}));
    }
    device.setClipRect(0, 0, 50, 50);
    {
        const QtPainter clipped(device, 100, 1, {0, 10});
        EXPECT_TRUE(clipped.IsVisible({0.2f, 10.2f, 0.1f, 0.1f}));
        EXPECT_FALSE(clipped.IsVisible({0.6f, 10.6f, 0.2f, 0.2f}));
    }
}

TEST(QtPainter, DashesAndDotsAreCountedInPenWidths)
{
    // A pen four pixels wide: dashes of 12 with gaps of 4, dots of 4 with gaps of 4.
    const auto line = [](DashStyle dash) {
        return Paint(200, 100, 100, 1, {}, [dash](Painter& p) {
            p.DrawLine(0.1f, 0.5f, 1.9f, 0.5f, Pen{kBlack, 0.04f, dash, false});
        });
    };
    EXPECT_EQ(Runs(line(DashStyle::Solid), 50, 10, 190), std::vector<int>{180});

    const std::vector<int> dashes = Runs(line(DashStyle::Dash), 50, 10, 190);
    ASSERT_GE(dashes.size(), 10u);
    for (std::size_t i = 0; i + 1 < dashes.size(); ++i)
        EXPECT_NEAR(dashes[i], i % 2 == 0 ? 12 : 4, 1) << "run " << i;

    const std::vector<int> dots = Runs(line(DashStyle::Dot), 50, 10, 190);
    ASSERT_GE(dots.size(), 20u);
    for (std::size_t i = 0; i + 1 < dots.size(); ++i)
        EXPECT_NEAR(dots[i], 4, 1) << "run " << i;
}

TEST(QtPainter, HatchIsOneDeviceDotInFiveInItsOwnColoursAtAnyZoom)
{
    constexpr QRgb kGreen = 0xFF00FF00;
    for (const float zoom : {1.0f, 3.0f}) {
        const QImage image = Paint(60, 60, 100, zoom, {}, [zoom](Painter& p) {
            p.FillRect({0, 0, 0.6f / zoom, 0.6f / zoom}, Brush::Hatch(kBlack, kGreen));
        });
        // A pattern repeating every five pixels with one dot each: any 5 x 5 window holds one dot.
        for (int y0 = 0; y0 + 5 <= 60; y0 += 7) {
            for (int x0 = 0; x0 + 5 <= 60; x0 += 3) {
                int dots = 0;
                for (int y = y0; y < y0 + 5; ++y) {
                    for (int x = x0; x < x0 + 5; ++x) {
                        const QRgb pixel = image.pixel(x, y);
                        ASSERT_TRUE(pixel == kBlack || pixel == kGreen) << x << ", " << y;
                        dots += pixel == kBlack ? 1 : 0;
                    }
                }
                ASSERT_EQ(dots, 5) << "window at " << x0 << ", " << y0 << ", zoom " << zoom;
            }
        }
    }
}

TEST(QtPainter, InsetPenDrawsInsideTheRectangleAndPlainPenAcrossIt)
{
    // A pen of ten pixels on a rectangle whose left edge is at pixel 50.
    const auto frame = [](bool inset) {
        return Paint(200, 200, 100, 1, {}, [inset](Painter& p) {
            p.DrawRect({0.5f, 0.5f, 1, 1}, Pen{kBlack, 0.1f, DashStyle::Solid, inset});
        });
    };
    const QImage inset = frame(true);
    EXPECT_FALSE(Ink(inset, 48, 100));
    EXPECT_TRUE(Ink(inset, 51, 100));
    EXPECT_TRUE(Ink(inset, 58, 100));
    EXPECT_FALSE(Ink(inset, 61, 100));
    EXPECT_TRUE(Ink(inset, 148, 100)) << "the right side is inside too";
    EXPECT_FALSE(Ink(inset, 151, 100));

    const QImage centred = frame(false);
    EXPECT_TRUE(Ink(centred, 46, 100));
    EXPECT_FALSE(Ink(centred, 56, 100));
}

TEST(QtPainter, PathsKeepTheirFillRuleAndEllipsesStayInTheirBox)
{
    const auto squares = [](Qt::FillRule rule) {
        QPainterPath path;
        path.setFillRule(rule);
        path.addRect(0.1, 0.1, 0.8, 0.8);
        path.addRect(0.3, 0.3, 0.4, 0.4);
        return Paint(100, 100, 100, 1, {}, [&path](Painter& p) { p.FillPath(path, Brush::Solid(kBlack)); });
    };
    const QImage oddEven = squares(Qt::OddEvenFill);
    EXPECT_TRUE(Ink(oddEven, 20, 50));
    EXPECT_FALSE(Ink(oddEven, 50, 50));
    EXPECT_TRUE(Ink(squares(Qt::WindingFill), 50, 50));

    const QImage ellipse = Paint(100, 100, 100, 1, {}, [](Painter& p) {
        p.SetSmoothing(true);
        p.FillEllipse({0.1f, 0.1f, 0.8f, 0.8f}, Brush::Solid(kBlack));
    });
    EXPECT_EQ(ellipse.pixel(50, 50), kBlack);
    EXPECT_EQ(ellipse.pixel(12, 12), kWhite);
    const QRect box = InkBounds(ellipse);
    EXPECT_NEAR(box.left(), 10, 1);
    EXPECT_NEAR(box.top(), 10, 1);
    EXPECT_NEAR(box.right(), 89, 1);
    EXPECT_NEAR(box.bottom(), 89, 1);
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
}

TEST(QtPainter, TextTooSmallOrAbsurdlyLargeDoesNotBreakThePainting)
{
    const QImage image = Paint(100, 100, 100, 1, {}, [](Painter& p) {
        p.DrawText(QStringLiteral("tiny"), TextFont{QString(), 0.001f}, {0, 0, 1, 1}, TextAlign::Near,
                   TextAlign::Near, kBlack);
        p.DrawText(QStringLiteral("x"), TextFont{QString(), std::numeric_limits<float>::quiet_NaN()},
                   {0, 0, 1, 1}, TextAlign::Near, TextAlign::Near, kBlack);
        p.FillRect({0.5f, 0.5f, 0.1f, 0.1f}, Brush::Solid(kBlack));
    });
    EXPECT_EQ(InkBounds(image), QRect(50, 50, 10, 10));
}

} // namespace
} // namespace corrieval::platform
