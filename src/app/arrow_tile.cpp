#include "app/arrow_tile.h"

#include "app/kit/checker_thumbnail.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr double tileWidth = 168;
constexpr double tilePadding = 8;
constexpr double pictureHeight = 84;
constexpr double tileRadius = 10;
constexpr double pictureMargin = 13;

/// The part of a picture that is not transparent.
QRect drawnPart(const QImage& image)
{
    QRect part;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) > 8)
                part |= QRect(x, y, 1, 1);
        }
    }
    return part;
}

/// Whether a picture would be lost on a light ground: its drawn pixels are bright and grey.
bool isPale(const QImage& image)
{
    double sum = 0;
    double weight = 0;
    for (int y = 0; y < image.height(); y += 2) {
        for (int x = 0; x < image.width(); x += 2) {
            const QColor color = image.pixelColor(x, y);
            sum += color.alphaF() * std::min({color.redF(), color.greenF(), color.blueF()});
            weight += color.alphaF();
        }
    }
    return weight > 0 && sum / weight > 0.55;
}

} // namespace

ArrowTile::ArrowTile(const QString& name, PicturePtr picture, QWidget* parent) : QRadioButton(parent)
{
    setText(name);
    setAccessibleName(name);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    if (picture && !picture->pixels.isNull()) {
        const QImage image = picture->pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        m_picture = image.copy(drawnPart(image));
        m_pale = isPale(m_picture);
    }
}

QSize ArrowTile::sizeHint() const
{
    const Look& look = lookOf(this);
    return {look.length(tileWidth), look.length(2 * tilePadding + pictureHeight + 24)};
}

int ArrowTile::padding(const Look& look)
{
    return look.length(tilePadding);
}

FocusShape ArrowTile::focusShape() const
{
    return {rect(), static_cast<double>(lookOf(this).length(tileRadius)), true};
}

void ArrowTile::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        emit doubleClicked();
}

void ArrowTile::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QRectF tile = QRectF(rect());
    if (isChecked()) {
        drawBox(painter, tile, look.length(tileRadius), look.roles.accentSoft, QColor());
        drawChosenRing(painter, tile, look.length(tileRadius), look);
    } else if (underMouse()) {
        drawBox(painter, tile, look.length(tileRadius), look.palette.hoverFill, QColor());
    }
    const int edge = padding(look);
    const QRectF field(edge, edge, width() - 2 * edge, look.length(pictureHeight));
    drawCheckerFrame(painter, field, m_pale, this);
    if (!m_picture.isNull()) {
        const double margin = look.length(pictureMargin);
        const QRectF room = field.adjusted(margin, margin, -margin, -margin);
        const QSizeF size = QSizeF(m_picture.size()).scaled(room.size(), Qt::KeepAspectRatio);
        QRectF target(QPointF(), size);
        target.moveCenter(room.center());
        painter.drawImage(target, m_picture);
    }
    drawLine(painter, QRectF(edge, field.bottom(), field.width(), look.length(24 + tilePadding)), Qt::AlignCenter,
             text(), look.font(Type::controlMedium), isChecked() ? look.roles.primary : look.roles.secondary);
}

} // namespace velmora
