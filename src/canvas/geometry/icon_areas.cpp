#include "canvas/geometry/icon_areas.h"

#include "canvas/geometry/box_hit_test.h"

#include <algorithm>

namespace velmora
{
namespace
{

constexpr double labelGap = 2;
constexpr double besideGap = 4;
constexpr double labelPaddingX = 3;
constexpr double labelPaddingY = 0.5;
constexpr double outlineDistance = 2;

Size labelGround(Size text, double column)
{
    return {std::min(text.width + 2 * labelPaddingX, column), text.height + 2 * labelPaddingY};
}

Rect around(const Rect& block)
{
    return {block.x - outlineDistance, block.y - outlineDistance, block.width + 2 * outlineDistance,
            block.height + 2 * outlineDistance};
}

} // namespace

double iconLabelFontSize(double textSize, double scale)
{
    return std::max(textSize * scale, 8.0);
}

double iconLabelColumn(double iconSize, double scale)
{
    return std::max(iconSize * scale * 1.7, 64.0);
}

double iconLabelColumnBeside(double iconSize, double textSize, double scale)
{
    constexpr double widthsOfText = 12; // font sizes
    return std::max(iconLabelColumn(iconSize, scale), widthsOfText * iconLabelFontSize(textSize, scale));
}

IconAreas drawnIconAreas(Point position, double iconSize, Size labelText, double scale)
{
    const Point center{position.x * scale, position.y * scale};
    const double side = iconSize * scale;
    const double column = iconLabelColumn(iconSize, scale);
    const Size label = labelGround(labelText, column);
    const double height = side + labelGap + label.height;
    const double top = center.y - height / 2;

    IconAreas areas;
    areas.block = {center.x - column / 2, top, column, height};
    areas.picture = {center.x - side / 2, top, side, side};
    areas.label = {center.x - label.width / 2, top + side + labelGap, label.width, label.height};
    areas.outline = around(areas.block);
    return areas;
}

IconAreas drawnIconAreasWithLabelBeside(Point position, double iconSize, double column, Size labelText, double scale)
{
    const Point center{position.x * scale, position.y * scale};
    const double side = iconSize * scale;
    const Size label = labelGround(labelText, column);
    const double height = std::max(side, label.height);

    IconAreas areas;
    areas.picture = {center.x - side / 2, center.y - side / 2, side, side};
    areas.label = {center.x + side / 2 + besideGap, center.y - label.height / 2, label.width, label.height};
    areas.block = {areas.picture.x, center.y - height / 2, side + besideGap + label.width, height};
    areas.outline = around(areas.block);
    return areas;
}

bool iconTakes(const IconAreas& areas, Point viewPoint)
{
    // Up to the label: a press into the gap between the two is meant for the icon.
    Rect picture = areas.picture;
    if (areas.label.y >= picture.y + picture.height)
        picture.height = areas.label.y - picture.y;
    else
        picture.width = areas.label.x - picture.x;
    return BoxGeometry::contains(picture, viewPoint) || BoxGeometry::contains(areas.label, viewPoint);
}

} // namespace velmora
