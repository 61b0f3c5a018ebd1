#pragma once

#include "model/geometry.h"

#include <array>

namespace velmora
{

/// The points by which a selected box is resized, in the order in which a press is tested against them.
enum class OverlayResizeHandle { topLeft, top, topRight, right, bottomRight, bottom, bottomLeft, left };

inline constexpr std::array allOverlayResizeHandles{
    OverlayResizeHandle::topLeft,    OverlayResizeHandle::top,         OverlayResizeHandle::topRight,
    OverlayResizeHandle::right,      OverlayResizeHandle::bottomRight, OverlayResizeHandle::bottom,
    OverlayResizeHandle::bottomLeft, OverlayResizeHandle::left,
};

/// The smallest width and height that resizing leaves, in content points.
inline constexpr double smallestResizedExtent = 16;

/// Where the handle lies relative to the origin of a box of this size, in the space of the size.
Point offset(OverlayResizeHandle handle, Size size);

/// The box after its handle was dragged by (dx, dy) content points. It is neither snapped nor kept in the window nor in
/// proportion. A width or height below the smallest becomes the smallest while the origin keeps following the pointer,
/// so a left or top handle dragged too far slides the small box along.
Rect resized(OverlayResizeHandle handle, double dx, double dy, const Rect& box);

} // namespace velmora
