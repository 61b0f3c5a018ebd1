#pragma once

#include "model/geometry.h"

namespace velmora
{

/// A drag of the background picture. The picture follows the pointer in both directions; the stored offsets are in the
/// renderer's sense, where a positive vertical offset moves the picture up.
struct BackgroundDrag {
    Point origin{};    ///< the stored offsets when it began, content points
    Point startView{}; ///< the pointer then, view points

    /// The offsets to store for the pointer's view point.
    [[nodiscard]] Point offsets(Point viewPoint, double scale) const
    {
        return {origin.x + (viewPoint.x - startView.x) / scale, origin.y - (viewPoint.y - startView.y) / scale};
    }
};

} // namespace velmora
