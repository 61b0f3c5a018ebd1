#include "canvas/geometry/icon_drag.h"

#include "canvas/geometry/overlay_snap.h"

#include <algorithm>

namespace velmora
{
namespace
{

double insideWindow(double value, double extent)
{
    return std::min(std::max(value, iconDragInset), extent - iconDragInset);
}

/// The value drawn onto the nearest line; the guide that this makes is appended.
double aligned(double value, std::span<const double> lines, bool vertical, std::vector<AlignGuide>& guides)
{
    const auto snapped = OverlaySnap::snapValue(value, lines, iconAlignDistance);
    if (snapped.guide)
        guides.push_back({.vertical = vertical, .position = *snapped.guide});
    return snapped.snapped;
}

} // namespace

IconDrag dragIcon(const Uuid& dragged, Point viewPoint, double scale, std::span<const DMGItem> items, Size contentSize)
{
    std::vector<double> columns;
    std::vector<double> rows;
    for (const auto& item : items) {
        if (item.hidden || item.id == dragged)
            continue;
        columns.push_back(item.x);
        rows.push_back(item.y);
    }
    columns.push_back(contentSize.width / 2);
    rows.push_back(contentSize.height / 2);

    IconDrag result;
    result.position.x = aligned(insideWindow(viewPoint.x / scale, contentSize.width), columns, true, result.guides);
    result.position.y = aligned(insideWindow(viewPoint.y / scale, contentSize.height), rows, false, result.guides);
    return result;
}

} // namespace velmora
