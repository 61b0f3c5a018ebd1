#include "canvas/box_drawing.h"

#include "canvas/qt_rect.h"

#include <QPen>

#include <cmath>

namespace velmora
{
void drawBoxSelection(QPainter& painter, const Rect& bounds, double scale, const QColor& accent)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor::fromRgbF(0.2F, 0.78F, 0.36F), 1.5));
    painter.drawRect(toQRectF(BoxGeometry::viewRect(bounds, scale)));
    painter.setPen(QPen(Qt::white, 1));
    painter.setBrush(accent);
    for (const auto handle : allOverlayResizeHandles)
        painter.drawEllipse(toQRectF(BoxGeometry::drawnHandle(handle, bounds, scale)));
    painter.restore();
}

QRectF boxSelectionArea(const Rect& bounds, double scale)
{
    constexpr double pen = 2;
    QRectF area = toQRectF(BoxGeometry::viewRect(bounds, scale));
    for (const auto handle : {OverlayResizeHandle::topLeft, OverlayResizeHandle::bottomRight})
        area |= toQRectF(BoxGeometry::drawnHandle(handle, bounds, scale));
    return area.adjusted(-pen, -pen, pen, pen);
}

void drawGuide(QPainter& painter, const ShownGuide& guide, QSizeF content, double scale, double ratio)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(QColor::fromRgbF(1.0F, 0.19F, 0.45F), 1);
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    // On whole pixels: a line on the border of two would be wide and pale.
    const double at = (std::floor(guide.position * scale * ratio) + 0.5 * std::round(ratio)) / ratio;
    if (guide.vertical)
        painter.drawLine(QLineF(at, 0, at, content.height()));
    else
        painter.drawLine(QLineF(0, at, content.width(), at));
    painter.restore();
}

QRectF guideArea(const ShownGuide& guide, QSizeF content, double scale)
{
    const double at = guide.position * scale;
    return guide.vertical ? QRectF(at - 2, 0, 4, content.height()) : QRectF(0, at - 2, content.width(), 4);
}

} // namespace velmora
