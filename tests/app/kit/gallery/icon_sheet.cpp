#include "icon_sheet.h"

#include "app/kit/icons.h"
#include "app/kit/paint.h"

#include <QPainter>

namespace velmora
{

QImage iconSheet(const Look& look, double ratio)
{
    constexpr int column = 112;
    constexpr int row = 150;
    constexpr int columns = 10;
    QStringList names = {"add-files", "add-image", "add-text", "background", "contents", "licenses", "remove",
                         "build",     "layout",    "volume",   "file-info",  "arrange",  "text",     "theme",
                         "updates",   "language",  "window",   "about",      "help"};
    for (const QString& name : iconNames()) {
        if (!names.contains(name))
            names.append(name);
    }
    const int rows = static_cast<int>((names.size() + columns - 1) / columns);
    const QSize size(columns * column, rows * row + 280);
    QImage sheet(size * ratio, QImage::Format_RGB32);
    sheet.setDevicePixelRatio(ratio);
    sheet.fill(look.roles.panel);
    QPainter painter(&sheet);
    for (int i = 0; i < names.size(); ++i) {
        const QPoint at(i % columns * column + 8, i / columns * row + 8);
        const auto draw = [&](QPoint corner, int side, double scale) {
            // A large view of the small rendering shows where its lines fall.
            const QPixmap picture = iconPixmap(names.at(i), side, ratio * scale, iconColors(look));
            painter.drawPixmap(QRectF(corner, QSizeF(side * scale, side * scale)), picture, picture.rect());
        };
        draw(at, 24, 4);
        draw(at + QPoint(0, 104), 24, 1);
        draw(at + QPoint(32, 106), 20, 1);
        draw(at + QPoint(58, 107), 18, 1);
        draw(at + QPoint(82, 108), 16, 1);
        drawLine(painter, QRectF(at + QPoint(0, 130), QSizeF(100, 12)), Qt::AlignLeft, names.at(i),
                 look.font(Type::tab), look.roles.secondary);
    }
    const int top = rows * row + 8;
    int x = 8;
    for (const int side : {256, 128, 64, 48, 32, 24, 16}) {
        painter.drawPixmap(QRect(x, top, side, side), programIconPixmap(side, ratio));
        x += side + 16;
    }
    return sheet;
}

} // namespace velmora
