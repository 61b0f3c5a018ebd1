#include "app/kit/switch.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QPainter>

namespace velmora
{

Switch::Switch(QWidget* parent) : QCheckBox(parent), m_knob(this, motion::knob)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Switch::sizeHint() const
{
    return {lookOf(this).length(32), lookOf(this).length(18)};
}

FocusShape Switch::focusShape() const
{
    return {rect(), height() / 2.0, true};
}

bool Switch::hitButton(const QPoint& position) const
{
    return rect().contains(position);
}

void Switch::checkStateSet()
{
    QCheckBox::checkStateSet();
    m_knob.moveTo(isChecked() ? 1 : 0);
}

void Switch::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    const double place = m_knob.value();
    QColor ground = place >= 0.5 ? look.roles.accentFill : look.roles.control;
    if (isEnabled() && underMouse())
        ground = laidOver(ground, look.palette.hoverFill);
    if (!isEnabled())
        ground = laidOver(look.roles.panel, faded(ground, 0.4));
    drawBox(painter, rect(), height() / 2.0, ground, {});

    const double knob = look.length(14);
    const double inset = (height() - knob) / 2.0;
    const QRectF circle(inset + place * (width() - knob - 2 * inset), inset, knob, knob);
    const QColor white = isEnabled() || !look.dark() ? QColor(Qt::white) : look.roles.disabled;
    drawBox(painter, circle.translated(0, 0.5), knob / 2, QColor(0, 0, 0, isEnabled() ? 40 : 0), {});
    drawBox(painter, circle, knob / 2, white, {});
}

} // namespace velmora
