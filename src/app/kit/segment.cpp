#include "app/kit/segment.h"

#include "app/kit/icons.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QFontMetricsF>
#include <QPainter>

#include <cmath>

namespace velmora
{

Segment::Segment(const QString& name, const QString& icon, QWidget* parent) : QAbstractButton(parent), m_icon(icon)
{
    setText(name);
    setCheckable(true);
    setAutoExclusive(true);
    if (!icon.isEmpty())
        setToolTip(name);
    // The parent may be on the screen already.
    show();
}

QSize Segment::sizeHint() const
{
    const Look& look = lookOf(this);
    const double label =
        m_icon.isEmpty() ? QFontMetricsF(look.font(Type::controlMedium)).horizontalAdvance(text()) : look.length(14);
    return {static_cast<int>(std::ceil(label)) + look.length(10), look.length(20)};
}

FocusShape Segment::focusShape() const
{
    // The whole control is one stop of the Tab key, so the ring is its.
    return {QRectF(parentWidget()->rect()).translated(-pos()),
            static_cast<double>(lookOf(this).length(measure::buttonRadius))};
}

void Segment::moveEvent(QMoveEvent*)
{
    update();
}

void Segment::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    const bool lit = isChecked() || underMouse() || isDown();
    const QColor ink = !isEnabled() ? look.roles.disabled : lit ? look.roles.primary : look.roles.secondary;
    if (m_icon.isEmpty()) {
        drawLine(painter, rect(), Qt::AlignCenter, text(), look.font(Type::controlMedium), ink);
        return;
    }
    const int side = look.length(14);
    painter.drawPixmap(QPoint((width() - side) / 2, (height() - side) / 2),
                       iconPixmap(m_icon, side, devicePixelRatioF(), {ink, Qt::transparent}));
}

} // namespace velmora
