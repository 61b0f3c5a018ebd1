#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>

namespace velmora
{

/// What of `rect` the painter's clip lets through, in the painter's units.
QRectF visiblePart(const QPainter& painter, const QRectF& rect);

/// Draws the whole image stretched into `rect`, as far as it falls into `visible` and the painter's clip, in its units.
/// Strong reductions are area averages; only the visible part is worked on. The painter is neither rotated nor
/// mirrored. An empty rectangle draws nothing; returns false when `rect` lies beyond what can be drawn.
bool drawPicture(QPainter& painter, const QImage& image, const QRectF& rect, const QRectF& visible);

} // namespace velmora
