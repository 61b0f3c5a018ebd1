#include "canvas/geometry/icon_areas.h"
#include "canvas/geometry/icon_drag.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

struct Line {
    bool vertical;
    double position;
    bool operator==(const Line&) const = default;
};

DMGItem iconAt(double x, double y, bool hidden = false)
{
    DMGItem item;
    item.x = x;
    item.y = y;
    item.hidden = hidden;
    return item;
}

TEST(IconDrag, followsThePointerAndAlignsWithOtherIcons)
{
    const Size window{600, 400};
    DMGItem dragged = iconAt(50, 60);
    const struct {
        const char* name;
        std::vector<DMGItem> others;
        Point viewPoint;
        double scale;
        Point position;
        std::vector<Line> guides;
    } cases[] = {
        {"the centre jumps to the pointer", {}, {123.5, 77.25}, 1, {123.5, 77.25}, {}},
        {"view points are scaled", {}, {180, 120}, 1.5, {120, 80}, {}},
        {"stopped at the near edges", {}, {3, -40}, 1, {16, 16}, {}},
        {"stopped at the far edges", {}, {599, 4000}, 1, {584, 384}, {}},
        {"exactly 7 from another's column", {iconAt(200, 300)}, {193, 100}, 1, {200, 100}, {{true, 200}}},
        {"a hair farther", {iconAt(200, 300)}, {192.9, 100}, 1, {192.9, 100}, {}},
        {"7 is measured in content points", {iconAt(200, 300)}, {388, 200}, 2, {200, 100}, {{true, 200}}},
        {"of equally near the later", {iconAt(200, 300), iconAt(210, 300)}, {205, 100}, 1, {210, 100}, {{true, 210}}},
        {"and in the other order", {iconAt(210, 300), iconAt(200, 300)}, {205, 100}, 1, {200, 100}, {{true, 200}}},
        {"the window's centre wins ties", {iconAt(310, 190)}, {305, 195}, 1, {300, 200}, {{true, 300}, {false, 200}}},
        {"a hidden icon is no target", {iconAt(200, 100, true)}, {203, 100}, 1, {203, 100}, {}},
        {"nor is the icon itself", {}, {52, 61}, 1, {52, 61}, {}},
        {"aligned with an icon beyond the limits", {iconAt(10, 300)}, {2, 100}, 1, {10, 100}, {{true, 10}}},
        {"both axes, the vertical guide first",
         {iconAt(200, 100)},
         {202, 98},
         1,
         {200, 100},
         {{true, 200}, {false, 100}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        std::vector<DMGItem> items{dragged};
        items.insert(items.end(), c.others.begin(), c.others.end());
        const auto result = dragIcon(dragged.id, c.viewPoint, c.scale, items, window);
        EXPECT_EQ(result.position, c.position);
        std::vector<Line> guides;
        for (const auto& guide : result.guides)
            guides.push_back({guide.vertical, guide.position});
        EXPECT_EQ(guides, c.guides);
    }
    EXPECT_EQ(dragIcon(dragged.id, {10, 10}, 1, {}, {8, 8}).position, (Point{-8, -8}))
        << "in a tiny window the far edge has the last word";
}

TEST(IconAreas, centerTheBlockAndLimitTheLabel)
{
    const auto areas = drawnIconAreas({150, 100}, 80, {40, 14}, 2); // icon 160, column 272
    EXPECT_EQ(areas.block, (Rect{164, 111.5, 272, 177}));
    EXPECT_EQ(areas.picture, (Rect{220, 111.5, 160, 160}));
    EXPECT_EQ(areas.label, (Rect{277, 273.5, 46, 15}));
    EXPECT_EQ(areas.outline, (Rect{162, 109.5, 276, 181}));

    EXPECT_EQ(drawnIconAreas({150, 100}, 80, {900, 14}, 2).label.width, 272);
    EXPECT_EQ(iconLabelColumn(32, 1), 64);
    EXPECT_EQ(iconLabelFontSize(12, 0.5), 8);
    EXPECT_EQ(iconLabelFontSize(12, 0.75), 9);
}

TEST(IconAreas, takePressesWhereSomethingIsDrawn)
{
    const auto areas = drawnIconAreas({150, 100}, 80, {40, 14}, 2);
    const struct {
        const char* name;
        Point viewPoint;
        bool taken;
    } cases[] = {
        {"picture", {221, 112}, true},
        {"label", {278, 287}, true},
        {"gap between them", {300, 272.5}, true},
        {"corner beside the label", {225, 280}, false},
        {"column beside the picture", {200, 180}, false},
        {"outline", {300, 110.5}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(iconTakes(areas, c.viewPoint), c.taken);
    }
}

} // namespace
} // namespace velmora
