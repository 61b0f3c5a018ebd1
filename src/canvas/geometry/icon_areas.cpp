#include "canvas/geometry/icon_areas.h"

#include "canvas/geometry/box_hit_test.h"

#include <algorithm>

namespace velmora
{
namespace
{

constexpr double labelGap = 2;
constexpr double labelPaddingX = 3;
constexpr double labelPaddingY = 0.5;
constexpr double outlineDistance = 2;

} // namespace

double iconLabelFontSize(double textSize, double scale)
{
    return std::max(textSize * scale, 8.0);
}

double iconLabelColumn(double iconSize, double scale)
{
    return std::max(iconSize * scale * 1.7, 64.0);
}

IconAreas drawnIconAreas(Point position, double iconSize, Size labelText, double scale)
{
    const Point center{position.x * scale, position.y * scale};
    const double side = iconSize * scale;
    const double column = iconLabelColumn(iconSize, scale);
    const Size label{std::min(labelText.width + 2 * labelPaddingX, column), labelText.height + 2 * labelPaddingY};
    const double height = side + labelGap + label.height;
    const double top = center.y - height / 2;

    IconAreas areas;
    areas.block = {center.x - column / 2, top, column, height};
    areas.picture = {center.x - side / 2, top, side, side};
    areas.label = {center.x - label.width / 2, top + side + labelGap, label.width, label.height};
    areas.outline = {areas.block.x - outlineDistance, areas.block.y - outlineDistance, column + 2 * outlineDistance,
                     height + 2 * outlineDistance};
    return areas;
}

bool iconTakes(const IconAreas& areas, Point viewPoint)
{
    // Down to the label: a press into the gap between the two is meant for the icon.
    Rect picture = areas.picture;
    picture.height = areas.label.y - picture.y;
    return BoxGeometry::contains(picture, viewPoint) || BoxGeometry::contains(areas.label, viewPoint);
}

} // namespace velmora
