#include "canvas/geometry/box_hit_test.h"

#include <algorithm>
#include <cmath>

namespace velmora::BoxGeometry
{
namespace
{

Point handleCenter(OverlayResizeHandle handle, const Rect& bounds, double scale)
{
    const Rect rect = viewRect(bounds, scale);
    const Point within = offset(handle, {rect.width, rect.height});
    return {rect.x + within.x, rect.y + within.y};
}

} // namespace

bool contains(const Rect& rect, Point point)
{
    return point.x >= rect.x && point.x < rect.x + rect.width && point.y >= rect.y && point.y < rect.y + rect.height;
}

Rect viewRect(const Rect& bounds, double scale)
{
    return {bounds.x * scale, bounds.y * scale, std::max(bounds.width * scale, 1.0),
            std::max(bounds.height * scale, 1.0)};
}

Rect drawnHandle(OverlayResizeHandle handle, const Rect& bounds, double scale)
{
    const double diameter = std::max(8 * scale, 6.0);
    const Point center = handleCenter(handle, bounds, scale);
    return {center.x - diameter / 2, center.y - diameter / 2, diameter, diameter};
}

bool handleTakes(OverlayResizeHandle handle, const Rect& bounds, double scale, Point viewPoint)
{
    const double reach = std::max(10 * scale, 8.0);
    const Point center = handleCenter(handle, bounds, scale);
    return std::abs(viewPoint.x - center.x) <= reach && std::abs(viewPoint.y - center.y) <= reach;
}

std::optional<OverlayResizeHandle> handleAt(Point viewPoint, const Rect& bounds, double scale)
{
    for (const auto handle : allOverlayResizeHandles) {
        if (handleTakes(handle, bounds, scale, viewPoint))
            return handle;
    }
    return std::nullopt;
}

std::optional<BoxHit> handleHitTest(Point viewPoint, std::span<const OverlayBox> boxes,
                                    const std::optional<Uuid>& selected, double scale)
{
    if (!(scale > 0))
        return std::nullopt;
    const auto box =
        std::find_if(boxes.begin(), boxes.end(), [&](const OverlayBox& each) { return each.id == selected; });
    if (box == boxes.end())
        return std::nullopt;
    const auto handle = handleAt(viewPoint, box->bounds, scale);
    return handle ? std::optional(BoxHit{box->id, handle}) : std::nullopt;
}

std::optional<BoxHit> hitTest(Point viewPoint, std::span<const OverlayBox> boxes, const std::optional<Uuid>& selected,
                              double scale)
{
    if (!(scale > 0))
        return std::nullopt;
    if (const auto handle = handleHitTest(viewPoint, boxes, selected, scale))
        return handle;
    const auto body = std::find_if(boxes.rbegin(), boxes.rend(), [&](const OverlayBox& each) {
        return contains(viewRect(each.bounds, scale), viewPoint);
    });
    if (body == boxes.rend())
        return std::nullopt;
    return BoxHit{body->id, std::nullopt};
}

} // namespace velmora::BoxGeometry
