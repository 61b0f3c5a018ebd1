#pragma once

#include "canvas/canvas_pictures.h"
#include "canvas/geometry/box_hit_test.h"
#include "model/project.h"
#include "render/background_renderer.h"

#include <QPainter>

#include <vector>

namespace velmora
{

/// The image overlays as they are edited: drawn live, not burnt into the background.
namespace OverlayLayer
{

/// The boxes in drawing order, for hit tests.
std::vector<OverlayBox> boxes(const DMGProject& project);
/// Draws the overlay's picture stretched into its box, when it has one. The painter's origin is the corner of the
/// content area, its unit a view point, its clip what is to be drawn.
void draw(QPainter& painter, const DMGOverlayImage& overlay, double scale, double ratio, CanvasPictures& pictures,
          const RenderContext& context);

} // namespace OverlayLayer
} // namespace velmora
