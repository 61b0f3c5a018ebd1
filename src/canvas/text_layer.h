#pragma once

#include "canvas/geometry/box_hit_test.h"
#include "model/project.h"
#include "render/background_renderer.h"

#include <QPainter>
#include <QRectF>

#include <vector>

namespace velmora
{

/// The captions as they are edited.
namespace TextLayer
{

std::vector<OverlayBox> boxes(const DMGProject& project);
/// Draws the caption with the routine of the built picture.
void draw(QPainter& painter, const DMGTextOverlay& text, const DMGProject& project, double scale,
          const RenderContext& context);
/// Everything that the caption may touch, its shadow and what runs out of its box included; view points.
QRectF inkArea(const DMGTextOverlay& text, double scale);

} // namespace TextLayer
} // namespace velmora
