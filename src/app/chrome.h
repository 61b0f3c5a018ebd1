#pragma once

#include <QRect>

class QPainter;

namespace velmora
{

struct Look;

/// Fills a column of the window's frame (toolbar, settings) with the theme's chrome gradient, from top to bottom.
void paintChrome(QPainter& painter, const QRect& area, const Look& look);

} // namespace velmora
