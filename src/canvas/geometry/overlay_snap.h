#pragma once

#include "model/geometry.h"
#include "model/item.h"

#include <optional>
#include <span>
#include <vector>

namespace velmora
{

/// A line that shows what a moved box came to rest on. Content points.
struct OverlaySnapGuide {
    bool vertical = false; ///< true: the line x = position; false: the line y = position
    double position = 0;
    bool operator==(const OverlaySnapGuide&) const = default;
};

/// Where a moved box comes to rest, and the lines to show while it rests there.
struct SnapResult {
    Rect bounds{};                          ///< the size never changes
    std::vector<OverlaySnapGuide> guides{}; ///< at most one a direction, the horizontal one first
};

/// The outcome of the nearest-candidate rule along one axis.
struct SnapValue {
    double snapped = 0;
    std::optional<double> guide{};
};

/// Where boxes come to rest. Pure functions over content points.
namespace OverlaySnap
{

/// The nearest candidate at most `threshold` away (ties: the later one), or the value itself and no guide.
SnapValue snapValue(double value, std::span<const double> candidates, double threshold);

/// Half the width of an icon's cell: the icon and the room that its label may take beside it.
double halfCell(double iconSize);

/// Moves a box onto the nearest visible item's line or cell edge or the window's centre within `threshold`, then back
/// into the window. Call it with the raw box of every mouse event: a box that is already snapped would never come
/// loose.
SnapResult snapMove(const Rect& bounds, Size contentSize, std::span<const DMGItem> items, double iconSize,
                    double threshold = 7);

/// The box centred in the window along the wanted axes, then moved into the window; a box larger than the window ends
/// at its origin.
Rect centeredBounds(const Rect& bounds, Size contentSize, bool horizontal, bool vertical);

} // namespace OverlaySnap
} // namespace velmora
