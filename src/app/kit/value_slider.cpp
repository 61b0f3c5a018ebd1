#include "app/kit/value_slider.h"

#include "app/kit/look.h"
#include "app/kit/number_field.h"
#include "app/kit/paint.h"
#include "app/kit/style_parts.h"

#include <QAccessible>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace velmora
{
namespace
{

constexpr double labelWidth = 38;
constexpr double labelGap = 10;
constexpr int pageSteps = 10;

} // namespace

ValueSlider::ValueSlider(const SliderScale& scale, QWidget* parent)
    : QWidget(parent), m_scale(scale), m_value(scale.minimum)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ValueSlider::setValue(double value)
{
    if (m_value == value)
        return;
    m_value = value;
    update();
    QAccessibleValueChangeEvent changed(this, value);
    QAccessible::updateAccessibility(&changed);
}

void ValueSlider::setText(std::function<QString(double)> text)
{
    m_text = std::move(text);
    update();
}

void ValueSlider::setSpokenText(std::function<QString(double)> text)
{
    m_spoken = std::move(text);
}

void ValueSlider::setHome(double value, double snap)
{
    m_home = value;
    m_snap = snap;
}

void ValueSlider::setTicks(bool ticks)
{
    m_ticks = ticks;
    update();
}

QString ValueSlider::shownText(double value) const
{
    return m_text ? m_text(value) : NumberField::format(value, 2);
}

QString ValueSlider::spokenValue() const
{
    return m_spoken ? m_spoken(m_value) : shownText(m_value);
}

QSize ValueSlider::sizeHint() const
{
    return {lookOf(this).length(176), lookOf(this).length(measure::controlHeight)};
}

QSize ValueSlider::minimumSizeHint() const
{
    return {lookOf(this).length(100), lookOf(this).length(measure::controlHeight)};
}

QRectF ValueSlider::trackRect() const
{
    const Look& look = lookOf(this);
    const QFontMetricsF metrics(look.font(Type::control));
    // As wide as the widest value needs, so that the track keeps its length while the knob moves.
    double label = look.length(labelWidth);
    for (const double value : {m_scale.minimum, m_scale.maximum, m_value})
        label = std::max(label, std::ceil(metrics.horizontalAdvance(shownText(value))));
    return {0, 0, std::max(0.0, width() - label - look.length(labelGap)), static_cast<double>(height())};
}

bool ValueSlider::take(double value)
{
    if (value == m_value)
        return false;
    setValue(value);
    emit valueEdited(value);
    return true;
}

void ValueSlider::adjust(double value)
{
    if (take(std::clamp(value, m_scale.minimum, m_scale.maximum)))
        emit editingFinished();
}

void ValueSlider::dragTo(double x)
{
    const double knob = lookOf(this).length(measure::sliderKnob);
    const double length = trackRect().width() - knob;
    if (length <= 0)
        return;
    double value = m_scale.valueAt((x - m_grip - knob / 2) / length);
    if (m_home && std::abs(value - *m_home) <= m_snap + 1e-9)
        value = *m_home;
    m_changed = take(value) || m_changed;
}

void ValueSlider::focusInEvent(QFocusEvent* event)
{
    m_ring = isByKeyboard(event->reason(), m_ring);
    QWidget::focusInEvent(event);
}

void ValueSlider::mousePressEvent(QMouseEvent* event)
{
    const QRectF track = trackRect();
    if (event->button() != Qt::LeftButton || event->position().x() > track.right()) {
        event->ignore();
        return;
    }
    const double knob = lookOf(this).length(measure::sliderKnob);
    const double middle = knob / 2 + m_scale.fractionOf(m_value) * (track.width() - knob);
    const double distance = event->position().x() - middle;
    // On the knob it is taken where it is held; elsewhere it jumps under the mouse.
    const bool onKnob = std::abs(distance) <= knob / 2;
    m_grip = onKnob ? distance : 0;
    m_dragging = true;
    m_changed = false;
    emit dragBegan();
    m_ring = false;
    update();
    if (!onKnob)
        dragTo(event->position().x());
}

void ValueSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (m_dragging)
        dragTo(event->position().x());
}

void ValueSlider::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        endDrag();
}

void ValueSlider::hideEvent(QHideEvent*)
{
    endDrag(); // the release goes elsewhere
}

void ValueSlider::endDrag()
{
    if (!std::exchange(m_dragging, false))
        return;
    if (std::exchange(m_changed, false))
        emit editingFinished();
    emit dragEnded();
}

void ValueSlider::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (!m_home || event->button() != Qt::LeftButton) {
        mousePressEvent(event);
        return;
    }
    endDrag();
    if (take(*m_home))
        emit editingFinished();
}

void ValueSlider::keyPressEvent(QKeyEvent* event)
{
    double value = m_value;
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Down:
        value = m_scale.stepped(m_value, -1);
        break;
    case Qt::Key_Right:
    case Qt::Key_Up:
        value = m_scale.stepped(m_value, 1);
        break;
    case Qt::Key_PageDown:
        value = m_scale.stepped(m_value, -pageSteps);
        break;
    case Qt::Key_PageUp:
        value = m_scale.stepped(m_value, pageSteps);
        break;
    case Qt::Key_Home:
        value = m_scale.minimum;
        break;
    case Qt::Key_End:
        value = m_scale.maximum;
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    m_ring = true;
    update();
    if (take(value))
        emit editingFinished();
}

void ValueSlider::wheelEvent(QWheelEvent* event)
{
    const int steps = event->angleDelta().y() / 120;
    if (!hasFocus() || steps == 0) {
        event->ignore();
        return;
    }
    if (take(m_scale.stepped(m_value, steps)))
        emit editingFinished();
}

void ValueSlider::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    const QRectF track = trackRect();
    const double knob = look.length(measure::sliderKnob);
    if (m_ticks && m_scale.step > 0) {
        const int count = static_cast<int>(std::min(100.0, (m_scale.maximum - m_scale.minimum) / m_scale.step + 0.5));
        for (int i = 0; i <= count; ++i) {
            const double at = m_scale.fractionOf(m_scale.minimum + i * m_scale.step);
            const double x = knob / 2 + at * (track.width() - knob);
            drawVerticalHairline(painter, x - 0.5, height() / 2.0 + look.length(6), height() / 2.0 + look.length(9),
                                 look.roles.border);
        }
    }
    parts::drawSlider(painter, track, m_scale.fractionOf(m_value), isEnabled(), hasFocus() && m_ring, look);
    drawLine(painter, QRectF(track.right(), 0, width() - track.right(), height()), Qt::AlignRight | Qt::AlignVCenter,
             shownText(m_value), look.font(Type::control), look.ink(isEnabled()));
}

} // namespace velmora
