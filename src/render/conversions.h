#pragma once

#include "model/color.h"
#include "model/enums.h"
#include "model/overlays.h"

#include <QColor>
#include <QFont>
#include <QString>

/// The model's plain values in the drawing library's terms, and back.
namespace velmora
{

/// The sRGB colour; components outside 0..1 are brought to the nearer end, a NaN becomes 0.
QColor toQColor(const CodableColor& color);
/// The colour's sRGB components, whatever model (HSV, CMYK, …) it was made in.
CodableColor toCodableColor(const QColor& color);

/// Left and right stay where they are in right-to-left text.
Qt::Alignment toQtAlignment(TextHorizontalAlignment alignment);
/// The desktop platform's number of an alignment: left 0, right 1, center 2, justified 3.
int platformAlignment(TextHorizontalAlignment alignment);

/// The overlay's font for controls and the font panel, in points, never smaller than 8; the stand-in when no font of
/// that name exists.
QFont makeFont(const DMGTextOverlay& overlay);
/// The family that the overlay's font name resolves to, and the size: "Helvetica Neue - 12 pt".
QString fontDisplayName(const DMGTextOverlay& overlay);

} // namespace velmora
