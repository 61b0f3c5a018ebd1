#include "render/background_renderer.h"

#include "render/conversions.h"
#include "render/overlay_drawing.h"
#include "render/picture_drawing.h"

#include <QLinearGradient>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmora::BackgroundRenderer
{
namespace
{

// What the raster engine can address, and a bound on the memory of one drawing.
constexpr int longestSide = 32768;
constexpr qint64 largestArea = 256'000'000;
constexpr double largestScale = 1000; // pixels a point

constexpr double radians(double degrees)
{
    return degrees * std::numbers::pi / 180;
}

/// Between the y-up space of the project's picture offsets and overlay rectangles and the painter's y-down space.
QRectF flipped(const QRectF& rect, double height)
{
    return {rect.x(), height - rect.y() - rect.height(), rect.width(), rect.height()};
}

/// A transparent bitmap; null when the size is not positive, or absurd.
QImage bitmap(double width, double height)
{
    if (!(width >= 1 && height >= 1 && width <= longestSide && height <= longestSide && width * height <= largestArea))
        return {};
    QImage image(static_cast<int>(width), static_cast<int>(height), QImage::Format_ARGB32_Premultiplied);
    if (!image.isNull())
        image.fill(Qt::transparent);
    return image;
}

void fillGradient(QPainter& painter, const DMGProject& project, const QRectF& target)
{
    if (!std::isfinite(project.gradientAngle))
        return;
    const double angle = radians(std::fmod(project.gradientAngle, 360));
    const QPointF direction(std::cos(angle), -std::sin(angle));
    // Half the length of the rectangle's projection on the direction.
    const double reach = (std::abs(direction.x()) * target.width() + std::abs(direction.y()) * target.height()) / 2;
    QLinearGradient gradient(target.center() - direction * reach, target.center() + direction * reach);
    gradient.setInterpolationMode(QGradient::ComponentInterpolation);
    gradient.setColorAt(0, toQColor(project.gradientStart));
    gradient.setColorAt(1, toQColor(project.gradientEnd));
    painter.fillRect(target, gradient);
}

void drawBackgroundPicture(QPainter& painter, const DMGProject& project, const QRectF& target,
                           const RenderContext& context)
{
    const QColor color = toQColor(project.backgroundColor);
    PicturePtr picture = context.background;
    if (project.backgroundImagePath.empty()) {
        warn(context, "No background picture is chosen; the background color is used instead.");
        picture = nullptr;
    } else if (!picture) {
        picture = readPicture(QString::fromStdString(project.backgroundImagePath));
        if (!picture)
            warn(context, "The background picture “" + project.backgroundImagePath +
                              "” cannot be read; the background color is used instead.");
    }
    if (!picture || project.backgroundImageFit == BackgroundImageFit::fit)
        painter.fillRect(target, color);
    if (!picture)
        return;
    const QRectF place = flipped(imageDrawRect(project, *picture, target), target.height());
    if (!drawPicture(painter, picture->pixels, place, target)) {
        painter.fillRect(target, color);
        warn(context,
             "The background picture has an impossible scale or offset; the background color is used instead.");
    }
}

void drawBackground(QPainter& painter, const DMGProject& project, const QRectF& target, const RenderContext& context)
{
    switch (project.backgroundKind) {
    case BackgroundKind::gradient:
        fillGradient(painter, project, target);
        break;
    case BackgroundKind::color:
        painter.fillRect(target, toQColor(project.backgroundColor));
        break;
    case BackgroundKind::image:
        drawBackgroundPicture(painter, project, target, context);
        break;
    }
}

} // namespace

std::optional<QByteArray> pngData(const DMGProject& project, int pixelWidth, int pixelHeight,
                                  const RenderContext& context)
{
    QImage image = bitmap(pixelWidth, pixelHeight);
    if (image.isNull())
        return std::nullopt;
    const Size content = project.contentSize();
    const double scaleX = pixelWidth / content.width;
    const double scaleY = pixelHeight / content.height;
    int dpi = 72;
    const auto sensible = [](double scale) { return scale > 1 / largestScale && scale < largestScale; };
    // Without a content area there is nothing to draw in: the picture stays transparent.
    if (sensible(scaleX) && sensible(scaleY)) {
        QPainter painter(&image);
        painter.scale(scaleX, scaleY);
        draw(painter, project, {content.width, content.height}, true, 0, context);
        painter.end();
        dpi = std::max(1, static_cast<int>(std::lround(72 * scaleX)));
    }
    QByteArray png = encodePng(image, dpi);
    return png.isEmpty() ? std::nullopt : std::optional(std::move(png));
}

QImage image(const DMGProject& project, QSizeF size, bool includeOverlays, double scale, const RenderContext& context)
{
    QImage result = bitmap(std::ceil(size.width() * scale), std::ceil(size.height() * scale));
    if (result.isNull() || scale > largestScale)
        return {};
    result.setDevicePixelRatio(scale);
    QPainter painter(&result);
    draw(painter, project, size, includeOverlays, 0, context);
    painter.end();
    return result;
}

void draw(QPainter& painter, const DMGProject& project, QSizeF size, bool includeOverlays, double overlayYOffset,
          const RenderContext& context)
{
    const QRectF target(QPointF(0, 0), size);
    painter.save();
    painter.setClipRect(target, Qt::IntersectClip);
    drawBackground(painter, project, target, context);
    if (includeOverlays) {
        drawImageOverlays(painter, project, size, overlayYOffset, context);
        drawTextOverlays(painter, project, size, overlayYOffset, context);
    }
    painter.restore();
}

QRectF imageDrawRect(const DMGProject& project, const Picture& picture, const QRectF& target)
{
    const double width = picture.pixels.isNull() ? std::trunc(picture.pointSize.width()) : picture.pixels.width();
    const double height = picture.pixels.isNull() ? std::trunc(picture.pointSize.height()) : picture.pixels.height();
    if (width <= 0 || height <= 0 || target.width() <= 0 || target.height() <= 0)
        return target;
    const QPointF offset(project.backgroundImageOffsetX, project.backgroundImageOffsetY);
    if (project.backgroundImageFit == BackgroundImageFit::stretch)
        return target.translated(offset);
    constexpr double smallestScale = 0.05;
    const double across = target.width() / width;
    const double down = target.height() / height;
    const bool fit = project.backgroundImageFit == BackgroundImageFit::fit;
    // In this order a scale that is no number counts as the smallest.
    const double factor =
        std::max(smallestScale, project.backgroundImageScale) * (fit ? std::min(across, down) : std::max(across, down));
    QRectF rect(0, 0, width * factor, height * factor);
    rect.moveCenter(target.center());
    return rect.translated(offset);
}

std::pair<QPointF, QPointF> gradientUnitPoints(double angle)
{
    const double theta = radians(angle - 90);
    const QPointF half(0.5 * std::cos(theta), -0.5 * std::sin(theta));
    const QPointF centre(0.5, 0.5);
    return {centre - half, centre + half};
}

QRectF overlayContentRect(const DMGOverlayImage& overlay, QSizeF /*contentSize*/, double yOffset, double scaleX,
                          double scaleY, const QRectF& target)
{
    const double height = overlay.height * scaleY;
    return {overlay.x * scaleX, target.height() - (overlay.y + yOffset) * scaleY - height, overlay.width * scaleX,
            height};
}

} // namespace velmora::BackgroundRenderer
