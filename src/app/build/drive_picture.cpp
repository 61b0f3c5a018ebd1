#include "app/build/drive_picture.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace velmora
{
namespace
{

/// A drive seen from the front and a little from above, on a grid of 48.
void drawDrive(QPainter& painter)
{
    painter.setPen(QPen(QColor(0, 0, 0, 70), 0.5));

    QPainterPath top;
    top.moveTo(4.5, 31);
    top.lineTo(9.2, 10.5);
    top.quadTo(9.9, 8, 12.4, 8);
    top.lineTo(35.6, 8);
    top.quadTo(38.1, 8, 38.8, 10.5);
    top.lineTo(43.5, 31);
    top.closeSubpath();
    QLinearGradient lid(0, 8, 0, 31);
    lid.setColorAt(0, QColor(0xFB, 0xFB, 0xFD));
    lid.setColorAt(1, QColor(0xD3, 0xD6, 0xDE));
    painter.setBrush(lid);
    painter.drawPath(top);

    QLinearGradient front(0, 30, 0, 41);
    front.setColorAt(0, QColor(0xC2, 0xC6, 0xD1));
    front.setColorAt(1, QColor(0x9A, 0xA0, 0xAE));
    painter.setBrush(front);
    painter.drawRoundedRect(QRectF(4, 30, 40, 11), 3.2, 3.2);

    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 110));
    painter.drawRect(QRectF(6.5, 30.6, 35, 0.9));
    painter.setBrush(QColor(0x5E, 0x64, 0x72));
    painter.drawRoundedRect(QRectF(8, 35.2, 15, 1.4), 0.7, 0.7);
    painter.setBrush(QColor(0x3F, 0xC5, 0x6B));
    painter.drawEllipse(QPointF(39, 35.9), 1.4, 1.4);
}

} // namespace

QPixmap drivePicture(int size, double ratio)
{
    const int pixels = qRound(size * ratio);
    QPixmap pixmap(pixels, pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(pixels / 48.0, pixels / 48.0);
    drawDrive(painter);
    painter.end();
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

} // namespace velmora
