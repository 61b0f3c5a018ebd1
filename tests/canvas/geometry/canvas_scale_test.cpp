#include "canvas/geometry/canvas_scale.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmora
{
namespace
{

TEST(CanvasScale, fitsTheContentAreaWithItsMargin)
{
    const struct {
        const char* name;
        Size content;
        Size region;
        double scale;
    } cases[] = {
        {"limited by the height", {640, 452}, {1000, 700}, 628.0 / 452},
        {"limited by the width", {640, 452}, {700, 700}, 628.0 / 640},
        {"a tiny region counts as 100", {640, 452}, {150, 150}, 100.0 / 640},
        {"a region of 172 is where it begins to count", {100, 100}, {173, 400}, 1.01},
        {"a tiny window in a huge region", {50, 40}, {4000, 4000}, 8},
        {"a window without height", {640, 0}, {712, 700}, 1},
        {"a window below its own title bar", {640, -28}, {712, 700}, 1},
        {"a window without extent", {0, -28}, {700, 700}, 8},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_DOUBLE_EQ(CanvasScale::fit(c.content, c.region), c.scale);
    }
    const double largest = std::numeric_limits<double>::max();
    EXPECT_GT(CanvasScale::fit({largest, largest}, {100, 100}), 0);

    EXPECT_EQ(CanvasScale::inForce(1.5, {640, 452}, {1000, 700}), 1.5);
    EXPECT_DOUBLE_EQ(CanvasScale::inForce({}, {640, 452}, {1000, 700}), 628.0 / 452);
}

TEST(CanvasScale, labelsZoomFactorsInWholePerCent)
{
    std::string labels = CanvasScale::zoomLabel({});
    for (const double zoom : CanvasScale::zoomPresets)
        labels += " " + CanvasScale::zoomLabel(zoom);
    EXPECT_EQ(labels, "Fit 50% 75% 100% 125% 150% 200%");
    EXPECT_EQ(CanvasScale::zoomLabel(1.389), "138%");
}

TEST(CanvasScale, centersTheDrawnWindowAndGrowsTheAreaWithIt)
{
    const auto roomy = CanvasScale::windowDrawing({300, 200}, 2, {1000, 800});
    EXPECT_EQ(roomy.area, (Size{1000, 800}));
    EXPECT_EQ(roomy.titleBar, (Rect{200, 189, 600, 22}));
    EXPECT_EQ(roomy.content, (Rect{200, 211, 600, 400}));

    const auto tight = CanvasScale::windowDrawing({300, 200}, 2, {500, 300});
    EXPECT_EQ(tight.area, (Size{672, 494}));
    EXPECT_EQ(tight.titleBar, (Rect{36, 36, 600, 22}));
    EXPECT_EQ(tight.content, (Rect{36, 58, 600, 400}));
}

} // namespace
} // namespace velmora
