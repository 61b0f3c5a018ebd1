#pragma once

#include "model/geometry.h"

#include <QRectF>

namespace velmora
{

/// A rectangle as Qt takes it; `origin` is where its own origin lies, the content area's corner for a view rectangle.
inline QRectF toQRectF(const Rect& rect, QPointF origin = {})
{
    return {rect.x + origin.x(), rect.y + origin.y(), rect.width, rect.height};
}

} // namespace velmora
