#include "canvas/text_layer.h"

#include "canvas/qt_rect.h"
#include "render/overlay_drawing.h"
#include "render/text_drawing.h"

#include <algorithm>
#include <cmath>

namespace velmora::TextLayer
{

std::vector<OverlayBox> boxes(const DMGProject& project)
{
    std::vector<OverlayBox> boxes;
    for (const DMGTextOverlay& text : project.textOverlays)
        boxes.push_back({text.id, text.bounds()});
    return boxes;
}

void draw(QPainter& painter, const DMGTextOverlay& text, const DMGProject& project, double scale,
          const RenderContext& context)
{
    DMGProject alone;
    alone.windowWidth = project.windowWidth;
    alone.windowHeight = project.windowHeight;
    alone.textOverlays = {text};
    const Size content = project.contentSize();
    drawTextOverlays(painter, alone, {content.width * scale, content.height * scale}, 0, context);
}

QRectF inkArea(const DMGTextOverlay& text, double scale)
{
    const double fontSize = std::max(text.fontSize * scale, TextBlock::smallestSize);
    const TextBlock block(text.text, Fonts::resolve(text.fontName), fontSize, text.width * scale,
                          text.horizontalAlignment);
    const Rect box = BoxGeometry::viewRect(text.bounds(), scale);
    QRectF ink = toQRectF({box.x, box.y, box.width, std::max(box.height, block.height())});
    ink.adjust(-fontSize, -fontSize, fontSize, fontSize); // slanted and swashed glyphs
    if (text.shadowEnabled) {
        const double reach = (std::abs(text.shadowOffset) + 2 * std::max(text.shadowBlur, 0.0)) * scale + 2;
        ink.adjust(-reach, -reach, reach, reach);
    }
    return ink;
}

} // namespace velmora::TextLayer
