#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QString>

namespace velmora
{

/// The corner radius of the drawn window.
inline constexpr double windowRadius = 8;

/// The shadow below the drawn window, blurred once and stretched to every size.
class WindowShadow
{
public:
    void draw(QPainter& painter, const QRectF& window, double ratio, bool dark);

private:
    QImage m_picture{};
    double m_ratio = 0;
    bool m_dark = false;
    double m_reach = 0; ///< how far the picture stands out of the window, points
};

/// The title bar of the drawn window with its three circles. It is light in every theme: it is what the customer sees.
void drawTitleBar(QPainter& painter, const QRectF& bar, const QString& title);
/// The line around the drawn window; wide and in the accent while files are dragged over it.
void drawWindowOutline(QPainter& painter, const QRectF& window, double ratio, bool dropTarget, const QColor& accent);

/// Rounds the lower corners of what was drawn in the content area, by drawing what lies around the window there again.
/// Clipping would leave jagged edges. `surroundings` covers the widget.
void roundLowerCorners(QPainter& painter, const QRectF& window, const QImage& surroundings);
/// Whether an area reaches into a lower corner.
bool touchesLowerCorner(const QRectF& area, const QRectF& window);

} // namespace velmora
