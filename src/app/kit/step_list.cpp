#include "app/kit/step_list.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QEvent>
#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace velmora
{
namespace
{

constexpr double rowHeight = 28;
constexpr double markSize = 16;
constexpr double listWidth = 208;

const QColor& nameInk(StepState state, const Look& look)
{
    switch (state) {
    case StepState::waiting:
        return look.roles.secondary;
    case StepState::failed:
        return look.roles.error;
    default:
        return look.roles.primary;
    }
}

} // namespace

StepList::StepList(QWidget* parent) : QWidget(parent), m_turn(this)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StepList::setSteps(const QList<Step>& steps)
{
    if (steps == m_steps)
        return;
    const bool otherHeight = steps.size() != m_steps.size();
    m_steps = steps;
    if (otherHeight)
        updateGeometry();
    stepsChanged();
}

void StepList::stepsChanged()
{
    m_turn.run(
        std::any_of(m_steps.begin(), m_steps.end(), [](const Step& step) { return step.state == StepState::running; }));
    update();
}

QRect StepList::rowRect(int index) const
{
    const int height = lookOf(this).length(rowHeight);
    return {0, index * height, this->width(), height};
}

QSize StepList::sizeHint() const
{
    const Look& look = lookOf(this);
    return {look.length(listWidth), look.length(rowHeight) * static_cast<int>(m_steps.size())};
}

bool StepList::event(QEvent* event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::Hide)
        stepsChanged();
    return QWidget::event(event);
}

void StepList::drawMark(QPainter& painter, const QRectF& box, StepState state) const
{
    const Look& look = lookOf(this);
    switch (state) {
    case StepState::waiting: {
        const double dot = box.width() * 0.16;
        drawBox(painter, QRectF(box.center() - QPointF(dot, dot), QSizeF(2 * dot, 2 * dot)), dot, look.roles.disabled,
                {});
        break;
    }
    case StepState::running:
        drawBusyRing(painter, box.adjusted(1, 1, -1, -1), m_turn.turn(), look.roles.accentText, look);
        break;
    case StepState::done:
        drawAccentTick(painter, box, look);
        break;
    case StepState::failed: {
        drawBox(painter, box, box.width() / 2, look.roles.error, {});
        const double arm = box.width() * 0.19;
        const QPointF centre = box.center();
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(look.roles.errorGround, box.width() * 0.115, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(centre - QPointF(arm, arm), centre + QPointF(arm, arm));
        painter.drawLine(centre - QPointF(arm, -arm), centre + QPointF(arm, -arm));
        painter.restore();
        break;
    }
    }
}

void StepList::paintEvent(QPaintEvent*)
{
    const Look& look = lookOf(this);
    QPainter painter(this);
    const double mark = look.length(markSize);
    for (int i = 0; i < m_steps.size(); ++i) {
        const Step& step = m_steps.at(i);
        const QRectF row = rowRect(i);
        drawMark(painter, {row.left(), row.center().y() - mark / 2, mark, mark}, step.state);
        const QFont timeFont = look.font(Type::control);
        const double timeWidth = QFontMetricsF(timeFont).horizontalAdvance(step.time);
        drawLine(painter, row, Qt::AlignRight | Qt::AlignVCenter, step.time, timeFont, look.roles.secondary);
        const bool now = step.state == StepState::running || step.state == StepState::failed;
        QRectF name = row;
        name.setLeft(row.left() + mark + look.length(10));
        name.setRight(row.right() - timeWidth - look.length(8));
        drawLine(painter, name, Qt::AlignLeft | Qt::AlignVCenter, step.name,
                 look.font(now ? Type::controlStrong : Type::control), nameInk(step.state, look));
    }
}

} // namespace velmora
