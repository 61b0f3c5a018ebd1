#include "canvas/background_layer.h"

#include "render/conversions.h"

#include <QLinearGradient>

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

// A larger reduced copy would cost more than drawing what is seen from the original.
constexpr double largestReduced = 12e6; // pixels

/// What the renderer reads, with the picture's offsets in the units of the drawing.
DMGProject backgroundOf(const DMGProject& project, double scale)
{
    DMGProject copy;
    copy.windowWidth = project.windowWidth;
    copy.windowHeight = project.windowHeight;
    copy.backgroundKind = project.backgroundKind;
    copy.backgroundColor = project.backgroundColor;
    copy.gradientStart = project.gradientStart;
    copy.gradientEnd = project.gradientEnd;
    copy.gradientAngle = project.gradientAngle;
    copy.backgroundImagePath = project.backgroundImagePath;
    copy.backgroundImageFit = project.backgroundImageFit;
    copy.backgroundImageScale = project.backgroundImageScale;
    copy.backgroundImageOffsetX = project.backgroundImageOffsetX * scale;
    copy.backgroundImageOffsetY = project.backgroundImageOffsetY * scale;
    copy.overlayImages = project.overlayImages;
    copy.textOverlays = project.textOverlays;
    return copy;
}

/// The background picture, reduced where that makes drawing it again cheap.
PicturePtr backgroundPicture(const DMGProject& project, QSizeF size, double ratio, CanvasPictures& pictures)
{
    if (project.backgroundKind != BackgroundKind::image || project.backgroundImagePath.empty())
        return nullptr;
    PicturePtr picture = pictures.picture(project.backgroundImagePath);
    if (!picture)
        return nullptr;
    const QRectF place = BackgroundRenderer::imageDrawRect(project, *picture, QRectF(QPointF(0, 0), size));
    const double width = 2 * std::ceil(place.width() * ratio);
    const double height = 2 * std::ceil(place.height() * ratio);
    if (!(width * height <= largestReduced))
        return picture;
    return pictures.reduced(picture, {static_cast<int>(width), static_cast<int>(height)});
}

QLinearGradient previewGradient(const DMGProject& project, const QRectF& content)
{
    const auto [start, end] = BackgroundRenderer::gradientUnitPoints(project.gradientAngle);
    const auto in = [&content](QPointF unit) {
        return QPointF(content.x() + unit.x() * content.width(), content.y() + unit.y() * content.height());
    };
    QLinearGradient gradient(in(start), in(end));
    gradient.setColorAt(0, toQColor(project.gradientStart));
    gradient.setColorAt(1, toQColor(project.gradientEnd));
    return gradient;
}

} // namespace

void drawBackgroundLayer(QPainter& painter, const DMGProject& project, BackgroundShown shown, const QRectF& content,
                         double scale, double ratio, CanvasPictures& pictures, const RenderContext& context)
{
    const bool baked = shown == BackgroundShown::baked;
    const bool hasPicture = project.backgroundKind == BackgroundKind::image && !project.backgroundImagePath.empty();
    painter.save();
    painter.setClipRect(content, Qt::IntersectClip);
    if (baked || hasPicture) {
        const QSizeF size(std::max(content.width(), 1.0), std::max(content.height(), 1.0));
        const DMGProject copy = backgroundOf(project, scale);
        RenderContext own{context.arrows, context.cache, {}, nullptr};
        own.background = backgroundPicture(copy, size, ratio, pictures);
        painter.translate(content.topLeft());
        BackgroundRenderer::draw(painter, copy, size, baked, 0, own);
    } else if (project.backgroundKind == BackgroundKind::gradient) {
        painter.fillRect(content, previewGradient(project, content));
    } else {
        painter.fillRect(content, toQColor(project.backgroundColor));
    }
    painter.restore();
}

} // namespace velmora
