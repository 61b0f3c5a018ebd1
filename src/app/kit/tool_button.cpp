#include "app/kit/tool_button.h"

#include "app/kit/icons.h"
#include "app/kit/look.h"
#include "app/kit/paint.h"

#include <QEvent>
#include <QPainter>

namespace velmora
{
namespace
{

struct Metrics {
    double width = 0;
    double height = 0;
    double icon = 0;
    double label = 0; ///< the height of its line
    double gap = 0;
};

Metrics metricsOf(ToolButton::Kind kind)
{
    switch (kind) {
    case ToolButton::Kind::filled:
        return {67, 58, 24, 13, 4};
    case ToolButton::Kind::tab:
        return {51, 50, 20, 12, 4};
    default:
        return {67, 54, 24, 13, 4};
    }
}

/// The strength of the choice while the window is in the background.
constexpr double background = 0.6;

} // namespace

ToolButton::ToolButton(const QString& icon, const QString& label, Kind kind, QWidget* parent)
    : QAbstractButton(parent), m_icon(icon), m_kind(kind), m_hover(this), m_press(this), m_turn(this)
{
    setText(label);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::pressed, this, [this] { m_press.set(true); });
    connect(this, &QAbstractButton::released, this, [this] { m_press.set(false); });
}

void ToolButton::setBusy(bool busy)
{
    if (m_busy == busy)
        return;
    m_busy = busy;
    m_turn.run(busy);
    update();
}

QSize ToolButton::sizeHint() const
{
    const Look& look = lookOf(this);
    const Metrics metrics = metricsOf(m_kind);
    return {look.length(metrics.width), look.length(metrics.height)};
}

FocusShape ToolButton::focusShape() const
{
    return {rect(), static_cast<double>(lookOf(this).length(measure::toolRadius)), m_kind == Kind::filled};
}

bool ToolButton::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::Enter:
        m_hover.set(isEnabled());
        break;
    case QEvent::Leave:
        m_hover.set(false);
        break;
    case QEvent::EnabledChange:
        m_hover.set(isEnabled() && underMouse());
        break;
    case QEvent::Show:
    case QEvent::Hide:
        m_turn.run(m_busy);
        break;
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        update();
        break;
    default:
        break;
    }
    return QAbstractButton::event(event);
}

void ToolButton::drawGround(QPainter& painter) const
{
    const Look& look = lookOf(this);
    const double radius = look.length(measure::toolRadius);
    if (m_kind == Kind::filled) {
        if (isEnabled())
            drawBox(painter, rect(), radius, pressedFill(look, std::max(m_press.strength(), m_hover.strength() / 2)),
                    {});
        return;
    }
    if (!isEnabled())
        return;
    if (isChecked())
        drawBox(painter, rect(), radius, faded(look.roles.accentSoft, isActiveWindow() ? 1 : background), {});
    else if (m_hover.strength() > 0)
        drawBox(painter, rect(), radius, faded(look.palette.hoverFill, m_hover.strength()), {});
    if (m_press.strength() > 0)
        drawBox(painter, rect(), radius, faded(look.palette.dividerColor, m_press.strength()), {});
}

void ToolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawGround(painter);

    const Look& look = lookOf(this);
    const Metrics metrics = metricsOf(m_kind);
    const bool filled = m_kind == Kind::filled && isEnabled();
    IconColors colors = iconColors(look, isEnabled());
    QColor label = isEnabled() ? look.roles.secondary : look.roles.disabled;
    if (filled) {
        colors = filledIconColors(look);
        label = look.roles.onAccent;
    } else if (isEnabled() && isChecked()) {
        colors = selectedIconColors(look);
        label = look.roles.accentText;
    } else if (isEnabled() && (m_hover.strength() > 0.5 || isDown())) {
        label = look.roles.primary;
    }

    const int icon = look.length(metrics.icon);
    const int line = look.length(metrics.label);
    const int gap = look.length(metrics.gap);
    const int top = (height() - icon - gap - line) / 2;
    const QPoint corner((width() - icon) / 2, top);
    if (m_busy) {
        const double inset = icon / 12.0;
        drawBusyRing(painter, QRectF(corner, QSizeF(icon, icon)).adjusted(inset, inset, -inset, -inset), m_turn.turn(),
                     colors.ink, look);
    } else {
        painter.drawPixmap(corner, iconPixmap(m_icon, icon, devicePixelRatioF(), colors));
    }
    const Type type = m_kind == Kind::tab ? Type::tab : m_kind == Kind::filled ? Type::hintStrong : Type::hintMedium;
    drawLine(painter, QRectF(0, top + icon + gap, width(), line), Qt::AlignCenter, text(), look.font(type), label);
}

} // namespace velmora
