#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>

namespace velmora
{

/// Draws the whole image stretched into `rect`, as far as it falls into `visible`, both in the painter's units. Strong
/// reductions are area averages; only the visible part is worked on. The painter is neither rotated nor mirrored.
/// An empty rectangle draws nothing; returns false when `rect` lies beyond what can be drawn.
bool drawPicture(QPainter& painter, const QImage& image, const QRectF& rect, const QRectF& visible);

} // namespace velmora
