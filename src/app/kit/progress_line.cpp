#include "app/kit/progress_line.h"

#include "app/kit/look.h"
#include "app/kit/style_parts.h"

#include <QAccessible>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace velmora
{

ProgressLine::ProgressLine(QWidget* parent) : QWidget(parent), m_shown(this, motion::progress)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ProgressLine::setFraction(double fraction)
{
    const double wanted = fraction > 0 ? std::min(fraction, 1.0) : 0; // not a number counts as nothing
    if (wanted == m_fraction)
        return;
    // A new run begins at once; only progress glides.
    if (wanted < m_fraction)
        m_shown.jumpTo(wanted);
    else
        m_shown.moveTo(wanted);
    m_fraction = wanted;
    QAccessibleValueChangeEvent changed(this, percent());
    QAccessible::updateAccessibility(&changed);
}

int ProgressLine::percent() const
{
    return static_cast<int>(std::lround(m_fraction * 100));
}

void ProgressLine::setOutcome(Outcome outcome)
{
    m_outcome = outcome;
    update();
}

QSize ProgressLine::sizeHint() const
{
    return {lookOf(this).length(200), lookOf(this).length(6)};
}

QSize ProgressLine::minimumSizeHint() const
{
    return {lookOf(this).length(24), lookOf(this).length(6)};
}

void ProgressLine::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    const QColor fill = m_outcome == Outcome::success ? look.roles.success : look.roles.accentFill;
    parts::drawProgress(painter, rect(), m_shown.value(), fill, look);
}

} // namespace velmora
