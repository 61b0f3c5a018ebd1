#include "canvas/geometry/canvas_scale.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace velmora::CanvasScale
{
namespace
{

constexpr double smallestRegion = 100;
constexpr double smallestContent = 1;

double fitAlong(double content, double region)
{
    return std::max(region - 2 * margin, smallestRegion) / std::max(content, smallestContent);
}

} // namespace

double fit(Size contentSize, Size region)
{
    return std::min(largestFit,
                    std::min(fitAlong(contentSize.width, region.width), fitAlong(contentSize.height, region.height)));
}

double inForce(const std::optional<double>& zoom, Size contentSize, Size region)
{
    return zoom ? *zoom : fit(contentSize, region);
}

std::string zoomLabel(const std::optional<double>& zoom)
{
    if (!zoom)
        return "Fit";
    return std::to_string(static_cast<std::int64_t>(*zoom * 100)) + "%";
}

WindowDrawing windowDrawing(Size contentSize, double scale, Size region)
{
    const Size content{std::max(contentSize.width, 0.0) * scale, std::max(contentSize.height, 0.0) * scale};
    const Size window{content.width, titleBarHeight + content.height};
    const Size area{std::max(region.width, window.width + 2 * margin),
                    std::max(region.height, window.height + 2 * margin)};
    const Point corner{(area.width - window.width) / 2, (area.height - window.height) / 2};
    return {area,
            {corner.x, corner.y, content.width, titleBarHeight},
            {corner.x, corner.y + titleBarHeight, content.width, content.height}};
}

} // namespace velmora::CanvasScale
