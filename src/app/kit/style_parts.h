#pragma once

#include "app/kit/look.h"

#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOptionButton;
class QStyleOptionComboBox;
class QStyleOptionMenuItem;
class QStyleOptionSlider;
class QStyleOptionSpinBox;
class QStyleOptionViewItem;

/// How VelmoraStyle draws each kind of control. `rect` and option rectangles are device-independent pixels.
namespace velmora::parts
{

// style_buttons.cpp
/// `hover` is how strongly the mouse shows on it, 0 to 1.
void drawButtonGround(QPainter& painter, const QStyleOptionButton& option, double hover, const Look& look, bool large);
void drawButtonLabel(QPainter& painter, const QStyleOptionButton& option, const Look& look, bool large);
QSize buttonSize(const QStyleOptionButton& option, const Look& look, bool large);
void drawCheckBox(QPainter& painter, const QRect& box, QStyle::State state, const Look& look);
void drawRadioButton(QPainter& painter, const QRect& box, QStyle::State state, const Look& look);
void drawPopUpButton(QPainter& painter, const QStyleOptionComboBox& option, double hover, const Look& look);
void drawPopUpLabel(QPainter& painter, const QStyleOptionComboBox& option, const QRect& rect, const Look& look);

// style_fields.cpp
void drawField(QPainter& painter, const QRectF& rect, QStyle::State state, bool wrong, double radius, const Look& look);
void drawSpinBox(QPainter& painter, const QStyleOptionSpinBox& option, bool wrong, const Look& look);
QRect spinBoxPart(const QStyleOptionSpinBox& option, QStyle::SubControl part, const Look& look);
/// The track with its filled part (`fraction` 0 to 1 from the left) and the knob, in a horizontal slider's rectangle.
void drawSlider(QPainter& painter, const QRectF& rect, double fraction, bool enabled, bool focused, const Look& look);
void drawProgress(QPainter& painter, const QRectF& rect, double fraction, const QColor& fill, const Look& look);

// style_menus.cpp
void drawMenuPanel(QPainter& painter, const QRect& rect, bool rounded, const Look& look);
void drawMenuItem(QPainter& painter, const QStyleOptionMenuItem& option, const Look& look);
QSize menuItemSize(const QStyleOptionMenuItem& option, const Look& look);
void drawMenuBarItem(QPainter& painter, const QStyleOptionMenuItem& option, const Look& look);
void drawMenuBarGround(QPainter& painter, const QRect& rect, const Look& look);

// style_views.cpp
void drawScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& handle, const Look& look);
void drawItemGround(QPainter& painter, const QStyleOptionViewItem& option, const Look& look);

} // namespace velmora::parts
