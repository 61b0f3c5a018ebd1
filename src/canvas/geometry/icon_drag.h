#pragma once

#include "model/geometry.h"
#include "model/item.h"
#include "model/uuid.h"

#include <span>
#include <vector>

namespace velmora
{

/// A line that shows what a dragged icon is aligned with. Content points; every guide made has an identity of its own.
struct AlignGuide {
    Uuid id = Uuid::random();
    bool vertical = false; ///< true: the line x = position; false: the line y = position
    double position = 0;
};

/// Where a dragged icon goes, and the guides to show.
struct IconDrag {
    Point position{};                 ///< content points, not rounded
    std::vector<AlignGuide> guides{}; ///< at most one a direction, the vertical one first
};

/// How close to another icon's centre line or the window's centre a dragged icon is drawn onto it, in content points.
inline constexpr double iconAlignDistance = 7;
/// How far inside the content area the centre of a dragged icon stays, in content points.
inline constexpr double iconDragInset = 16;

/// Where the dragged item goes when the pointer is at the view point: its centre jumps to the pointer, stays inside the
/// content area, and each axis by itself is drawn onto the nearest line of the other visible items or the window's
/// centre (ties: the later one). The scale must be positive.
IconDrag dragIcon(const Uuid& dragged, Point viewPoint, double scale, std::span<const DMGItem> items, Size contentSize);

} // namespace velmora
