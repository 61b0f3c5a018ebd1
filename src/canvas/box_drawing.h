#pragma once

#include "canvas/geometry/box_hit_test.h"

#include <QColor>
#include <QPainter>
#include <QRectF>

namespace velmora
{

/// A pink line that shows what a moved element rests on, content points.
struct ShownGuide {
    bool vertical = false;
    double position = 0;
    bool operator==(const ShownGuide&) const = default;
};

/// What image and text overlays are selected and aligned with. The painter's origin is the corner of the content area,
/// its unit a view point.
void drawBoxSelection(QPainter& painter, const Rect& bounds, double scale, const QColor& accent);
/// Everything that drawBoxSelection() may touch.
QRectF boxSelectionArea(const Rect& bounds, double scale);
/// Draws the guide across a content area of this size (view points).
void drawGuide(QPainter& painter, const ShownGuide& guide, QSizeF content, double scale, double ratio);
/// The pixels of a guide.
QRectF guideArea(const ShownGuide& guide, QSizeF content, double scale);

} // namespace velmora
