#pragma once

#include "canvas/geometry/box_hit_test.h"
#include "canvas/geometry/overlay_snap.h"

#include <optional>
#include <span>
#include <vector>

namespace velmora
{

/// What a moved box may come to rest on. Content points.
struct SnapSurroundings {
    Size contentSize{};
    std::span<const DMGItem> items{}; ///< in project order; those left out are no hold
    double iconSize = 0;
};

/// A box while a person moves or resizes it. The project learns of it once, when `liveBounds` is committed at the end;
/// until then the drag can be dropped without a trace.
struct BoxDrag {
    Uuid id{};
    std::optional<OverlayResizeHandle> handle{}; ///< absent: the box is moved
    Rect startBounds{};                          ///< content points
    Point startViewPoint{};
    Rect liveBounds{};                      ///< the box as the drag puts it now, content points
    std::vector<OverlaySnapGuide> guides{}; ///< to show while the box rests on something
};

/// The drag that a press at the view point begins, or nothing when it falls on no box.
std::optional<BoxDrag> beginBoxDrag(Point viewPoint, std::span<const OverlayBox> boxes,
                                    const std::optional<Uuid>& selected, double scale);

/// Brings the drag to the pointer's view point. A move snaps, a resize does not; both start from the box as it was at
/// the press, so that a snapped box comes loose again. Nothing happens when the scale is not positive.
void continueBoxDrag(BoxDrag& drag, Point viewPoint, double scale, const SnapSurroundings& around);

} // namespace velmora
