#include "canvas/geometry/box_drag.h"

#include <algorithm>
#include <utility>

namespace velmora
{

std::optional<BoxDrag> beginBoxDrag(Point viewPoint, std::span<const OverlayBox> boxes,
                                    const std::optional<Uuid>& selected, double scale)
{
    const auto hit = BoxGeometry::hitTest(viewPoint, boxes, selected, scale);
    if (!hit)
        return std::nullopt;
    const auto box =
        std::find_if(boxes.begin(), boxes.end(), [&](const OverlayBox& each) { return each.id == hit->id; });
    return BoxDrag{hit->id, hit->handle, box->bounds, viewPoint, box->bounds, {}};
}

void continueBoxDrag(BoxDrag& drag, Point viewPoint, double scale, const SnapSurroundings& around)
{
    if (!(scale > 0))
        return;
    const double dx = (viewPoint.x - drag.startViewPoint.x) / scale;
    const double dy = (viewPoint.y - drag.startViewPoint.y) / scale;
    if (drag.handle) {
        drag.liveBounds = resized(*drag.handle, dx, dy, drag.startBounds);
        drag.guides.clear();
        return;
    }
    Rect moved = drag.startBounds;
    moved.x += dx;
    moved.y += dy;
    auto snapped = OverlaySnap::snapMove(moved, around.contentSize, around.items, around.iconSize);
    drag.liveBounds = snapped.bounds;
    drag.guides = std::move(snapped.guides);
}

} // namespace velmora
