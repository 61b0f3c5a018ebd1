#include "canvas/graph_paper.h"

#include <QLineF>
#include <QPen>

#include <cmath>
#include <vector>

namespace velmora
{
namespace
{

struct Ruling {
    double distance;
    double width;
    QColor color;
};

void drawRuling(QPainter& painter, QSizeF region, double ratio, const Ruling& ruling)
{
    std::vector<QLineF> lines;
    const auto onPixel = [ratio](double value) { return (std::floor(value * ratio) + 0.5) / ratio; };
    for (double x = 0; x <= region.width(); x += ruling.distance)
        lines.emplace_back(onPixel(x), 0, onPixel(x), region.height());
    for (double y = 0; y <= region.height(); y += ruling.distance)
        lines.emplace_back(0, onPixel(y), region.width(), onPixel(y));
    QPen pen(ruling.color, ruling.width);
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    painter.drawLines(lines.data(), static_cast<int>(lines.size()));
}

} // namespace

void drawGraphPaper(QPainter& painter, QSizeF region, double ratio, const ThemePalette& palette)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF(QPointF(0, 0), region), palette.canvasBackground);
    drawRuling(painter, region, ratio, {20, 0.5, palette.canvasGridMinor});
    drawRuling(painter, region, ratio, {100, 0.8, palette.canvasGridMajor});
    painter.restore();
}

} // namespace velmora
