#include "render/conversions.h"

#include "render/fonts.h"

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

float component(double value)
{
    // The order of the arguments makes 0 of a NaN.
    return static_cast<float>(std::min(1.0, std::max(0.0, value)));
}

} // namespace

QColor toQColor(const CodableColor& color)
{
    return QColor::fromRgbF(component(color.r), component(color.g), component(color.b), component(color.a));
}

CodableColor toCodableColor(const QColor& color)
{
    const QColor rgb = color.toRgb();
    return {double{rgb.redF()}, double{rgb.greenF()}, double{rgb.blueF()}, double{rgb.alphaF()}};
}

Qt::Alignment toQtAlignment(TextHorizontalAlignment alignment)
{
    switch (alignment) {
    case TextHorizontalAlignment::left:
        return Qt::AlignLeft | Qt::AlignAbsolute;
    case TextHorizontalAlignment::center:
        return Qt::AlignHCenter;
    case TextHorizontalAlignment::right:
        return Qt::AlignRight | Qt::AlignAbsolute;
    case TextHorizontalAlignment::justified:
        return Qt::AlignJustify;
    }
    return Qt::AlignLeft;
}

int platformAlignment(TextHorizontalAlignment alignment)
{
    switch (alignment) {
    case TextHorizontalAlignment::left:
        return 0;
    case TextHorizontalAlignment::right:
        return 1;
    case TextHorizontalAlignment::center:
        return 2;
    case TextHorizontalAlignment::justified:
        return 3;
    }
    return 0;
}

QFont makeFont(const DMGTextOverlay& overlay)
{
    constexpr double smallest = 8;
    constexpr double largest = 10000; // beyond that the font engine's fixed-point numbers overflow
    QFont font = Fonts::resolve(overlay.fontName).font;
    font.setPointSizeF(std::min(largest, std::max(smallest, overlay.fontSize)));
    return font;
}

QString fontDisplayName(const DMGTextOverlay& overlay)
{
    // std::round is half away from zero; adding 0 turns -0 into 0.
    const double size = std::isfinite(overlay.fontSize) ? std::round(overlay.fontSize) + 0.0 : 0;
    return Fonts::resolve(overlay.fontName).familyName + QStringLiteral(" - ") + QString::number(size, 'f', 0) +
           QStringLiteral(" pt");
}

} // namespace velmora
