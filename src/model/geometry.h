#pragma once

namespace velmora
{

/// A point in content points unless a name says otherwise: origin at the top left of the Finder window's content
/// area (below its title bar), x to the right, y downward.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

/// A width and height in points.
struct Size {
    double width = 0;
    double height = 0;
    bool operator==(const Size&) const = default;
};

/// A rectangle: the corner with the smallest coordinates, and a size.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    bool operator==(const Rect&) const = default;
};

} // namespace velmora
