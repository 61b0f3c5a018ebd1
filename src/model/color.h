#pragma once

namespace velmora
{

/// An sRGB colour; components lie in 0..1.
struct CodableColor {
    double r = 0;
    double g = 0;
    double b = 0;
    double a = 1;

    static constexpr CodableColor defaultBackground() { return {0.93, 0.93, 0.95, 1}; }
    static constexpr CodableColor gradientTop() { return {1, 1, 1, 1}; }
    static constexpr CodableColor gradientBottom() { return {0.55, 0.55, 0.58, 1}; }

    bool operator==(const CodableColor&) const = default;
};

} // namespace velmora
