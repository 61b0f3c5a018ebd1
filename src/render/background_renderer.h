#pragma once

#include "model/project.h"
#include "render/picture.h"

#include <QByteArray>
#include <QImage>
#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace velmora
{

class BuiltInArrowLibrary;
class OverlayImageCache;

/// What a drawing needs beside the project. References are kept by the caller.
struct RenderContext {
    const BuiltInArrowLibrary& arrows;
    OverlayImageCache& cache;
    /// The background picture when the caller has it decoded already; otherwise it is read from the project's path.
    PicturePtr background{};
    /// When not null, sentences about what was asked for but could not be drawn (pictures, fonts) are appended.
    std::vector<std::string>* warnings = nullptr;
};

/// Draws what the Finder window shows behind its icons: background, image overlays, captions. Stateless.
namespace BackgroundRenderer
{

/// PNG bytes of the whole drawing at exactly this pixel size; the content size in points is the project's. Nothing when
/// the bitmap cannot be made.
std::optional<QByteArray> pngData(const DMGProject& project, int pixelWidth, int pixelHeight,
                                  const RenderContext& context);

/// The drawing as an image of `size` points at `scale` pixels a point.
QImage image(const DMGProject& project, QSizeF size, bool includeOverlays, double scale, const RenderContext& context);

/// The one drawing routine: draws into (0, 0, size) of a painter whose y axis points down and whose unit is a point.
/// `overlayYOffset` is added to every overlay's y, content points.
void draw(QPainter& painter, const DMGProject& project, QSizeF size, bool includeOverlays, double overlayYOffset,
          const RenderContext& context);

/// Where the background picture is drawn in `target`; y-up drawing space, points.
QRectF imageDrawRect(const DMGProject& project, const Picture& picture, const QRectF& target);

/// The canvas preview's gradient: start and end in unit coordinates, origin top left, y down.
std::pair<QPointF, QPointF> gradientUnitPoints(double angle);

/// An overlay's rectangle in the y-up drawing space of a target `target` high.
QRectF overlayContentRect(const DMGOverlayImage& overlay, QSizeF contentSize, double yOffset, double scaleX,
                          double scaleY, const QRectF& target);

} // namespace BackgroundRenderer
} // namespace velmora
