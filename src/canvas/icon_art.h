#pragma once

#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace velmora
{

/// The icons that are drawn for what has none of its own.
enum class IconArt { document, folder, applicationsFolder, application };

/// Draws the icon into a square, sharp at any size. A document shows its kind, a short word such as "PDF", when it has
/// one.
void drawIconArt(QPainter& painter, IconArt art, const QRectF& square, const QString& kind = {});

/// The side of the sign of a warning, points.
inline constexpr double warningBadgeSize = 16;
/// The sign of a warning.
QImage warningBadge(double ratio);

} // namespace velmora
