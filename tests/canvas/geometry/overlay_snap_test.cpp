#include "canvas/geometry/overlay_snap.h"

#include <gtest/gtest.h>

#include <ostream>

namespace velmora
{

static void PrintTo(const Rect& rect, std::ostream* out)
{
    *out << "(" << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ")";
}

static void PrintTo(const OverlaySnapGuide& guide, std::ostream* out)
{
    *out << (guide.vertical ? "x = " : "y = ") << guide.position;
}

namespace
{

using Guides = std::vector<OverlaySnapGuide>;

constexpr Size window{600, 400};

DMGItem iconAt(double x, double y)
{
    DMGItem item;
    item.x = x;
    item.y = y;
    return item;
}

TEST(OverlaySnap, takesTheNearestCandidateAndTheLaterOfEquals)
{
    const struct {
        const char* name;
        double value;
        std::vector<double> candidates;
        double snapped;
        bool guided;
    } cases[] = {
        {"no candidates", 12, {}, 12, false},
        {"exactly the threshold away", 100, {107}, 107, true},
        {"a hair farther", 100, {107.01}, 100.0, false},
        {"the nearer wins when it comes first", 100, {102, 95}, 102, true},
        {"the nearer wins when it comes last", 100, {95, 102}, 102, true},
        {"of equals the later wins", 100, {104, 96}, 96, true},
        {"on the candidate", 100, {100}, 100, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = OverlaySnap::snapValue(c.value, c.candidates, 7);
        EXPECT_EQ(result.snapped, c.snapped);
        EXPECT_EQ(result.guide, c.guided ? std::optional(c.snapped) : std::nullopt);
    }
}

TEST(OverlaySnap, bringsAMovedBoxToRest)
{
    // Icons of 80 points have cells 136 wide: 82 to 218 and 382 to 518.
    const std::vector<DMGItem> items{iconAt(150, 120), iconAt(450, 130)};
    const struct {
        const char* name;
        Rect moved;
        Rect rests;
        Guides guides;
    } cases[] = {
        {"far from everything", {230, 300, 30, 20}, {230, 300, 30, 20}, {}},
        {"centre exactly 7 above a row", {230, 103, 30, 20}, {230, 110, 30, 20}, {{false, 120}}},
        {"centre a hair more than 7 above", {230, 102.99, 30, 20}, {230, 102.99, 30, 20}, {}},
        {"between two rows, equally near", {230, 115, 30, 20}, {230, 120, 30, 20}, {{false, 130}}},
        {"middle of the window", {230, 194, 30, 20}, {230, 190, 30, 20}, {{false, 200}}},
        {"only centres snap vertically", {230, 130, 30, 40}, {230, 130, 30, 40}, {}},
        {"centre on an icon's column", {130, 250, 50, 20}, {125, 250, 50, 20}, {{true, 150}}},
        {"right edge on a cell's left edge", {345, 250, 40, 20}, {342, 250, 40, 20}, {{true, 382}}},
        {"left edge on a cell's right edge", {213, 250, 40, 20}, {218, 250, 40, 20}, {{true, 218}}},
        {"centre of the window", {276, 250, 40, 20}, {280, 250, 40, 20}, {{true, 300}}},
        {"both ways, horizontal guide first", {130, 115, 50, 20}, {125, 120, 50, 20}, {{false, 130}, {true, 150}}},
        {"pulled back inside", {-40, 395, 30, 20}, {0, 380, 30, 20}, {}},
        {"wider than the window", {0, 250, 700, 20}, {-100, 250, 700, 20}, {}},
        {"taller than the window", {230, 90, 30, 450}, {230, -50, 30, 450}, {}},
        {"guide kept though the clamp moves the box off it", {514, 250, 100, 20}, {500, 250, 100, 20}, {{true, 518}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = OverlaySnap::snapMove(c.moved, window, items, 80);
        EXPECT_EQ(result.bounds, c.rests);
        EXPECT_EQ(result.guides, c.guides);
    }
}

TEST(OverlaySnap, choosesOneWinnerAlongX)
{
    const Rect moved{339, 250, 40, 20}; // centre 359, right edge 379
    const struct {
        const char* name;
        std::vector<DMGItem> items;
        double iconSize;
        double x;
        Guides guides;
    } cases[] = {
        {"nothing near without items", {}, 80, 339, {}},
        {"an edge 3 away beats a centre 5 away", {iconAt(450, 50), iconAt(364, 50)}, 80, 342, {{true, 382}}},
        {"the same in the other order", {iconAt(364, 50), iconAt(450, 50)}, 80, 342, {{true, 382}}},
        {"of equally near centres the later item's", {iconAt(354, 50), iconAt(364, 50)}, 80, 344, {{true, 364}}},
        {"a small icon's cell is still 64 wide", {iconAt(413, 50)}, 32, 341, {{true, 381}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto result = OverlaySnap::snapMove(moved, window, c.items, c.iconSize);
        EXPECT_EQ(result.bounds, (Rect{c.x, 250, 40, 20}));
        EXPECT_EQ(result.guides, c.guides);
    }

    const std::vector<DMGItem> beside{iconAt(290, 190)};
    const auto centered = OverlaySnap::snapMove({275, 185, 40, 20}, window, beside, 80);
    EXPECT_EQ(centered.guides, (Guides{{false, 200}, {true, 300}})) << "the window's centre wins ties, being last";
}

TEST(OverlaySnap, centersAlongTheWantedAxesAndStaysInTheWindow)
{
    const struct {
        const char* name;
        Rect box;
        bool horizontal;
        bool vertical;
        Rect centered;
    } cases[] = {
        {"along x only", {10, 20, 100, 50}, true, false, {250, 20, 100, 50}},
        {"along y only", {10, 20, 100, 50}, false, true, {10, 175, 100, 50}},
        {"along both", {10, 20, 101, 51}, true, true, {249.5, 174.5, 101, 51}},
        {"neither, inside", {10, 20, 100, 50}, false, false, {10, 20, 100, 50}},
        {"neither, past the far edges", {560, 390, 100, 50}, false, false, {500, 350, 100, 50}},
        {"neither, before the near edges", {-5, -6, 100, 50}, false, false, {0, 0, 100, 50}},
        {"larger than the window", {30, 40, 700, 500}, true, true, {0, 0, 700, 500}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(OverlaySnap::centeredBounds(c.box, window, c.horizontal, c.vertical), c.centered);
    }
}

} // namespace
} // namespace velmora
