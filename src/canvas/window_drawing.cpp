#include "canvas/window_drawing.h"

#include "canvas/text_line.h"
#include "render/blur.h"

#include <QBrush>
#include <QLinearGradient>
#include <QPainterPath>
#include <QPen>

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

struct ShadowLook {
    double blur;
    double offset;
    double strength;
};

constexpr ShadowLook shadowLook(bool dark)
{
    return dark ? ShadowLook{40, 16, 0.45} : ShadowLook{32, 12, 0.18};
}

/// A blurred rounded square, just large enough that its middle is flat.
QImage shadowPicture(const ShadowLook& look, double ratio, double& reachInPoints)
{
    const double sigma = look.blur / 2 * ratio; // a blur radius covers two standard deviations
    const int reach = blurReach(sigma);
    const int solid = 2 * (reach + static_cast<int>(std::ceil(windowRadius * ratio))) + 1;
    QImage mask(solid + 2 * reach, solid + 2 * reach, QImage::Format_Alpha8);
    mask.fill(0);
    QPainter painter(&mask);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRect(reach, reach, solid, solid), windowRadius * ratio, windowRadius * ratio);
    painter.end();
    blurMask(mask, sigma);
    QImage picture(mask.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(QColor::fromRgbF(0, 0, 0, static_cast<float>(look.strength)));
    QPainter tint(&picture);
    tint.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    tint.drawImage(0, 0, mask);
    tint.end();
    reachInPoints = reach / ratio;
    return picture;
}

/// The cuts along one direction of a nine-part picture: outer edge, two inner cuts, outer edge.
struct Cuts {
    double at[4];
};

Cuts targetCuts(double from, double to, double reach, double corner)
{
    const double inner = std::min(corner, (to - from) / 2);
    return {{from - reach, from + inner, to - inner, to + reach}};
}

Cuts sourceCuts(double length, double reach, double inner)
{
    return {{0, reach + inner, length - reach - inner, length}};
}

QPainterPath titleBarShape(const QRectF& bar)
{
    QPainterPath path;
    path.moveTo(bar.bottomLeft());
    path.lineTo(bar.left(), bar.top() + windowRadius);
    path.arcTo(QRectF(bar.left(), bar.top(), 2 * windowRadius, 2 * windowRadius), 180, -90);
    path.lineTo(bar.right() - windowRadius, bar.top());
    path.arcTo(QRectF(bar.right() - 2 * windowRadius, bar.top(), 2 * windowRadius, 2 * windowRadius), 90, -90);
    path.lineTo(bar.bottomRight());
    path.closeSubpath();
    return path;
}

QRectF leftCorner(const QRectF& window)
{
    return {window.left(), window.bottom() - windowRadius, windowRadius, windowRadius};
}

QRectF rightCorner(const QRectF& window)
{
    return {window.right() - windowRadius, window.bottom() - windowRadius, windowRadius, windowRadius};
}

} // namespace

void WindowShadow::draw(QPainter& painter, const QRectF& window, double ratio, bool dark)
{
    const ShadowLook look = shadowLook(dark);
    if (m_picture.isNull() || m_ratio != ratio || m_dark != dark) {
        m_picture = shadowPicture(look, ratio, m_reach);
        m_ratio = ratio;
        m_dark = dark;
    }
    const QRectF cast = window.translated(0, look.offset);
    const double corner = m_reach + windowRadius;
    const Cuts toX = targetCuts(cast.left(), cast.right(), m_reach, corner);
    const Cuts toY = targetCuts(cast.top(), cast.bottom(), m_reach, corner);
    const Cuts fromX = sourceCuts(m_picture.width(), m_reach * ratio, (toX.at[1] - cast.left()) * ratio);
    const Cuts fromY = sourceCuts(m_picture.height(), m_reach * ratio, (toY.at[1] - cast.top()) * ratio);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const QRectF to(QPointF(toX.at[column], toY.at[row]), QPointF(toX.at[column + 1], toY.at[row + 1]));
            const QRectF from(QPointF(fromX.at[column], fromY.at[row]),
                              QPointF(fromX.at[column + 1], fromY.at[row + 1]));
            if (!to.isEmpty() && !from.isEmpty())
                painter.drawImage(to, m_picture, from);
        }
    }
}

void drawTitleBar(QPainter& painter, const QRectF& bar, const QString& title)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient gradient(bar.topLeft(), bar.bottomLeft());
    gradient.setColorAt(0, QColor(0xF6, 0xF6, 0xF7));
    gradient.setColorAt(1, QColor(0xE4, 0xE4, 0xE7));
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawPath(titleBarShape(bar));
    painter.fillRect(QRectF(bar.left(), bar.bottom() - 1, bar.width(), 1), QColor(0xC9, 0xC9, 0xCE));

    constexpr double circle = 10;
    constexpr double firstCircle = 9;
    constexpr double circleDistance = 16;
    const QColor circles[] = {QColor::fromRgbF(1.0F, 0.37F, 0.35F), QColor::fromRgbF(1.0F, 0.74F, 0.18F),
                              QColor::fromRgbF(0.24F, 0.79F, 0.33F)};
    double x = bar.left() + firstCircle;
    const double y = bar.top() + (bar.height() - circle) / 2;
    for (const QColor& color : circles) {
        painter.setBrush(color);
        painter.drawEllipse(QRectF(x, y, circle, circle));
        x += circleDistance;
    }

    constexpr double fontSize = 12;
    const double taken = firstCircle + 3 * circleDistance + 2;
    const double room = bar.width() - 2 * taken;
    if (room > 2 * fontSize) {
        const TextLine line(TextLine::elided(title, fontSize, QFont::Medium, room), fontSize, QFont::Medium);
        const QPointF corner(bar.center().x() - line.size().width() / 2, bar.center().y() - line.size().height() / 2);
        line.draw(painter, corner, QColor::fromRgbF(0, 0, 0, 0.62F));
    }
    painter.restore();
}

void drawWindowOutline(QPainter& painter, const QRectF& window, double ratio, bool dropTarget, const QColor& accent)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const double width = dropTarget ? 3 : 1;
    painter.setPen(QPen(dropTarget ? accent : QColor::fromRgbF(0, 0, 0, 0.28F), width));
    // A thin line lies on the pixels right inside the edge, so that it stays sharp.
    const double inset = dropTarget ? 0 : (ratio >= 1 ? width / 2 : 0);
    painter.drawRoundedRect(window.adjusted(inset, inset, -inset, -inset), windowRadius - inset, windowRadius - inset);
    painter.restore();
}

void roundLowerCorners(QPainter& painter, const QRectF& window, const QImage& surroundings)
{
    QPainterPath round;
    round.addRoundedRect(window.adjusted(0, -4 * windowRadius, 0, 0), windowRadius, windowRadius);
    // The pixels alone: a texture's own ratio would be applied as well.
    const QImage pixels(surroundings.constBits(), surroundings.width(), surroundings.height(),
                        surroundings.bytesPerLine(), surroundings.format());
    QBrush brush(pixels);
    const double ratio = surroundings.devicePixelRatio();
    brush.setTransform(QTransform::fromScale(1 / ratio, 1 / ratio));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const QRectF& corner : {leftCorner(window), rightCorner(window)}) {
        QPainterPath outside;
        // A little beyond the window, whose edges may lie between pixels.
        outside.addRect(
            corner.adjusted(corner.left() == window.left() ? -1 : 0, 0, corner.right() == window.right() ? 1 : 0, 1));
        painter.fillPath(outside.subtracted(round), brush);
    }
    painter.restore();
}

bool touchesLowerCorner(const QRectF& area, const QRectF& window)
{
    return area.intersects(leftCorner(window)) || area.intersects(rightCorner(window));
}

} // namespace velmora
