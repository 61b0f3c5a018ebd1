#pragma once

#include "canvas/canvas_pictures.h"
#include "model/project.h"
#include "render/background_renderer.h"

#include <QPainter>
#include <QRectF>

namespace velmora
{

/// How the window's background is shown.
enum class BackgroundShown {
    baked, ///< with the overlays burnt in, as the image will show it
    bare,  ///< alone, the overlays lie above it to be edited
};

/// Draws the background into `content`, as far as the painter's clip lets it through: a zoomed window is far larger
/// than what is seen of it. `ratio` is the device's pixels a painter's unit.
void drawBackgroundLayer(QPainter& painter, const DMGProject& project, BackgroundShown shown, const QRectF& content,
                         double scale, double ratio, CanvasPictures& pictures, const RenderContext& context);

} // namespace velmora
