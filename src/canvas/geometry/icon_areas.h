#pragma once

#include "model/geometry.h"

namespace velmora
{

/// Where a drawn icon's parts lie. View points: content points times the scale.
struct IconAreas {
    Rect picture{}; ///< the icon's square
    Rect label{};   ///< the ground of the label, below the picture and never wider than its column
    Rect block{};   ///< picture and label column together, centred on the icon's position
    Rect outline{}; ///< around the block; stroked when the icon is selected
    bool operator==(const IconAreas&) const = default;
};

/// The size of a label's font in view points.
double iconLabelFontSize(double textSize, double scale);
/// The width that a label may take up, in view points.
double iconLabelColumn(double iconSize, double scale);
/// The same for a label beside its icon, whose text has more room.
double iconLabelColumnBeside(double iconSize, double textSize, double scale);

/// Where an icon is drawn: `position` is the item's stored position and `iconSize` the project's, in content points;
/// `labelText` is the measured size of the label's text in view points.
IconAreas drawnIconAreas(Point position, double iconSize, Size labelText, double scale);
/// Where an icon is drawn whose label stands to the right: the picture alone is centred on the position, the label in
/// the middle of its height, and the block is no wider than the two.
IconAreas drawnIconAreasWithLabelBeside(Point position, double iconSize, double column, Size labelText, double scale);
/// Whether a press at the view point falls on the drawn icon: on its picture, on its label or between the two.
/// The empty corners beside them belong to what lies below.
bool iconTakes(const IconAreas& areas, Point viewPoint);

} // namespace velmora
