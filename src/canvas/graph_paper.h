#pragma once

#include "app/theme/app_theme.h"

#include <QPainter>
#include <QSizeF>

namespace velmora
{

/// Fills the canvas region with the theme's graph paper, never scaled; its lines fall on device pixels.
void drawGraphPaper(QPainter& painter, QSizeF region, double ratio, const ThemePalette& palette);

} // namespace velmora
