#pragma once

#include "render/background_renderer.h"

#include <QPainter>
#include <QSizeF>

namespace velmora
{

/// Draws every image overlay of a project, in order. `size` is the target, in painter's points with y down; the
/// project's content is scaled to it. `overlayYOffset` is added to every y, content points.
void drawImageOverlays(QPainter& painter, const DMGProject& project, QSizeF size, double overlayYOffset,
                       const RenderContext& context);

/// Draws every caption, likewise.
void drawTextOverlays(QPainter& painter, const DMGProject& project, QSizeF size, double overlayYOffset,
                      const RenderContext& context);

/// Appends a sentence to the context's warnings, once.
void warn(const RenderContext& context, const std::string& sentence);

} // namespace velmora
