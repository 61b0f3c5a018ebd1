#include "canvas/geometry/box_drag.h"

#include <gtest/gtest.h>

namespace velmora
{
namespace
{

using Handle = OverlayResizeHandle;

Uuid numbered(std::uint8_t number)
{
    Uuid id;
    id.bytes[0] = number;
    return id;
}

const Uuid lower = numbered(1);
const Uuid upper = numbered(2);

/// Two overlapping boxes; the second lies on top.
const std::vector<OverlayBox> boxes{{lower, {100, 100, 80, 60}}, {upper, {150, 130, 80, 60}}};
const SnapSurroundings emptyWindow{{600, 400}, {}, 80};

TEST(OverlayResizeHandle, movesTheEdgesThatItHolds)
{
    const Rect box{100, 200, 60, 40};
    const struct {
        Handle handle;
        Point offset;
        Rect dragged;   ///< by (5, -3)
        Rect collapsed; ///< dragged 100 towards the opposite edge
    } cases[] = {
        {Handle::topLeft, {0, 0}, {105, 197, 55, 43}, {200, 300, 16, 16}},
        {Handle::top, {30, 0}, {100, 197, 60, 43}, {100, 300, 60, 16}},
        {Handle::topRight, {60, 0}, {100, 197, 65, 43}, {100, 300, 16, 16}},
        {Handle::right, {60, 20}, {100, 200, 65, 40}, {100, 200, 16, 40}},
        {Handle::bottomRight, {60, 40}, {100, 200, 65, 37}, {100, 200, 16, 16}},
        {Handle::bottom, {30, 40}, {100, 200, 60, 37}, {100, 200, 60, 16}},
        {Handle::bottomLeft, {0, 40}, {105, 200, 55, 37}, {200, 200, 16, 16}},
        {Handle::left, {0, 20}, {105, 200, 55, 40}, {200, 200, 16, 40}},
    };
    ASSERT_EQ(std::size(cases), allOverlayResizeHandles.size());
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& c = cases[i];
        SCOPED_TRACE(i);
        EXPECT_EQ(allOverlayResizeHandles[i], c.handle);
        EXPECT_EQ(offset(c.handle, {60, 40}), c.offset);
        EXPECT_EQ(resized(c.handle, 5, -3, box), c.dragged);
        const double inwardX = c.offset.x > 0 ? -100 : 100;
        const double inwardY = c.offset.y > 0 ? -100 : 100;
        EXPECT_EQ(resized(c.handle, inwardX, inwardY, box), c.collapsed);
    }
    EXPECT_EQ(resized(Handle::right, -44, 0, box).width, 16);
    EXPECT_EQ(resized(Handle::right, -43.5, 0, box).width, 16.5);
    EXPECT_EQ(resized(Handle::left, 10, 0, {0, 0, 10, 4}), (Rect{10, 0, 16, 16})) << "a box that was too small grows";
}

TEST(BoxHitTest, reachesHandlesFartherThanTheyAreDrawn)
{
    const Rect box{100, 100, 80, 60};
    const struct {
        const char* name;
        double scale;
        double diameter;
        double reach;
    } cases[] = {
        {"half size: both minimums", 0.5, 6, 8},
        {"just where the reach begins to grow", 0.8, 6.4, 8},
        {"full size", 1, 8, 10},
        {"double size", 2, 16, 20},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Point corner{180 * c.scale, 160 * c.scale};
        const Rect drawn = BoxGeometry::drawnHandle(Handle::bottomRight, box, c.scale);
        EXPECT_DOUBLE_EQ(drawn.width, c.diameter);
        EXPECT_DOUBLE_EQ(drawn.x + drawn.width / 2, corner.x);
        EXPECT_DOUBLE_EQ(drawn.y + drawn.height / 2, corner.y);

        const auto takes = [&](double dx, double dy) {
            return BoxGeometry::handleTakes(Handle::bottomRight, box, c.scale, {corner.x + dx, corner.y + dy});
        };
        EXPECT_TRUE(takes(c.reach, -c.reach));
        EXPECT_FALSE(takes(c.reach + 0.01, 0));
        EXPECT_FALSE(takes(0, -c.reach - 0.01));
    }
}

TEST(BoxHitTest, prefersSelectedHandlesThenTheTopmostBody)
{
    const std::vector<OverlayBox> thin{{lower, {50, 50, 0, 100}}};
    const struct {
        const char* name;
        std::vector<OverlayBox> boxes;
        Point viewPoint;
        std::optional<Uuid> selected;
        double scale;
        std::optional<BoxHit> hit;
    } cases[] = {
        {"where both lie the upper is hit", boxes, {160, 140}, {}, 1, BoxHit{upper, {}}},
        {"a handle of the selected lower box wins", boxes, {179, 159}, lower, 1, BoxHit{lower, Handle::bottomRight}},
        {"handles of others do not count", boxes, {179, 159}, upper, 1, BoxHit{upper, {}}},
        {"nor those of a box that is gone", boxes, {179, 159}, numbered(9), 1, BoxHit{upper, {}}},
        {"a handle outside its box", boxes, {92, 93}, lower, 1, BoxHit{lower, Handle::topLeft}},
        {"the first of two handles in reach",
         {{lower, {100, 100, 8, 60}}},
         {104, 95},
         lower,
         1,
         BoxHit{lower, Handle::topLeft}},
        {"the left and top edges belong to the box", boxes, {100, 100}, {}, 1, BoxHit{lower, {}}},
        {"the far edges do not", boxes, {230, 150}, {}, 1, {}},
        {"empty area", boxes, {20, 20}, lower, 1, {}},
        {"zoomed: the point is a view point", boxes, {320, 280}, {}, 2, BoxHit{upper, {}}},
        {"a box without width is hit on one view point", thin, {50.5, 80}, {}, 1, BoxHit{lower, {}}},
        {"and not beside it", thin, {51, 80}, {}, 1, {}},
        {"no scale, no hit", {{lower, {0, 0, 10, 10}}}, {0, 0}, lower, 0, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(BoxGeometry::hitTest(c.viewPoint, c.boxes, c.selected, c.scale), c.hit);
    }
}

TEST(BoxDrag, beginsWithTheBoxAsItIs)
{
    const auto still = beginBoxDrag({120, 110}, boxes, {}, 1);
    ASSERT_TRUE(still);
    EXPECT_EQ(still->id, lower);
    EXPECT_FALSE(still->handle);
    EXPECT_EQ(still->liveBounds, boxes[0].bounds) << "a still press commits the box unchanged";
    EXPECT_FALSE(beginBoxDrag({20, 20}, boxes, lower, 1));
}

TEST(BoxDrag, movesWithSnappingAndComesLooseAgain)
{
    // At scale 2 the lower box, centre (140, 130), is pressed at content point (110, 110).
    auto drag = beginBoxDrag({220, 220}, boxes, {}, 2);
    ASSERT_TRUE(drag);
    continueBoxDrag(*drag, {220 + 2 * 155, 220}, 2, emptyWindow);
    EXPECT_EQ(drag->liveBounds, (Rect{260, 100, 80, 60})) << "5 from the window's centre";
    EXPECT_EQ(drag->guides, (std::vector<OverlaySnapGuide>{{true, 300}}));
    continueBoxDrag(*drag, {220 + 2 * 152, 220}, 2, emptyWindow);
    EXPECT_EQ(drag->liveBounds, (Rect{252, 100, 80, 60})) << "8 from it: measured from the press, not from the rest";
    EXPECT_TRUE(drag->guides.empty());
    continueBoxDrag(*drag, {-5000, 220}, 2, emptyWindow);
    EXPECT_EQ(drag->liveBounds.x, 0) << "a move stays in the window";
}

TEST(BoxDrag, resizesWithoutSnappingOrClamping)
{
    auto drag = beginBoxDrag({90, 50}, {{{lower, {20, 20, 70, 60}}}}, lower, 1);
    ASSERT_TRUE(drag);
    ASSERT_EQ(drag->handle, Handle::right);
    continueBoxDrag(*drag, {90 + 480, 50}, 1, emptyWindow);
    EXPECT_EQ(drag->liveBounds, (Rect{20, 20, 550, 60})) << "its centre is 5 from the window's";
    continueBoxDrag(*drag, {90 + 900, 50}, 1, emptyWindow);
    EXPECT_EQ(drag->liveBounds.width, 970);
    EXPECT_TRUE(drag->guides.empty());
    continueBoxDrag(*drag, {500, 50}, 0, emptyWindow);
    EXPECT_EQ(drag->liveBounds.width, 970) << "nothing can be measured without a scale";
}

} // namespace
} // namespace velmora
