#include "render/overlay_drawing.h"

#include "render/conversions.h"
#include "render/fonts.h"
#include "render/overlay_images.h"
#include "render/picture_drawing.h"
#include "render/text_drawing.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <numbers>

namespace velmora
{
namespace
{

bool reasonable(std::initializer_list<double> lengths)
{
    constexpr double farthest = 1e6; // points; drawing beyond overflows the engine's fixed-point numbers
    return std::all_of(lengths.begin(), lengths.end(),
                       [](double length) { return std::isfinite(length) && std::abs(length) <= farthest; });
}

/// Content points to points of the target.
struct Scale {
    double x = 1;
    double y = 1;
};

/// Nothing when the project has no content area.
std::optional<Scale> scaleTo(QSizeF size, const DMGProject& project)
{
    const Size content = project.contentSize();
    const Scale scale{size.width() / content.width, size.height() / content.height};
    if (!(content.width > 0) || !(content.height > 0) || !reasonable({scale.x, scale.y}))
        return std::nullopt;
    return scale;
}

std::string inQuotes(const std::string& text)
{
    return "“" + text + "”";
}

std::string nameOf(const DMGOverlayImage& overlay)
{
    return overlay.sourcePath.empty() ? overlay.builtInArrowID.value_or("(no file)") : overlay.sourcePath;
}

double placement(TextVerticalAlignment alignment, double slack)
{
    switch (alignment) {
    case TextVerticalAlignment::top:
        return 0;
    case TextVerticalAlignment::middle:
        return std::max(0.0, slack / 2);
    case TextVerticalAlignment::bottom:
        return std::max(0.0, slack);
    }
    return 0;
}

TextShadow shadowOf(const DMGTextOverlay& overlay, double scale)
{
    CodableColor color = overlay.shadowColor;
    // A shadow is as strong as what casts it.
    color.a = std::min(1.0, std::max(0.0, overlay.shadowOpacity)) * std::clamp(overlay.color.a, 0.0, 1.0);
    const double angle = overlay.shadowAngle * std::numbers::pi / 180;
    const double distance = overlay.shadowOffset * scale;
    // Angles turn counter-clockwise from the right, the painter's y axis points down.
    return {toQColor(color), {distance * std::cos(angle), -distance * std::sin(angle)}, overlay.shadowBlur * scale};
}

void drawCaption(QPainter& painter, const DMGTextOverlay& overlay, Scale scale, QSizeF size, double yOffset,
                 const RenderContext& context)
{
    if (overlay.text.empty())
        return;
    const Fonts::Resolved font = Fonts::resolve(overlay.fontName);
    if (!font.found)
        warn(context, "The font " + inQuotes(overlay.fontName) + " of the caption " + inQuotes(overlay.identifier) +
                          " is not available; " + font.familyName.toStdString() + " is used instead.");
    const double textScale = std::min(scale.x, scale.y);
    const TextBlock text(overlay.text, font, overlay.fontSize * textScale, overlay.width * scale.x,
                         overlay.horizontalAlignment);
    if (text.isCut())
        warn(context, "The caption " + inQuotes(overlay.identifier) + " is too long; its end is left out.");
    const double slack = overlay.height * scale.y - text.height();
    const QPointF topLeft(overlay.x * scale.x,
                          (overlay.y + yOffset) * scale.y + placement(overlay.verticalAlignment, slack));
    if (overlay.shadowEnabled) {
        const TextShadow shadow = shadowOf(overlay, textScale);
        if (reasonable({shadow.offset.x(), shadow.offset.y(), shadow.blur}))
            text.drawShadow(painter, topLeft, shadow, visiblePart(painter, QRectF(QPointF(0, 0), size)));
    }
    text.draw(painter, topLeft, toQColor(overlay.color));
}

} // namespace

void warn(const RenderContext& context, const std::string& sentence)
{
    if (context.warnings &&
        std::find(context.warnings->begin(), context.warnings->end(), sentence) == context.warnings->end())
        context.warnings->push_back(sentence);
}

void drawImageOverlays(QPainter& painter, const DMGProject& project, QSizeF size, double overlayYOffset,
                       const RenderContext& context)
{
    const auto scale = scaleTo(size, project);
    if (!scale)
        return;
    const QRectF target(QPointF(0, 0), size);
    const QSizeF content(project.contentSize().width, project.contentSize().height);
    for (const DMGOverlayImage& overlay : project.overlayImages) {
        const PicturePtr picture = OverlayImageResolver::load(overlay, context.arrows, context.cache);
        if (!picture) {
            warn(context, "The overlay picture " + inQuotes(nameOf(overlay)) + " cannot be read; it is left out.");
            continue;
        }
        const QRectF up =
            BackgroundRenderer::overlayContentRect(overlay, content, overlayYOffset, scale->x, scale->y, target);
        const QRectF down(up.x(), size.height() - up.y() - up.height(), up.width(), up.height());
        if (!drawPicture(painter, picture->pixels, down, target))
            warn(context, "The overlay picture " + inQuotes(nameOf(overlay)) +
                              " has an impossible place or size; it is left out.");
    }
}

void drawTextOverlays(QPainter& painter, const DMGProject& project, QSizeF size, double overlayYOffset,
                      const RenderContext& context)
{
    const auto scale = scaleTo(size, project);
    if (!scale)
        return;
    for (const DMGTextOverlay& overlay : project.textOverlays) {
        if (reasonable({overlay.x * scale->x, (overlay.y + overlayYOffset) * scale->y, overlay.width * scale->x,
                        overlay.height * scale->y}))
            drawCaption(painter, overlay, *scale, size, overlayYOffset, context);
        else
            warn(context,
                 "The caption " + inQuotes(overlay.identifier) + " has an impossible place or size; it is left out.");
    }
}

} // namespace velmora
