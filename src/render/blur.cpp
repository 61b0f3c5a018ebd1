#include "render/blur.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

namespace velmora
{
namespace
{

// Three running averages come within a few percent of a Gaussian, at a cost that does not depend on the radius.
constexpr int passes = 3;

/// A running average over 2 × radius + 1 samples of weight 1 and one more of weight `edge` on either side, so that its
/// deviation need not fit whole samples: a shadow is as soft at one resolution as at another.
struct Box {
    int radius = 0;
    double edge = 0;
};

/// The box whose passes add up to the variance sigma squared.
Box boxFor(double sigma)
{
    const double variance = sigma * sigma / passes;
    // Without its edges a box has the variance radius × (radius + 1) / 3.
    const double radius = std::floor((std::sqrt(1 + 12 * variance) - 1) / 2);
    const double edge =
        (2 * radius + 1) * (variance - radius * (radius + 1) / 3) / (2 * ((radius + 1) * (radius + 1) - variance));
    return {static_cast<int>(radius), std::max(0.0, edge)};
}

void average(const std::vector<float>& in, std::vector<float>& out, const Box& box)
{
    const auto size = static_cast<std::ptrdiff_t>(in.size());
    const auto at = [&](std::ptrdiff_t i) {
        return i >= 0 && i < size ? double{in[static_cast<std::size_t>(i)]} : 0.0;
    };
    const double whole = 2 * box.radius + 1 + 2 * box.edge;
    double sum = 0;
    for (std::ptrdiff_t i = -box.radius; i < box.radius; ++i)
        sum += at(i);
    for (std::ptrdiff_t i = 0; i < size; ++i) {
        sum += at(i + box.radius);
        const double edges = box.edge * (at(i - box.radius - 1) + at(i + box.radius + 1));
        out[static_cast<std::size_t>(i)] = static_cast<float>((sum + edges) / whole);
        sum -= at(i - box.radius);
    }
}

/// Blurs `count` samples that lie `step` bytes apart.
void blurLine(std::uint8_t* samples, std::size_t count, std::ptrdiff_t step, const Box& box, std::vector<float>& a,
              std::vector<float>& b)
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
    for (int pass = 0; pass < passes; ++pass) {
        average(a, b, box);
        a.swap(b);
    }
    for (std::size_t i = 0; i < count; ++i)
        samples[static_cast<std::ptrdiff_t>(i) * step] =
            static_cast<std::uint8_t>(std::clamp(std::lround(a[i]), 0L, 255L));
}

} // namespace

int blurReach(double sigma)
{
    const Box box = boxFor(sigma);
    return passes * (box.radius + 1);
}

void blurMask(QImage& mask, double sigma)
{
    if (mask.isNull() || !(sigma > 0))
        return;
    const Box box = boxFor(sigma);
    std::vector<float> a;
    std::vector<float> b;
    std::uint8_t* bits = mask.bits();
    for (int y = 0; y < mask.height(); ++y)
        blurLine(bits + y * mask.bytesPerLine(), static_cast<std::size_t>(mask.width()), 1, box, a, b);
    for (int x = 0; x < mask.width(); ++x)
        blurLine(bits + x, static_cast<std::size_t>(mask.height()), mask.bytesPerLine(), box, a, b);
}

} // namespace velmora
