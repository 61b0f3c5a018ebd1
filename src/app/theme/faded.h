#pragma once

#include <QColor>

namespace velmora
{

/// `color` with its opacity multiplied by `strength` (0 to 1).
inline QColor faded(QColor color, double strength)
{
    color.setAlphaF(static_cast<float>(color.alphaF() * strength));
    return color;
}

} // namespace velmora
