// The shapes of the drawn arrows, in a space whose y axis points up.

#include "render/built_in_arrows.h"
#include "render/conversions.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QPen>

#include <initializer_list>

namespace velmora
{
namespace
{

constexpr double w = 440;
constexpr double h = 172;

constexpr CodableColor arrowBlue{0.1, 0.42, 0.92, 1};
constexpr CodableColor curvedBlue{0.12, 0.45, 0.95, 1};
constexpr CodableColor backBlue{0.05, 0.22, 0.55, 1};
constexpr CodableColor lightBlue{0.45, 0.72, 1.0, 1};
constexpr CodableColor deepBlue{0.08, 0.38, 0.88, 1};
constexpr CodableColor white{1, 1, 1, 1};
constexpr CodableColor subtleGray{0.72, 0.72, 0.72, 0.95};

QPainterPath polygon(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    path.closeSubpath();
    path.setFillRule(Qt::WindingFill);
    return path;
}

QPainterPath boldHead()
{
    return polygon({{0.62 * w, 0.18 * h}, {w - 24, h / 2}, {0.62 * w, 0.82 * h}});
}

QPainterPath chevron()
{
    QPainterPath path;
    path.moveTo(40, h / 2);
    path.lineTo(w - 70, h / 2);
    path.moveTo(w - 110, 0.22 * h);
    path.lineTo(w - 36, h / 2);
    path.lineTo(w - 110, 0.78 * h);
    return path;
}

void drawBold(QPainter& painter, const CodableColor& color)
{
    painter.fillPath(boldHead(), toQColor(color));
}

void drawCurved(QPainter& painter)
{
    QPainterPath path;
    path.moveTo(20, 0.56 * h);
    path.cubicTo(0.18 * w, 0.08 * h, 0.38 * w, 0.92 * h, 0.55 * w, 0.56 * h);
    path.lineTo(0.55 * w, 0.34 * h);
    path.lineTo(w - 22, h / 2);
    path.lineTo(0.55 * w, 0.66 * h);
    path.lineTo(0.55 * w, 0.56 * h);
    path.closeSubpath();
    path.setFillRule(Qt::WindingFill);
    painter.fillPath(path, toQColor(curvedBlue));
}

void draw3D(QPainter& painter)
{
    painter.fillPath(polygon({{0.62 * w, 0.18 * h}, {w - 18, h / 2 - 6}, {0.62 * w, 0.86 * h}}), toQColor(backBlue));
    QLinearGradient gradient(0, 0.18 * h, 0, 0.82 * h);
    gradient.setColorAt(0, toQColor(lightBlue));
    gradient.setColorAt(1, toQColor(deepBlue));
    painter.fillPath(boldHead(), gradient);
}

void drawChevron(QPainter& painter, double lineWidth)
{
    painter.strokePath(chevron(), QPen(toQColor(arrowBlue), lineWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
}

void drawOutline(QPainter& painter)
{
    const QPainterPath path =
        polygon({{24, h / 2}, {0.62 * w, h / 2}, {0.62 * w, 0.18 * h}, {w - 24, h / 2}, {0.62 * w, 0.82 * h}});
    painter.strokePath(path, QPen(toQColor(arrowBlue), 12, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
}

struct Drawing {
    std::string_view id;
    void (*draw)(QPainter&);
};
constexpr Drawing drawings[] = {
    {"arrow_blue_curved", drawCurved},
    {"arrow_blue_bold", [](QPainter& painter) { drawBold(painter, arrowBlue); }},
    {"arrow_blue_chevron", [](QPainter& painter) { drawChevron(painter, 26); }},
    {"arrow_blue_3d", draw3D},
    {"arrow_white_bold", [](QPainter& painter) { drawBold(painter, white); }},
    {"arrow_gray_subtle", [](QPainter& painter) { drawBold(painter, subtleGray); }},
    {"arrow_blue_outline", drawOutline},
    {"arrow_blue_slim", [](QPainter& painter) { drawChevron(painter, 14); }},
};

} // namespace

QImage BuiltInArrowLibrary::draw(std::string_view id)
{
    for (const Drawing& drawing : drawings) {
        if (drawing.id != id)
            continue;
        QImage image(static_cast<int>(w), static_cast<int>(h), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(0, h);
        painter.scale(1, -1);
        drawing.draw(painter);
        painter.end();
        return image;
    }
    return {};
}

} // namespace velmora
