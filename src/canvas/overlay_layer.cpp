#include "canvas/overlay_layer.h"

#include "canvas/qt_rect.h"
#include "render/overlay_images.h"
#include "render/picture_drawing.h"

#include <algorithm>
#include <cmath>

namespace velmora::OverlayLayer
{

std::vector<OverlayBox> boxes(const DMGProject& project)
{
    std::vector<OverlayBox> boxes;
    for (const DMGOverlayImage& overlay : project.overlayImages)
        boxes.push_back({overlay.id, overlay.bounds()});
    return boxes;
}

void draw(QPainter& painter, const DMGOverlayImage& overlay, double scale, double ratio, CanvasPictures& pictures,
          const RenderContext& context)
{
    const PicturePtr picture = pictures.overlay(overlay, context);
    if (!picture)
        return;
    const Rect box = BoxGeometry::viewRect(overlay.bounds(), scale);
    const QRectF rect = toQRectF(box);
    // Twice the size that is shown: the painter halves it well wherever the box lies between pixels.
    const auto pixels = [ratio](double length) {
        return 2 * static_cast<int>(std::ceil(std::min(length, 1e5) * ratio));
    };
    const PicturePtr shown = pictures.reduced(picture, {pixels(box.width), pixels(box.height)});
    drawPicture(painter, shown->pixels, rect, rect);
}

} // namespace velmora::OverlayLayer
