#include "render/blur.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace velmora
{
namespace
{

// Three running averages of suitable widths come within a few percent of a Gaussian, at a cost that does not depend on
// the radius. Their widths are odd, so that nothing moves.
using BoxRadii = std::array<int, 3>;

BoxRadii boxRadii(double sigma)
{
    constexpr double passes = 3;
    const double ideal = std::sqrt(12 * sigma * sigma / passes + 1);
    int narrow = static_cast<int>(std::floor(ideal));
    if (narrow % 2 == 0)
        --narrow;
    // So many passes take the narrow width that the variances add up to sigma squared.
    const double exact =
        (12 * sigma * sigma - passes * narrow * narrow - 4 * passes * narrow - 3 * passes) / (-4.0 * narrow - 4);
    const int narrowPasses = static_cast<int>(std::lround(exact));
    BoxRadii radii{};
    for (int i = 0; i < 3; ++i)
        radii[static_cast<std::size_t>(i)] = (narrow - 1) / 2 + (i < narrowPasses ? 0 : 1);
    return radii;
}

void average(const std::vector<float>& in, std::vector<float>& out, int radius)
{
    const auto size = static_cast<std::ptrdiff_t>(in.size());
    const auto at = [&](std::ptrdiff_t i) {
        return i >= 0 && i < size ? double{in[static_cast<std::size_t>(i)]} : 0.0;
    };
    double sum = 0;
    for (std::ptrdiff_t i = -radius; i < radius; ++i)
        sum += at(i);
    for (std::ptrdiff_t i = 0; i < size; ++i) {
        sum += at(i + radius);
        out[static_cast<std::size_t>(i)] = static_cast<float>(sum / (2 * radius + 1));
        sum -= at(i - radius);
    }
}

/// Blurs `count` samples that lie `step` bytes apart.
void blurLine(std::uint8_t* samples, std::size_t count, std::ptrdiff_t step, const BoxRadii& radii,
              std::vector<float>& a, std::vector<float>& b)
{
    a.resize(count);
    b.resize(count);
    bool empty = true;
    for (std::size_t i = 0; i < count; ++i) {
        a[i] = samples[static_cast<std::ptrdiff_t>(i) * step];
        empty = empty && a[i] == 0;
    }
    if (empty)
        return;
    for (const int radius : radii) {
        average(a, b, radius);
        a.swap(b);
    }
    for (std::size_t i = 0; i < count; ++i)
        samples[static_cast<std::ptrdiff_t>(i) * step] =
            static_cast<std::uint8_t>(std::clamp(std::lround(a[i]), 0L, 255L));
}

} // namespace

int blurReach(double sigma)
{
    const BoxRadii radii = boxRadii(sigma);
    return radii[0] + radii[1] + radii[2];
}

void blurMask(QImage& mask, double sigma)
{
    const BoxRadii radii = boxRadii(sigma);
    if (mask.isNull() || radii == BoxRadii{})
        return;
    std::vector<float> a;
    std::vector<float> b;
    std::uint8_t* bits = mask.bits();
    for (int y = 0; y < mask.height(); ++y)
        blurLine(bits + y * mask.bytesPerLine(), static_cast<std::size_t>(mask.width()), 1, radii, a, b);
    for (int x = 0; x < mask.width(); ++x)
        blurLine(bits + x, static_cast<std::size_t>(mask.height()), mask.bytesPerLine(), radii, a, b);
}

} // namespace velmora
