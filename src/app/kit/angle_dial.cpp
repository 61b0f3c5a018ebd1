#include "app/kit/angle_dial.h"

#include "app/kit/look.h"
#include "app/kit/number_field.h"
#include "app/kit/paint.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace velmora
{
namespace
{

constexpr double dialSize = 40;
constexpr double turn = 360;
constexpr double coarseStep = 15;

/// The same direction from 0 up to, not including, a whole turn.
double wrapped(double degrees)
{
    if (!std::isfinite(degrees))
        return 0;
    const double rest = std::fmod(degrees, turn);
    return rest < 0 ? rest + turn : rest;
}

/// The point at a distance from the middle; the screen's y runs down.
QPointF towards(const QPointF& centre, double degrees, double distance)
{
    const double radians = degrees * std::numbers::pi / 180;
    return centre + QPointF(std::cos(radians), -std::sin(radians)) * distance;
}

} // namespace

AngleDial::AngleDial(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAttribute(Qt::WA_Hover);
}

void AngleDial::setAngle(double degrees)
{
    if (m_angle == degrees)
        return;
    m_angle = degrees;
    update();
    QAccessibleValueChangeEvent changed(this, degrees);
    QAccessible::updateAccessibility(&changed);
}

QSize AngleDial::sizeHint() const
{
    const int side = lookOf(this).length(dialSize);
    return {side, side};
}

FocusShape AngleDial::focusShape() const
{
    return {rect(), width() / 2.0};
}

QString AngleDial::spokenValue() const
{
    return m_spoken ? m_spoken(m_angle) : NumberField::format(m_angle, 0);
}

bool AngleDial::take(double degrees)
{
    if (degrees == m_angle)
        return false;
    setAngle(degrees);
    emit angleEdited(degrees);
    return true;
}

void AngleDial::adjust(double value)
{
    if (take(std::clamp(value, 0.0, turn)))
        emit editingFinished();
}

void AngleDial::turnBy(double degrees)
{
    if (take(wrapped(m_angle + degrees)))
        emit editingFinished();
}

void AngleDial::pointAt(const QPointF& position, bool coarse)
{
    const QPointF arm = position - QRectF(rect()).center();
    // In the very middle every direction is as good as another.
    if (std::hypot(arm.x(), arm.y()) < 2)
        return;
    const double exact = std::atan2(-arm.y(), arm.x()) * 180 / std::numbers::pi;
    const double step = coarse ? coarseStep : 1;
    m_changed = take(wrapped(std::round(exact / step) * step)) || m_changed;
}

void AngleDial::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_dragging = true;
    m_changed = false;
    emit dragBegan();
    pointAt(event->position(), event->modifiers() & Qt::ShiftModifier);
}

void AngleDial::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging)
        pointAt(event->position(), event->modifiers() & Qt::ShiftModifier);
}

void AngleDial::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        endDrag();
}

void AngleDial::hideEvent(QHideEvent*)
{
    endDrag(); // the release goes elsewhere
}

void AngleDial::endDrag()
{
    if (!std::exchange(m_dragging, false))
        return;
    if (std::exchange(m_changed, false))
        emit editingFinished();
    emit dragEnded();
}

void AngleDial::keyPressEvent(QKeyEvent* event)
{
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        turnBy(-1);
        break;
    case Qt::Key_Right:
    case Qt::Key_Up:
        turnBy(1);
        break;
    case Qt::Key_PageDown:
        turnBy(-coarseStep);
        break;
    case Qt::Key_PageUp:
        turnBy(coarseStep);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

void AngleDial::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 120;
    if (!hasFocus() || steps == 0)
        event->ignore();
    else
        turnBy(steps);
}

void AngleDial::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height());
    const QRectF circle((width() - side) / 2, (height() - side) / 2, side, side);
    const QPointF centre = circle.center();
    const QColor edge = !isEnabled() ? look.roles.border : underMouse() ? look.roles.secondary : look.roles.control;
    drawBox(painter, circle, side / 2, isEnabled() ? look.roles.field : QColor(), edge);

    const double outer = side / 2 - look.length(3);
    for (int angle = 0; angle < 360; angle += 45) {
        const double length = look.scale * (angle % 90 == 0 ? 3 : 1.5);
        painter.setPen(QPen(look.ink(isEnabled()), look.scale, Qt::SolidLine, Qt::FlatCap));
        painter.drawLine(towards(centre, angle, outer), towards(centre, angle, outer - length));
    }
    const QColor hand = isEnabled() ? look.roles.accentText : look.roles.disabled;
    const double tip = side * 0.30;
    painter.setPen(QPen(hand, 1.5 * look.scale, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(centre, towards(centre, m_angle, tip));
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? look.roles.accentFill : look.roles.disabled);
    painter.drawEllipse(towards(centre, m_angle, tip), 3.5 * look.scale, 3.5 * look.scale);
}

} // namespace velmora
