#include "canvas/icon_art.h"

#include "canvas/text_line.h"

#include <QLinearGradient>
#include <QPainterPath>
#include <QPen>

#include <cmath>

namespace velmora
{
namespace
{

// All drawings are made on a square of this size.
constexpr double grid = 100;

QLinearGradient downward(double top, double bottom, const QColor& first, const QColor& last)
{
    QLinearGradient gradient(0, top, 0, bottom);
    gradient.setColorAt(0, first);
    gradient.setColorAt(1, last);
    return gradient;
}

QPainterPath rounded(const QRectF& rect, double radius)
{
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

/// A soft ground shadow, so that light icons stand out of a light window.
void drawGround(QPainter& painter, const QPainterPath& shape)
{
    for (int i = 3; i >= 1; --i)
        painter.fillPath(shape.translated(0, 0.7 * i), QColor(20, 30, 50, 14));
}

QPainterPath folderBack()
{
    QPainterPath path;
    path.moveTo(4, 22);
    path.quadTo(4, 15, 11, 15);
    path.lineTo(32, 15);
    path.cubicTo(38, 15, 39, 23, 45, 23);
    path.lineTo(89, 23);
    path.quadTo(96, 23, 96, 30);
    path.lineTo(96, 80);
    path.lineTo(4, 80);
    path.closeSubpath();
    return path;
}

void drawFolder(QPainter& painter)
{
    const QPainterPath back = folderBack();
    const QPainterPath front = rounded({4, 34, 92, 53}, 7);
    drawGround(painter, front);
    painter.fillPath(back, downward(15, 60, QColor(0x4F, 0x92, 0xCB), QColor(0x3F, 0x7F, 0xB8)));
    // The edge of a sheet inside.
    painter.fillPath(rounded({9, 30, 82, 20}, 4), QColor(0xE9, 0xF2, 0xFA));
    painter.fillPath(front, downward(34, 87, QColor(0x94, 0xC6, 0xEE), QColor(0x62, 0xA4, 0xDB)));
    painter.save();
    painter.setClipPath(front);
    painter.fillRect(QRectF(4, 34, 92, 1.6), QColor(255, 255, 255, 130));
    painter.fillRect(QRectF(4, 85.6, 92, 1.4), QColor(0x2F, 0x6E, 0xA8, 110));
    painter.restore();
}

void drawApplicationsFolder(QPainter& painter)
{
    drawFolder(painter);
    const QColor ink(0x35, 0x74, 0xAE, 205);
    // Three programs side by side and one on its way.
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawRoundedRect(QRectF(36, 46, 12.5, 12.5), 3.4, 3.4);
    painter.drawRoundedRect(QRectF(51.5, 46, 12.5, 12.5), 3.4, 3.4);
    painter.drawEllipse(QRectF(36, 61.5, 12.5, 12.5));
    painter.drawEllipse(QRectF(51.5, 61.5, 12.5, 12.5));
}

void drawDocument(QPainter& painter, const QString& kind)
{
    constexpr double fold = 22;
    QPainterPath page;
    page.moveTo(24, 6);
    page.lineTo(82 - fold, 6);
    page.lineTo(82, 6 + fold);
    page.lineTo(82, 90);
    page.quadTo(82, 94, 78, 94);
    page.lineTo(22, 94);
    page.quadTo(18, 94, 18, 90);
    page.lineTo(18, 12);
    page.quadTo(18, 6, 24, 6);
    page.closeSubpath();
    drawGround(painter, page);
    painter.fillPath(page, downward(6, 94, QColor(0xFF, 0xFF, 0xFF), QColor(0xF1, 0xF3, 0xF7)));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(0xB4, 0xBA, 0xC6), 1));
    painter.drawPath(page);

    QPainterPath corner;
    corner.moveTo(82 - fold, 6);
    corner.lineTo(82 - fold, 6 + fold - 4);
    corner.quadTo(82 - fold, 6 + fold, 82 - fold + 4, 6 + fold);
    corner.lineTo(82, 6 + fold);
    corner.closeSubpath();
    painter.fillPath(corner, downward(6, 6 + fold, QColor(0xD5, 0xDA, 0xE3), QColor(0xEC, 0xEF, 0xF4)));
    painter.drawPath(corner);

    const auto line = [&painter](double y, double width) {
        painter.fillRect(QRectF(30, y, width, 2.6), QColor(0xC9, 0xCF, 0xDA));
    };
    line(40, 40);
    line(48, 40);
    line(56, 28);
    if (kind.isEmpty())
        return;
    const double size = kind.size() > 4 ? 11 : 13.5;
    const TextLine text(kind, size, QFont::DemiBold);
    text.draw(painter, QPointF(50 - text.size().width() / 2, 80 - text.size().height() / 2), QColor(0x6B, 0x74, 0x86));
}

void drawApplication(QPainter& painter)
{
    const QPainterPath tile = rounded({10, 10, 80, 80}, 19);
    drawGround(painter, tile);
    painter.fillPath(tile, downward(10, 90, QColor(0x8D, 0x9B, 0xB4), QColor(0x5F, 0x6D, 0x88)));
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor(255, 255, 255, 60), 1.2));
    painter.drawPath(rounded({10.6, 10.6, 78.8, 78.8}, 18.4));
    // A window with its content.
    painter.fillPath(rounded({27, 31, 46, 38}, 5), QColor(0xFB, 0xFC, 0xFE));
    QPainterPath bar = rounded({27, 31, 46, 20}, 5).intersected([] {
        QPainterPath part;
        part.addRect(27, 31, 46, 10);
        return part;
    }());
    painter.fillPath(bar, QColor(0xC8, 0xD1, 0xE0));
    painter.fillPath(rounded({33, 47, 15, 15}, 3), QColor(0x8D, 0x9B, 0xB4));
    painter.fillPath(rounded({52, 48.5, 15, 3}, 1.5), QColor(0xC8, 0xD1, 0xE0));
    painter.fillPath(rounded({52, 54.5, 11, 3}, 1.5), QColor(0xC8, 0xD1, 0xE0));
}

void drawBadge(QPainter& painter)
{
    QPainterPath triangle;
    triangle.moveTo(8, 2.2);
    triangle.lineTo(14.4, 13.6);
    triangle.lineTo(1.6, 13.6);
    triangle.closeSubpath();
    const auto outlined = [&](const QColor& color, double width) {
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(color);
        painter.drawPath(triangle);
    };
    const QColor ink(0x4A, 0x2E, 0x00);
    outlined(QColor(255, 255, 255), 3.4);
    outlined(QColor(0xF2, 0xA9, 0x1E), 1.2);
    painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(8, 6.2), QPointF(8, 9.4));
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawEllipse(QPointF(8, 11.8), 0.95, 0.95);
}

} // namespace

void drawIconArt(QPainter& painter, IconArt art, const QRectF& square, const QString& kind)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.translate(square.topLeft());
    painter.scale(square.width() / grid, square.height() / grid);
    switch (art) {
    case IconArt::document:
        drawDocument(painter, kind);
        break;
    case IconArt::folder:
        drawFolder(painter);
        break;
    case IconArt::applicationsFolder:
        drawApplicationsFolder(painter);
        break;
    case IconArt::application:
        drawApplication(painter);
        break;
    }
    painter.restore();
}

QImage warningBadge(double ratio)
{
    const int pixels = static_cast<int>(std::ceil(warningBadgeSize * ratio));
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    drawBadge(painter);
    return image;
}

} // namespace velmora
