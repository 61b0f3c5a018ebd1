#include "app/inspector/gradient_strip.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

namespace velmora
{

GradientStrip::GradientStrip(QWidget* parent) : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void GradientStrip::setColors(const QColor& start, const QColor& end)
{
    m_start = start;
    m_end = end;
    update();
}

QSize GradientStrip::sizeHint() const
{
    return {lookOf(this).length(72), lookOf(this).length(measure::controlHeight)};
}

void GradientStrip::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    const double thick = look.length(8);
    const QRectF strip(0, (height() - thick) / 2, width(), thick);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath shape;
    shape.addRoundedRect(strip, thick / 2, thick / 2);
    painter.save();
    painter.setClipPath(shape);
    if (m_start.alpha() < 255 || m_end.alpha() < 255)
        drawColorChecker(painter, strip, look.length(4));
    QLinearGradient run(strip.topLeft(), strip.topRight());
    run.setColorAt(0, m_start);
    run.setColorAt(1, m_end);
    painter.fillRect(strip, run);
    painter.restore();
    drawBox(painter, strip, thick / 2, {}, look.roles.border);
}

} // namespace velmora
