#include "app/kit/paint.h"

#include "app/kit/look.h"

#include <QFontMetricsF>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>

#include <algorithm>
#include <cmath>
#include <vector>

namespace velmora
{
namespace
{

double deviceScale(const QPainter& painter)
{
    const double scale = painter.deviceTransform().m11();
    return scale > 0 ? scale : 1;
}

double snapped(double value, double origin, double scale)
{
    return (std::round(value * scale + origin) - origin) / scale;
}

/// A line's width in the painter's units that is a whole number of device pixels.
double wholeWidth(double points, double scale)
{
    return std::max(1.0, std::round(points * scale)) / scale;
}

} // namespace

QColor laidOver(const QColor& under, const QColor& over)
{
    const double part = over.alphaF();
    const auto mix = [part](int from, int to) { return static_cast<int>(std::lround(from + (to - from) * part)); };
    return QColor(mix(under.red(), over.red()), mix(under.green(), over.green()), mix(under.blue(), over.blue()));
}

QColor pressedFill(const Look& look, double strength)
{
    const bool whiteInk = look.roles.onAccent.lightnessF() > 0.5F;
    return laidOver(look.roles.accentFill, faded(whiteInk ? QColor(Qt::black) : QColor(Qt::white), 0.13 * strength));
}

QRectF onDevicePixels(const QPainter& painter, const QRectF& rect)
{
    const QTransform device = painter.deviceTransform();
    const double scale = deviceScale(painter);
    const double left = snapped(rect.left(), device.dx(), scale);
    const double top = snapped(rect.top(), device.dy(), scale);
    return {QPointF(left, top),
            QPointF(snapped(rect.right(), device.dx(), scale), snapped(rect.bottom(), device.dy(), scale))};
}

void drawBox(QPainter& painter, const QRectF& rect, double radius, const QColor& fill, const QColor& border)
{
    const QRectF box = onDevicePixels(painter, rect);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (!border.isValid()) {
        painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
        painter.drawRoundedRect(box, radius, radius);
    } else {
        // The ground ends under the middle of the line, so that it never shines through round the corners.
        const double width = wholeWidth(1, deviceScale(painter));
        const double half = width / 2;
        const QRectF middle = box.adjusted(half, half, -half, -half);
        const double middleRadius = std::max(0.0, radius - half);
        if (fill.isValid()) {
            painter.setBrush(fill);
            painter.drawRoundedRect(middle, middleRadius, middleRadius);
        }
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(border, width));
        painter.drawRoundedRect(middle, middleRadius, middleRadius);
    }
    painter.restore();
}

void drawHorizontalHairline(QPainter& painter, double left, double right, double y, const QColor& color)
{
    const double scale = deviceScale(painter);
    const double top = snapped(y, painter.deviceTransform().dy(), scale);
    painter.fillRect(QRectF(left, top, right - left, wholeWidth(1, scale)), color);
}

void drawVerticalHairline(QPainter& painter, double x, double top, double bottom, const QColor& color)
{
    const double scale = deviceScale(painter);
    const double left = snapped(x, painter.deviceTransform().dx(), scale);
    painter.fillRect(QRectF(left, top, wholeWidth(1, scale), bottom - top), color);
}

void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, bool gap, const Look& look)
{
    const double width = wholeWidth(measure::focusWidth * look.scale, deviceScale(painter));
    const double distance = width / 2 + (gap ? wholeWidth(look.scale, deviceScale(painter)) : 0);
    const QRectF ring = onDevicePixels(painter, rect).adjusted(-distance, -distance, distance, distance);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(look.roles.focus, width));
    painter.drawRoundedRect(ring, radius + distance, radius + distance);
    painter.restore();
}

void drawChevron(QPainter& painter, const QPointF& centre, double width, bool up, const QColor& color)
{
    const double half = width / 2;
    const double rise = (up ? -1 : 1) * half / 2;
    QPainterPath path(centre + QPointF(-half, -rise));
    path.lineTo(centre + QPointF(0, rise));
    path.lineTo(centre + QPointF(half, -rise));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, (5.5 + width) / 9.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
    painter.restore();
}

void drawTick(QPainter& painter, const QRectF& box, const QColor& color)
{
    const auto at = [&box](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    QPainterPath path(at(0.28, 0.53));
    path.lineTo(at(0.44, 0.69));
    path.lineTo(at(0.73, 0.35));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(color, box.width() * 0.115, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
    painter.restore();
}

void drawAccentTick(QPainter& painter, const QRectF& box, const Look& look)
{
    drawBox(painter, box, box.width() / 2, look.roles.accentFill, {});
    drawTick(painter, box, look.roles.onAccent);
}

void drawChosenRing(QPainter& painter, const QRectF& rect, double radius, const Look& look)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(look.roles.accentFill, 2));
    painter.drawRoundedRect(rect.adjusted(1, 1, -1, -1), radius - 1, radius - 1);
    painter.restore();
}

void drawBusyRing(QPainter& painter, const QRectF& box, double turn, const QColor& color, const Look& look)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (look.reducedMotion) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        const double radius = box.width() * 0.09;
        for (const double x : {0.22, 0.5, 0.78})
            painter.drawEllipse(QPointF(box.left() + x * box.width(), box.center().y()), radius, radius);
    } else {
        const double width = std::max(1.5, box.width() / 8);
        const QRectF ring = box.adjusted(width / 2, width / 2, -width / 2, -width / 2);
        painter.setPen(QPen(faded(color, 0.28), width));
        painter.drawEllipse(ring);
        painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap));
        // Angles are sixteenths of a degree, counter-clockwise from the right: a quarter that begins at the top.
        painter.drawArc(ring, static_cast<int>((90 - turn * 360) * 16), -100 * 16);
    }
    painter.restore();
}

void drawChrome(QPainter& painter, const QRectF& rect, const ThemePalette& palette)
{
    QLinearGradient ground(rect.topLeft(), rect.bottomLeft());
    ground.setColorAt(0, palette.chromeGradient[0]);
    ground.setColorAt(1, palette.chromeGradient[1]);
    painter.fillRect(rect, ground);
}

void drawChecker(QPainter& painter, const QRectF& rect, double square, const QColor& first, const QColor& second)
{
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    painter.fillRect(rect, first);
    int row = 0;
    for (double y = rect.top(); y < rect.bottom(); y += square, ++row) {
        for (double x = rect.left() + (row % 2 ? 0 : square); x < rect.right(); x += 2 * square)
            painter.fillRect(QRectF(x, y, square, square), second);
    }
    painter.restore();
}

void drawColorChecker(QPainter& painter, const QRectF& rect, double square)
{
    drawChecker(painter, rect, square, Qt::white, QColor(0xC8, 0xCB, 0xD2));
}

void drawLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text, const QFont& font,
              const QColor& color)
{
    painter.setFont(font);
    painter.setPen(color);
    const QFontMetricsF metrics(font);
    // A sliver of rounding must not cost a word its end.
    const QString shown = metrics.elidedText(text, Qt::ElideRight, rect.width() + 1);
    painter.drawText(rect, static_cast<int>(alignment) | Qt::TextSingleLine | Qt::TextDontClip, shown);
}

namespace
{

/// Three passes of a box filter over each line of `alpha` come close to a Gauss curve.
void blurLine(unsigned char* line, int count, qsizetype stride, int radius, std::vector<unsigned char>& copy)
{
    copy.resize(static_cast<std::size_t>(count));
    const int width = 2 * radius + 1;
    for (int pass = 0; pass < 3; ++pass) {
        for (int i = 0; i < count; ++i)
            copy[static_cast<std::size_t>(i)] = line[i * stride];
        int sum = 0;
        for (int i = 0; i < std::min(radius, count); ++i)
            sum += copy[static_cast<std::size_t>(i)];
        for (int i = 0; i < count; ++i) {
            if (i + radius < count)
                sum += copy[static_cast<std::size_t>(i + radius)];
            if (i - radius - 1 >= 0)
                sum -= copy[static_cast<std::size_t>(i - radius - 1)];
            line[i * stride] = static_cast<unsigned char>(sum / width);
        }
    }
}

/// A square picture of the shadow's corners and edges, `edge` pixels from its border to its middle row.
QPixmap shadowPicture(int edge, double radius, int blurRadius, double blur, const QColor& color)
{
    const int size = 2 * edge + 1;
    QImage mask(size, size, QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::black);
        painter.drawRoundedRect(QRectF(blur, blur, size - 2 * blur, size - 2 * blur), radius, radius);
    }
    std::vector<unsigned char> copy;
    for (int y = 0; y < size; ++y)
        blurLine(mask.scanLine(y), size, 1, blurRadius, copy);
    for (int x = 0; x < size; ++x)
        blurLine(mask.bits() + x, size, mask.bytesPerLine(), blurRadius, copy);
    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(color);
    QPainter painter(&picture);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    painter.end();
    return QPixmap::fromImage(picture);
}

} // namespace

void drawShadow(QPainter& painter, const QRectF& box, double radius, const Shadow& shadow)
{
    const double scale = deviceScale(painter);
    const int edge = static_cast<int>(std::ceil((2 * shadow.blur + radius) * scale));
    const QString key = QStringLiteral("velmora-shadow-%1-%2-%3-%4")
                            .arg(edge)
                            .arg(radius * scale)
                            .arg(shadow.blur * scale)
                            .arg(shadow.color.rgba(), 0, 16);
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        // The soft edge is twice the Gauss curve's deviation wide on each side; a box pass takes about that radius.
        const int blurRadius = std::max(1, static_cast<int>(std::lround(shadow.blur * scale / 3)));
        picture = shadowPicture(edge, radius * scale, blurRadius, shadow.blur * scale, shadow.color);
        QPixmapCache::insert(key, picture);
    }
    const QRectF outer =
        box.adjusted(-shadow.blur, -shadow.blur, shadow.blur, shadow.blur).translated(0, shadow.offset);
    const double corner = std::min({edge / scale, outer.width() / 2, outer.height() / 2});
    const double xs[] = {outer.left(), outer.left() + corner, outer.right() - corner, outer.right()};
    const double ys[] = {outer.top(), outer.top() + corner, outer.bottom() - corner, outer.bottom()};
    const double from[] = {0, static_cast<double>(edge), edge + 1.0, 2.0 * edge + 1};
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const QRectF target(QPointF(xs[column], ys[row]), QPointF(xs[column + 1], ys[row + 1]));
            const QRectF source(QPointF(from[column], from[row]), QPointF(from[column + 1], from[row + 1]));
            if (!target.isEmpty())
                painter.drawPixmap(target, picture, source);
        }
    }
    painter.restore();
}

} // namespace velmora
