#include "app/kit/checker_thumbnail.h"

#include "app/kit/icons.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr unsigned darkChecker[] = {0x5A616F, 0x666E7D};
constexpr double lightFrom = 0.45;
constexpr int sampleSide = 48; ///< pixels: enough for an average

} // namespace

void drawCheckerFrame(QPainter& painter, const QRectF& rect, bool lightPicture, const QWidget* widget)
{
    const Look& look = lookOf(widget);
    const bool dark = lightPicture && !look.dark();
    const QColor first = dark ? QColor::fromRgb(darkChecker[0]) : look.roles.checkerFirst;
    const QColor second = dark ? QColor::fromRgb(darkChecker[1]) : look.roles.checkerSecond;
    const double radius = look.length(6);
    QPainterPath shape;
    shape.addRoundedRect(rect, radius, radius);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipPath(shape, Qt::IntersectClip);
    drawChecker(painter, rect, look.length(measure::checkerSquare), first, second);
    painter.restore();
    drawBox(painter, rect, radius, {}, look.roles.border);
}

CheckerThumbnail::CheckerThumbnail(const QSize& size, QWidget* parent) : QWidget(parent), m_size(size)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void CheckerThumbnail::setImage(const QImage& image)
{
    if (image.cacheKey() == m_image.cacheKey())
        return;
    m_image = image;
    m_scaled = {};
    m_light = isLight(image);
    update();
}

void CheckerThumbnail::setSign(const QString& icon)
{
    m_sign = icon;
    update();
}

void CheckerThumbnail::setInset(double inset)
{
    m_inset = inset;
    m_scaled = {};
    update();
}

QSize CheckerThumbnail::sizeHint() const
{
    return {lookOf(this).length(m_size.width()), lookOf(this).length(m_size.height())};
}

bool CheckerThumbnail::isLight(const QImage& image)
{
    if (image.isNull())
        return false;
    const QImage sample = image.scaled(sampleSide, sampleSide, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_ARGB32);
    double light = 0;
    double weight = 0;
    for (int y = 0; y < sample.height(); ++y) {
        for (int x = 0; x < sample.width(); ++x) {
            const QRgb pixel = sample.pixel(x, y);
            const double alpha = qAlpha(pixel) / 255.0;
            light += alpha * (0.2126 * qRed(pixel) + 0.7152 * qGreen(pixel) + 0.0722 * qBlue(pixel)) / 255;
            weight += alpha;
        }
    }
    return weight > 0 && light / weight > lightFrom;
}

void CheckerThumbnail::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    drawCheckerFrame(painter, rect(), m_light, this);
    if (m_image.isNull()) {
        const int side = look.length(24);
        const IconColors colors{look.roles.secondary, Qt::transparent};
        if (!m_sign.isEmpty())
            painter.drawPixmap((width() - side) / 2, (height() - side) / 2,
                               iconPixmap(m_sign, side, devicePixelRatioF(), colors));
        return;
    }
    const double inset = 1 + look.scale * m_inset;
    const QSizeF room = QRectF(rect()).adjusted(inset, inset, -inset, -inset).size();
    const double ratio = devicePixelRatioF();
    // Pictures are made for two device pixels to the point.
    const QSizeF natural = QSizeF(m_image.size()) / 2;
    const double scale = std::min({room.width() / natural.width(), room.height() / natural.height(), 1.0});
    const QSize pixels = (natural * scale * ratio).toSize().expandedTo(QSize(1, 1));
    if (m_scaled.size() != pixels)
        m_scaled = m_image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QSizeF shown = QSizeF(pixels) / ratio;
    const QRectF target(QPointF((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QPainterPath shape;
    const double radius = look.length(6) - 1;
    shape.addRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
    painter.setClipPath(shape);
    painter.drawImage(onDevicePixels(painter, target), m_scaled);
}

} // namespace velmora
