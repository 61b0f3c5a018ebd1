#include "app/kit/fade.h"

#include "app/kit/look.h"

#include <QEvent>
#include <QWidget>

namespace velmora
{

Fade::Fade(QWidget* widget) : m_widget(widget)
{
    m_animation.setStartValue(1.0);
    m_animation.setEndValue(0.0);
    QObject::connect(&m_animation, &QVariantAnimation::valueChanged, widget, [this](const QVariant& value) {
        m_strength = value.toDouble();
        m_widget->update();
    });
}

void Fade::set(bool on)
{
    m_animation.stop();
    const int duration = lookOf(m_widget).duration(motion::fadeOut);
    if (on || m_strength <= 0 || duration == 0) {
        m_strength = on ? 1 : 0;
        m_widget->update();
        return;
    }
    m_animation.setDuration(duration);
    m_animation.start();
}

HoverFade::HoverFade(QWidget* widget) : QObject(widget), m_fade(widget)
{
    widget->installEventFilter(this);
}

double HoverFade::strengthFor(const QWidget* widget, bool over)
{
    const auto* fade = widget ? widget->findChild<HoverFade*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
    if (!fade)
        return over ? 1 : 0;
    return widget->isEnabled() ? fade->m_fade.strength() : 0;
}

bool HoverFade::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave)
        m_fade.set(event->type() == QEvent::Enter);
    return QObject::eventFilter(watched, event);
}

Glide::Glide(QWidget* widget, int duration) : m_widget(widget), m_duration(duration)
{
    m_animation.setEasingCurve(QEasingCurve::OutCubic);
    QObject::connect(&m_animation, &QVariantAnimation::valueChanged, widget, [this](const QVariant& value) {
        m_value = value.toDouble();
        m_widget->update();
    });
}

void Glide::moveTo(double value)
{
    const int duration = lookOf(m_widget).duration(m_duration);
    if (duration == 0 || !m_widget->isVisible()) {
        jumpTo(value);
        return;
    }
    m_animation.stop();
    m_animation.setDuration(duration);
    m_animation.setStartValue(m_value);
    m_animation.setEndValue(value);
    m_animation.start();
}

void Glide::jumpTo(double value)
{
    m_animation.stop();
    m_value = value;
    m_widget->update();
}

BusyTurn::BusyTurn(QWidget* widget) : m_widget(widget)
{
    m_animation.setStartValue(0.0);
    m_animation.setEndValue(1.0);
    m_animation.setDuration(motion::turn);
    m_animation.setLoopCount(-1);
    QObject::connect(&m_animation, &QVariantAnimation::valueChanged, widget, [this] { m_widget->update(); });
}

void BusyTurn::run(bool on)
{
    const bool turns = on && m_widget->isVisible() && !lookOf(m_widget).reducedMotion;
    if (turns && m_animation.state() != QAbstractAnimation::Running)
        m_animation.start();
    else if (!turns)
        m_animation.stop();
}

double BusyTurn::turn() const
{
    return m_animation.currentValue().toDouble();
}

} // namespace velmora
