#pragma once

#include "app/theme/faded.h"

#include <QColor>
#include <QFont>
#include <QPainterPath>
#include <QPen>
#include <QRectF>
#include <QString>

class QPainter;

namespace velmora
{

struct Look;
struct ThemePalette;

/// The opaque colour that shows when `over` is laid over the opaque `under`.
QColor laidOver(const QColor& under, const QColor& over);
/// The ground of a pressed (`strength` 1) or hovered (0.5) filled control: towards black under white ink, else white.
QColor pressedFill(const Look& look, double strength);

/// A rectangle moved to whole device pixels of the painter.
QRectF onDevicePixels(const QPainter& painter, const QRectF& rect);

/// A rounded box with a border of one point inside its edge. Either colour may be invalid: it is left out.
void drawBox(QPainter& painter, const QRectF& rect, double radius, const QColor& fill, const QColor& border);

/// A line of one point along the top edge (`y`) or left edge (`x`) that it is given, on whole device pixels.
void drawHorizontalHairline(QPainter& painter, double left, double right, double y, const QColor& color);
void drawVerticalHairline(QPainter& painter, double x, double top, double bottom, const QColor& color);

/// The focus ring: 2 points wide, outside `rect`; `gap` leaves one point of the ground between them.
void drawFocusRing(QPainter& painter, const QRectF& rect, double radius, bool gap, const Look& look);

/// Signs of controls. A chevron is half as tall as wide, without the round ends of its line.
void drawChevron(QPainter& painter, const QPointF& centre, double width, bool up, const QColor& color);
void drawTick(QPainter& painter, const QRectF& box, const QColor& color);
/// The tick on a round accent ground that marks what is chosen or done.
void drawAccentTick(QPainter& painter, const QRectF& box, const Look& look);
/// The ring within the edge of a card or tile that is chosen, 2 points wide.
void drawChosenRing(QPainter& painter, const QRectF& rect, double radius, const Look& look);

/// A busy ring in `box`. `turn` (0 to 1) is how far it has turned; reduced motion draws three still dots.
void drawBusyRing(QPainter& painter, const QRectF& box, double turn, const QColor& color, const Look& look);

/// The gradient of toolbar, tab column and settings window, from the top of `rect` to its bottom.
void drawChrome(QPainter& painter, const QRectF& rect, const ThemePalette& palette);

/// The squares behind a transparent picture.
void drawChecker(QPainter& painter, const QRectF& rect, double square, const QColor& first, const QColor& second);
/// The squares behind a colour that is not opaque, light in every theme.
void drawColorChecker(QPainter& painter, const QRectF& rect, double square);

/// One line of text in `rect`, elided at its end when it is too long.
void drawLine(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, const QString& text, const QFont& font,
              const QColor& color);

/// The soft shadow of a rounded box, cached by its shape. All lengths in the painter's units.
struct Shadow {
    double blur = 0; ///< the width of the soft edge
    double offset = 0;
    QColor color{};
};
void drawShadow(QPainter& painter, const QRectF& box, double radius, const Shadow& shadow);

} // namespace velmora
