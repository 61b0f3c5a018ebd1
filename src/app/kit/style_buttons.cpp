#include "app/kit/paint.h"
#include "app/kit/style_parts.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyleOption>

#include <cmath>

namespace velmora::parts
{
namespace
{

constexpr double iconGap = 6;

bool isDefault(const QStyleOptionButton& option)
{
    return option.features & QStyleOptionButton::DefaultButton;
}

Type buttonType(bool large, bool filled)
{
    if (large)
        return filled ? Type::bodyStrong : Type::bodyMedium;
    return filled ? Type::controlStrong : Type::controlMedium;
}

/// The ground of an ordinary button in each state; a disabled one has none.
QColor ground(QStyle::State state, double hover, const Look& look)
{
    if (!(state & QStyle::State_Enabled))
        return {};
    if (state & (QStyle::State_Sunken | QStyle::State_On))
        return laidOver(look.roles.button, look.palette.dividerColor);
    return laidOver(look.roles.button, faded(look.palette.hoverFill, hover));
}

} // namespace

void drawButtonGround(QPainter& painter, const QStyleOptionButton& option, double hover, const Look& look, bool large)
{
    const double radius = look.length(large ? 7 : measure::buttonRadius);
    const QStyle::State state = option.state;
    const bool enabled = state & QStyle::State_Enabled;
    if (enabled && isDefault(option)) {
        const double strength = state & QStyle::State_Sunken ? 1 : hover / 2;
        drawBox(painter, option.rect, radius, pressedFill(look, strength), {});
        return;
    }
    if (option.features & QStyleOptionButton::Flat) {
        const bool down = state & (QStyle::State_Sunken | QStyle::State_On);
        if (enabled && (down || hover > 0))
            drawBox(painter, option.rect, radius,
                    down ? look.palette.dividerColor : faded(look.palette.hoverFill, hover), {});
        return;
    }
    drawBox(painter, option.rect, radius, ground(state, hover, look), look.roles.border);
}

void drawButtonLabel(QPainter& painter, const QStyleOptionButton& option, const Look& look, bool large)
{
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool filled = enabled && isDefault(option);
    const QFont font = look.font(buttonType(large, isDefault(option)));
    const QColor ink = filled ? look.roles.onAccent : look.ink(enabled);
    QRectF rect = option.rect;
    if (option.features & QStyleOptionButton::HasMenu) {
        rect.setRight(rect.right() - look.length(14));
        drawChevron(painter, {rect.right() + look.length(4), rect.center().y()}, look.length(7), false, ink);
    }
    const bool hasIcon = !option.icon.isNull();
    const double side = hasIcon ? option.iconSize.width() : 0;
    const double gap = hasIcon && !option.text.isEmpty() ? look.length(iconGap) : 0;
    const double textWidth =
        std::min(std::ceil(QFontMetricsF(font).horizontalAdvance(option.text)), rect.width() - side - gap);
    const double left = rect.left() + (rect.width() - side - gap - textWidth) / 2;
    if (hasIcon) {
        const QRect box(static_cast<int>(std::lround(left)),
                        static_cast<int>(std::lround(rect.center().y() - side / 2)), static_cast<int>(side),
                        static_cast<int>(side));
        option.icon.paint(&painter, box, Qt::AlignCenter, enabled ? QIcon::Normal : QIcon::Disabled);
    }
    const QRectF textRect(left + side + gap, rect.top(), textWidth, rect.height());
    painter.setFont(font);
    painter.setPen(ink);
    const QString text = QFontMetricsF(font).elidedText(option.text, Qt::ElideRight, textWidth + 1);
    const bool underline = option.state & QStyle::State_KeyboardFocusChange;
    painter.drawText(textRect,
                     static_cast<int>(Qt::AlignCenter) | Qt::TextDontClip |
                         (underline ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
                     text);
}

QSize buttonSize(const QStyleOptionButton& option, const Look& look, bool large)
{
    const QFontMetricsF metrics(look.font(buttonType(large, isDefault(option))));
    const double height = large ? measure::largeControlHeight : measure::controlHeight;
    double width = metrics.size(Qt::TextShowMnemonic, option.text).width();
    if (!option.icon.isNull())
        width += option.iconSize.width() + (option.text.isEmpty() ? 0 : look.length(iconGap));
    if (option.features & QStyleOptionButton::HasMenu)
        width += look.length(14);
    return {static_cast<int>(std::ceil(width)) + 2 * look.length(large ? 14 : 10), look.length(height)};
}

void drawCheckBox(QPainter& painter, const QRect& box, QStyle::State state, const Look& look)
{
    const double radius = look.length(4);
    const bool enabled = state & QStyle::State_Enabled;
    const bool marked = state & (QStyle::State_On | QStyle::State_NoChange);
    if (!marked) {
        const bool hover = enabled && state & QStyle::State_MouseOver;
        const QColor border = !enabled ? look.roles.border : hover ? look.roles.secondary : look.roles.control;
        drawBox(painter, box, radius, enabled ? look.roles.field : QColor(), border);
        if (enabled && state & QStyle::State_Sunken)
            drawBox(painter, box, radius, look.palette.dividerColor, {});
        return;
    }
    const double strength = state & QStyle::State_Sunken ? 1 : state & QStyle::State_MouseOver ? 0.5 : 0;
    drawBox(painter, box, radius, enabled ? pressedFill(look, strength) : look.roles.disabled, {});
    const QColor ink = enabled ? look.roles.onAccent : look.roles.panel;
    if (state & QStyle::State_On) {
        drawTick(painter, box, ink);
    } else {
        const double inset = box.width() * 0.28;
        const QRectF bar(box.left() + inset, box.center().y(), box.width() - 2 * inset, box.width() / 8.0);
        drawBox(painter, bar, bar.height() / 2, ink, {});
    }
}

void drawRadioButton(QPainter& painter, const QRect& box, QStyle::State state, const Look& look)
{
    const double radius = box.width() / 2.0;
    const bool enabled = state & QStyle::State_Enabled;
    if (!(state & QStyle::State_On)) {
        const bool hover = enabled && state & QStyle::State_MouseOver;
        const QColor border = !enabled ? look.roles.border : hover ? look.roles.secondary : look.roles.control;
        drawBox(painter, box, radius, enabled ? look.roles.field : QColor(), border);
        return;
    }
    drawBox(painter, box, radius, enabled ? look.roles.accentFill : look.roles.disabled, {});
    const double dot = box.width() * 0.19;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(enabled ? look.roles.onAccent : look.roles.panel);
    painter.drawEllipse(QRectF(box).center(), dot, dot);
    painter.restore();
}

void drawPopUpButton(QPainter& painter, const QStyleOptionComboBox& option, double hover, const Look& look)
{
    const bool enabled = option.state & QStyle::State_Enabled;
    QStyle::State state = option.state;
    state.setFlag(QStyle::State_On, false); // the list is open: that is not pressed
    drawBox(painter, option.rect, look.length(measure::buttonRadius), ground(state, hover, look), look.roles.border);
    const QColor ink = enabled ? look.roles.secondary : look.roles.disabled;
    const QPointF centre(option.rect.right() + 1 - look.length(11), QRectF(option.rect).center().y());
    const double width = look.length(6);
    drawChevron(painter, centre + QPointF(0, -3.25 * look.scale), width, true, ink);
    drawChevron(painter, centre + QPointF(0, 3.25 * look.scale), width, false, ink);
}

void drawPopUpLabel(QPainter& painter, const QStyleOptionComboBox& option, const QRect& rect, const Look& look)
{
    QRectF text = rect;
    if (!option.currentIcon.isNull()) {
        const int side = option.iconSize.width();
        const QRect box(rect.left(), rect.center().y() - side / 2 + 1, side, side);
        option.currentIcon.paint(&painter, box);
        text.setLeft(text.left() + side + look.length(iconGap));
    }
    drawLine(painter, text, Qt::AlignLeft | Qt::AlignVCenter, option.currentText, look.font(Type::control),
             look.ink(option.state & QStyle::State_Enabled));
}

} // namespace velmora::parts
