#pragma once

#include "canvas/geometry/overlay_resize_handle.h"
#include "model/geometry.h"
#include "model/uuid.h"

#include <optional>
#include <span>

namespace velmora
{

/// The box of an image or text overlay, in content points.
struct OverlayBox {
    Uuid id{};
    Rect bounds{};
};

/// What a press falls on: a handle of the selected box, or the body of a box.
struct BoxHit {
    Uuid id{};
    std::optional<OverlayResizeHandle> handle{}; ///< absent: the body
    bool operator==(const BoxHit&) const = default;
};

/// Where boxes and their handles are drawn and where they are hit, in view points: content points times the scale. Each
/// drawn area stands beside the area that takes a press; what a person sees and what reacts must agree.
namespace BoxGeometry
{

/// Whether the point lies in the rectangle. Its left and top edges belong to it, its right and bottom edges do not.
bool contains(const Rect& rect, Point point);

/// Where a box is drawn and where its body is hit; never thinner than one view point.
Rect viewRect(const Rect& bounds, double scale);

/// The square around the circle with which a handle of the box is drawn.
Rect drawnHandle(OverlayResizeHandle handle, const Rect& bounds, double scale);
/// Whether the view point lies on a handle's clickable square, which is larger than the drawn circle; edges count.
bool handleTakes(OverlayResizeHandle handle, const Rect& bounds, double scale, Point viewPoint);

/// The first handle of the box that takes the view point.
std::optional<OverlayResizeHandle> handleAt(Point viewPoint, const Rect& bounds, double scale);
/// The handle of the selected box that takes the view point. Nothing when the scale is not positive.
std::optional<BoxHit> handleHitTest(Point viewPoint, std::span<const OverlayBox> boxes,
                                    const std::optional<Uuid>& selected, double scale);
/// What a press at the view point falls on: the handles of the selected box come first, even where another box lies on
/// top, then the bodies from the last box to the first. Nothing when the scale is not positive.
std::optional<BoxHit> hitTest(Point viewPoint, std::span<const OverlayBox> boxes, const std::optional<Uuid>& selected,
                              double scale);

} // namespace BoxGeometry
} // namespace velmora
