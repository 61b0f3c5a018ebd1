#include "canvas/geometry/overlay_resize_handle.h"

#include <algorithm>

namespace velmora
{
namespace
{

/// Which edge a handle holds along one axis.
enum class Edge { near, none, far };

struct HeldEdges {
    Edge x = Edge::none;
    Edge y = Edge::none;
};

HeldEdges heldEdges(OverlayResizeHandle handle)
{
    switch (handle) {
    case OverlayResizeHandle::topLeft:
        return {Edge::near, Edge::near};
    case OverlayResizeHandle::top:
        return {Edge::none, Edge::near};
    case OverlayResizeHandle::topRight:
        return {Edge::far, Edge::near};
    case OverlayResizeHandle::right:
        return {Edge::far, Edge::none};
    case OverlayResizeHandle::bottomRight:
        return {Edge::far, Edge::far};
    case OverlayResizeHandle::bottom:
        return {Edge::none, Edge::far};
    case OverlayResizeHandle::bottomLeft:
        return {Edge::near, Edge::far};
    case OverlayResizeHandle::left:
        return {Edge::near, Edge::none};
    }
    return {};
}

double offsetAlong(Edge edge, double extent)
{
    if (edge == Edge::none)
        return extent / 2;
    return edge == Edge::near ? 0 : extent;
}

void resizeAlong(Edge edge, double delta, double& origin, double& extent)
{
    if (edge == Edge::near) {
        origin += delta;
        extent -= delta;
    } else if (edge == Edge::far) {
        extent += delta;
    }
    extent = std::max(extent, smallestResizedExtent);
}

} // namespace

Point offset(OverlayResizeHandle handle, Size size)
{
    const auto held = heldEdges(handle);
    return {offsetAlong(held.x, size.width), offsetAlong(held.y, size.height)};
}

Rect resized(OverlayResizeHandle handle, double dx, double dy, const Rect& box)
{
    const auto held = heldEdges(handle);
    Rect result = box;
    resizeAlong(held.x, dx, result.x, result.width);
    resizeAlong(held.y, dy, result.y, result.height);
    return result;
}

} // namespace velmora
