#include "canvas_world.h"

#include <QPixmap>
#include <QScreen>

#include <cstdlib>

namespace velmora::testing
{

QImage CanvasWorld::screen()
{
    settle();
    return canvas.screen()->grabWindow(canvas.winId()).toImage();
}

QImage CanvasWorld::freshPicture()
{
    CanvasView fresh(state, themes, world.arrows, world.pictures);
    fresh.resize(canvas.size());
    fresh.setZoom(canvas.zoom());
    return fresh.grab().toImage();
}

int differences(const QImage& a, const QImage& b)
{
    if (a.size() != b.size())
        return -1;
    if (a.convertToFormat(QImage::Format_RGB32) == b.convertToFormat(QImage::Format_RGB32))
        return 0;
    constexpr int visible = 8;
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            if (std::abs(qRed(p) - qRed(q)) > visible || std::abs(qGreen(p) - qGreen(q)) > visible ||
                std::abs(qBlue(p) - qBlue(q)) > visible)
                ++count;
        }
    }
    return count;
}

} // namespace velmora::testing
