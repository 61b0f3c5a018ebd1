#include "app/kit/paint.h"
#include "app/kit/style_parts.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

namespace velmora::parts
{

void drawField(QPainter& painter, const QRectF& rect, QStyle::State state, bool wrong, double radius, const Look& look)
{
    const bool enabled = state & QStyle::State_Enabled;
    const bool hover = enabled && state & QStyle::State_MouseOver;
    const QColor fill = enabled ? look.roles.field : QColor();
    if (wrong && enabled) {
        drawBox(painter, rect, radius, look.roles.error, {});
        const double ring = look.length(measure::focusWidth);
        drawBox(painter, rect.adjusted(ring, ring, -ring, -ring), std::max(0.0, radius - ring), fill, {});
        return;
    }
    drawBox(painter, rect, radius, fill, hover ? look.roles.control : look.roles.border);
}

void drawSpinBox(QPainter& painter, const QStyleOptionSpinBox& option, bool wrong, const Look& look)
{
    const bool enabled = option.state & QStyle::State_Enabled;
    drawField(painter, option.rect, option.state, wrong, look.length(measure::fieldRadius), look);
    if (option.buttonSymbols == QAbstractSpinBox::NoButtons)
        return;
    const QRect up = spinBoxPart(option, QStyle::SC_SpinBoxUp, look);
    const QRect down = spinBoxPart(option, QStyle::SC_SpinBoxDown, look);
    const int edge = wrong && enabled ? look.length(measure::focusWidth) : 1;
    drawVerticalHairline(painter, up.left(), option.rect.top() + edge, option.rect.bottom() + 1 - edge,
                         look.roles.border);
    const auto half = [&](const QRect& rect, QStyle::SubControl part, bool upward, bool possible) {
        const bool active = enabled && possible && option.activeSubControls & part;
        if (active) {
            painter.save();
            painter.setClipRect(rect.adjusted(1, 0, 0, 0));
            const bool pressed = option.state & QStyle::State_Sunken;
            drawBox(painter, QRectF(option.rect).adjusted(1, 1, -1, -1), look.length(measure::fieldRadius - 1),
                    pressed ? look.palette.dividerColor : look.palette.hoverFill, {});
            painter.restore();
        }
        const double shift = (upward ? -3 : 3) * look.scale;
        const QPointF centre(up.left() + 0.5 + up.width() / 2.0, QRectF(option.rect).center().y() + shift);
        const QColor ink = enabled && possible ? look.roles.secondary : look.roles.disabled;
        drawChevron(painter, centre, look.length(5), upward, ink);
    };
    half(up, QStyle::SC_SpinBoxUp, true, option.stepEnabled & QAbstractSpinBox::StepUpEnabled);
    half(down, QStyle::SC_SpinBoxDown, false, option.stepEnabled & QAbstractSpinBox::StepDownEnabled);
}

QRect spinBoxPart(const QStyleOptionSpinBox& option, QStyle::SubControl part, const Look& look)
{
    const QRect& rect = option.rect;
    const bool buttons = option.buttonSymbols != QAbstractSpinBox::NoButtons;
    const int width = buttons ? look.length(measure::stepperWidth) : 0;
    const int half = rect.height() / 2;
    switch (part) {
    case QStyle::SC_SpinBoxUp:
        return {rect.right() + 1 - width, rect.top(), width, half};
    case QStyle::SC_SpinBoxDown:
        return {rect.right() + 1 - width, rect.top() + half, width, rect.height() - half};
    case QStyle::SC_SpinBoxEditField: {
        // A line edit keeps two pixels to itself.
        const int inset = look.length(measure::fieldInset) - 2;
        return rect.adjusted(inset, 1, -std::max(width + look.length(4) - 2, inset), -1);
    }
    default:
        return rect;
    }
}

void drawSlider(QPainter& painter, const QRectF& rect, double fraction, bool enabled, bool focused, const Look& look)
{
    const double knob = look.length(measure::sliderKnob);
    const double track = look.length(measure::sliderTrack);
    const double middle = rect.center().y();
    const double x = rect.left() + knob / 2 + std::clamp(fraction, 0.0, 1.0) * (rect.width() - knob);
    const QRectF whole(rect.left(), middle - track / 2, rect.width(), track);
    const QColor rest = look.dark() ? look.palette.dividerColor : look.roles.border;
    drawBox(painter, whole, track / 2, rest, {});
    QRectF filled = whole;
    filled.setRight(x);
    drawBox(painter, filled, track / 2, enabled ? look.roles.accentFill : look.roles.disabled, {});

    const QRectF circle(x - knob / 2, middle - knob / 2, knob, knob);
    if (!look.dark()) {
        // White on a light panel needs an edge, and stands out best by a shade below.
        drawBox(painter, circle.translated(0, 1), knob / 2, QColor(0, 0, 0, 26), {});
        drawBox(painter, circle, knob / 2, Qt::white, enabled ? QColor(0, 0, 0, 56) : look.roles.border);
    } else {
        drawBox(painter, circle.translated(0, 1), knob / 2, QColor(0, 0, 0, 64), {});
        drawBox(painter, circle, knob / 2, enabled ? look.roles.primary : look.roles.secondary, {});
    }
    if (focused)
        drawFocusRing(painter, circle, knob / 2, false, look);
}

void drawProgress(QPainter& painter, const QRectF& rect, double fraction, const QColor& fill, const Look& look)
{
    const double radius = std::min(rect.height() / 2, 3 * look.scale);
    drawBox(painter, rect, radius, look.dark() ? look.palette.dividerColor : look.roles.border, {});
    const double width = std::clamp(fraction, 0.0, 1.0) * rect.width();
    if (width <= 0)
        return;
    // Narrower than its own round ends the bar would swell: it is drawn whole and cut off.
    painter.save();
    painter.setClipRect(QRectF(rect.left(), rect.top(), width, rect.height()), Qt::IntersectClip);
    QRectF bar = rect;
    bar.setWidth(std::max(width, rect.height()));
    drawBox(painter, bar, radius, fill, {});
    painter.restore();
}

} // namespace velmora::parts
