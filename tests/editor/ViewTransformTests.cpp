#include "editor/ViewTransform.h"

#include <gtest/gtest.h>

namespace corrieval {
namespace {

ViewTransform View(float zoom, QSize client, float docWidth, float docHeight, QPoint scroll = {})
{
    ViewTransform t;
    t.DpiX = 96;
    t.DpiY = 120; // unequal, so that a mix-up of the two directions shows
    t.Zoom = zoom;
    t.Client = client;
    t.Scroll = scroll;
    t.DocumentWidth = docWidth;
    t.DocumentHeight = docHeight;
    return t;
}

TEST(ViewTransform, CentresANarrowDocumentAndPinsAWideOneToTheCorner)
{
    // An A4 page, 8.27 inches wide, in a window 1200 pixels wide: 12.5 inches at 100%.
    const ViewTransform narrow = View(1.0f, {1200, 600}, 8.27f, 11.69f);
    EXPECT_NEAR(narrow.Offset().X, (12.5f - 8.27f) / 2, 1e-5);
    EXPECT_EQ(narrow.Offset().Y, 0.0f); // taller than the window
    // The page's left edge lands where the centring puts it.
    EXPECT_NEAR(narrow.DocumentToDevice({0, 0}).x(), (1200 - 8.27 * 96) / 2, 1e-3);

    // At 200% the same page is wider than the window and starts at the left edge.
    const ViewTransform wide = View(2.0f, {1200, 600}, 8.27f, 11.69f);
    EXPECT_EQ(wide.Offset().X, 0.0f);
    EXPECT_EQ(wide.DocumentToDevice({0, 0}), QPointF(0, 0));

    // A short document is centred vertically too, with dpi Y.
    const ViewTransform shortDoc = View(0.5f, {400, 1200}, 8, 4);
    EXPECT_NEAR(shortDoc.Offset().Y, (1200 / 120.0f / 0.5f - 4) / 2, 1e-5);
    EXPECT_NEAR(shortDoc.Offset().X, (400 / 96.0f / 0.5f - 8) / 2, 1e-5);
}

TEST(ViewTransform, DeviceAndDocumentPointsRoundTripAtEveryZoomAndScroll)
{
    for (float zoom : {0.5f, 1.0f, 1.37f, 3.0f}) {
        for (QSize client : {QSize(300, 200), QSize(1600, 1000)}) {
            const ViewTransform t = View(zoom, client, 8.5f, 22.0f, {13, 410});
            for (PointF p : {PointF{0, 0}, PointF{4.25f, 11.0f}, PointF{8.5f, 21.9f}}) {
                const PointF back = t.DeviceToDocument(t.DocumentToDevice(p));
                EXPECT_NEAR(back.X, p.X, 1e-4) << zoom;
                EXPECT_NEAR(back.Y, p.Y, 1e-4) << zoom;
                // A page-relative point is the scrolled one with the scroll added back.
                const QPointF unscrolled = t.DocumentToDevice(p, false);
                EXPECT_NEAR(unscrolled.y() - t.DocumentToDevice(p).y(), 410, 1e-3);
                const PointF relative = t.DeviceToDocument(unscrolled, true);
                EXPECT_NEAR(relative.Y, p.Y, 1e-4);
            }
        }
    }
    // One inch at 150% is 144 pixels across and 180 down.
    const ViewTransform t = View(1.5f, {100, 100}, 20, 20);
    EXPECT_EQ(t.DocumentToDevice({1, 1}), QPointF(144, 180));
    // Unscaled, as paper is measured: the resolution alone.
    EXPECT_EQ(t.DocumentToDevice({1, 1}, false, false), QPointF(96, 120));
}

TEST(ViewTransform, RectanglesConvertBothWays)
{
    const ViewTransform t = View(2.0f, {200, 200}, 10, 10, {50, 100});
    // Corners given in any order make the same rectangle.
    const RectF r = t.DeviceRectToDocument({238, 380}, {46, 140});
    EXPECT_NEAR(r.X, 0.5f, 1e-5);
    EXPECT_NEAR(r.Y, 1.0f, 1e-5);
    EXPECT_NEAR(r.Width, 1.0f, 1e-5);
    EXPECT_NEAR(r.Height, 1.0f, 1e-5);
    // A rectangle of fractional pixels is covered, never cut.
    // 0.501 to 0.601 inch is 96.2 to 115.4 pixels, less the scroll.
    const QRect device = t.DocumentRectToDevice({0.501f, 1.0f, 0.1f, 0.125f});
    EXPECT_EQ(device, QRect(QPoint(46, 140), QPoint(65, 169)));
}

TEST(ViewTransform, FitToWidthStaysWithinFiftyAndThreeHundredPercent)
{
    EXPECT_FLOAT_EQ(ViewTransform::FitToWidth(960, 96, 8), 1.25f);
    EXPECT_FLOAT_EQ(ViewTransform::FitToWidth(100, 96, 8.27f), 0.5f);
    EXPECT_FLOAT_EQ(ViewTransform::FitToWidth(5000, 96, 2), 3.0f);
    EXPECT_FLOAT_EQ(ViewTransform::FitToWidth(0, 96, 8), 0.5f);
    EXPECT_FLOAT_EQ(ViewTransform::FitToWidth(800, 96, 0), 1.0f); // empty document
}

TEST(ViewTransform, KeepInViewScrollsOnlyWhenThePositionLeavesTheClearBand)
{
    // 500 pixels high: the bottom fifth (100 pixels) is the margin. At 100%, dpi Y 120.
    const ViewTransform t = View(1.0f, {400, 500}, 8, 50, {0, 1200});
    EXPECT_EQ(t.KeepInView(10.0f), std::nullopt);         // p = 1200, the top edge
    EXPECT_EQ(t.KeepInView(1600 / 120.0f), std::nullopt); // p = 1600, the edge of the margin
    EXPECT_EQ(t.KeepInView(1601 / 120.0f), 1601 - 100);   // into the margin
    EXPECT_EQ(t.KeepInView(1199 / 120.0f), 1099);         // above the window
    EXPECT_EQ(t.KeepInView(0.5f), 0);                     // never above the document
    // The zoom scales the position.
    const ViewTransform zoomed = View(2.0f, {400, 500}, 8, 50, {0, 0});
    EXPECT_EQ(zoomed.KeepInView(2.0f), 480 - 100);
}

} // namespace
} // namespace corrieval
