#pragma once

#include "model/geometry.h"

#include <array>
#include <optional>
#include <string>

namespace velmora
{

/// How large the Finder window is drawn and where. View points: content points times the scale.
namespace CanvasScale
{

/// Room on every side of the drawn window, in view points.
inline constexpr double margin = 36;
/// Height of the drawn title bar in view points, whatever the scale.
inline constexpr double titleBarHeight = 22;
/// The largest scale at which a window is fitted.
inline constexpr double largestFit = 8;
/// The zoom factors on offer, in menu order.
inline constexpr std::array zoomPresets{0.5, 0.75, 1.0, 1.25, 1.5, 2.0};

/// The scale at which the content area with its margin fits into the region; the title bar is not counted. The usable
/// part of the region never counts as less than 100 view points, the content area never as less than 1 content point,
/// so that the scale is positive whatever a document says.
double fit(Size contentSize, Size region);
/// The scale in force: the chosen zoom, or the fitting scale when there is none.
double inForce(const std::optional<double>& zoom, Size contentSize, Size region);

/// "Fit" without a zoom, else its whole per cent ("125%"), cut off, not rounded.
std::string zoomLabel(const std::optional<double>& zoom);

/// The drawn window within the area that can be scrolled.
struct WindowDrawing {
    Size area{};     ///< at least as large as the region
    Rect titleBar{}; ///< in the area
    Rect content{};  ///< in the area, right below the title bar
    bool operator==(const WindowDrawing&) const = default;
};

/// The window drawn at the scale, centred in an area that holds it and its margin and covers the region.
WindowDrawing windowDrawing(Size contentSize, double scale, Size region);

} // namespace CanvasScale
} // namespace velmora
