#include "canvas/graph_paper.h"

#include "app/theme/faded.h"

#include <QRect>

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

struct Ruling {
    double distance;
    double width;
    QColor color;
};

/// Lines in device pixels: the middle one as strong as the line covers it, and its neighbours when it is wider. Much
/// faster than antialiased strokes of the same look, and paper is drawn at every step of a scroll.
void drawRuling(QPainter& painter, QSize pixels, double ratio, const Ruling& ruling)
{
    const double width = ruling.width * ratio;
    const QColor middle = faded(ruling.color, std::min(width, 1.0));
    const QColor beside = faded(ruling.color, std::max(0.0, (width - 1) / 2));
    const bool wide = width > 1;
    const auto draw = [&](int limit, const auto& lineAt) {
        for (int i = 0; static_cast<int>(i * ruling.distance * ratio) < limit; ++i) {
            const int at = static_cast<int>(std::floor(i * ruling.distance * ratio));
            painter.fillRect(lineAt(at), middle);
            if (wide) {
                painter.fillRect(lineAt(at - 1), beside);
                painter.fillRect(lineAt(at + 1), beside);
            }
        }
    };
    draw(pixels.width(), [&](int x) { return QRect(x, 0, 1, pixels.height()); });
    draw(pixels.height(), [&](int y) { return QRect(0, y, pixels.width(), 1); });
}

} // namespace

void drawGraphPaper(QPainter& painter, QSizeF region, double ratio, const ThemePalette& palette)
{
    const QSize pixels(static_cast<int>(std::ceil(region.width() * ratio)),
                       static_cast<int>(std::ceil(region.height() * ratio)));
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(QRect(QPoint(0, 0), pixels), palette.canvasBackground);
    drawRuling(painter, pixels, ratio, {20, 0.5, palette.canvasGridMinor});
    drawRuling(painter, pixels, ratio, {100, 0.8, palette.canvasGridMajor});
    painter.restore();
}

} // namespace velmora
