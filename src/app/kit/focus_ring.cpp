#include "app/kit/focus_ring.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/kit/velmora_style.h"

#include <QAbstractItemView>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFocusEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QStyleOptionButton>

namespace velmora
{
namespace
{

constexpr int reach = 5; ///< how far the ring's widget extends beyond its target's shape, in points

FocusShape indicatorShape(const QAbstractButton& button, QStyle::SubElement element, double radius)
{
    QStyleOptionButton option;
    option.initFrom(&button);
    const QRect box = button.style()->subElementRect(element, &option, &button);
    return {box, radius, button.isChecked()};
}

/// The ancestor that the ring is a child of: everything between it and the widget may clip.
QWidget* ringHost(QWidget* widget)
{
    QWidget* host = widget;
    while (!host->isWindow() && host->parentWidget()) {
        QWidget* parent = host->parentWidget();
        // The content of a scroll area carries the ring along and is clipped with it.
        if (host != widget && qobject_cast<QAbstractScrollArea*>(parent->parentWidget()))
            return host;
        host = parent;
    }
    return host == widget ? nullptr : host;
}

} // namespace

FocusShape focusShapeOf(const QWidget* widget)
{
    const Look& look = lookOf(widget);
    const QRectF rect = widget->rect();
    if (widget->property("showsOwnFocus").toBool())
        return {rect, 0, false, false, false};
    if (const auto* own = dynamic_cast<const HasFocusShape*>(widget))
        return own->focusShape();
    if (const auto* button = qobject_cast<const QPushButton*>(widget))
        return {rect, static_cast<double>(look.length(isLarge(button) ? 7 : measure::buttonRadius)),
                button->isDefault()};
    if (const auto* check = qobject_cast<const QCheckBox*>(widget))
        return indicatorShape(*check, QStyle::SE_CheckBoxIndicator, look.length(4));
    if (const auto* radio = qobject_cast<const QRadioButton*>(widget))
        return indicatorShape(*radio, QStyle::SE_RadioButtonIndicator, look.length(8));
    const double fieldRadius = look.length(measure::fieldRadius);
    if (qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QAbstractSpinBox*>(widget))
        return {rect, fieldRadius, false, true};
    if (const auto* comboBox = qobject_cast<const QComboBox*>(widget))
        return {rect, static_cast<double>(look.length(measure::buttonRadius)), false, comboBox->isEditable()};
    if (widget->inherits("QPlainTextEdit") || widget->inherits("QTextEdit")) {
        // Without a frame the text is part of something else that shows its own focus, or none.
        const auto* area = static_cast<const QAbstractScrollArea*>(widget);
        const bool framed = area->frameShape() != QFrame::NoFrame;
        return {rect, fieldRadius, false, true, framed};
    }
    if (const auto* view = qobject_cast<const QAbstractItemView*>(widget)) {
        const bool framed = view->frameShape() != QFrame::NoFrame && !view->window()->windowFlags().testFlag(Qt::Popup);
        return {rect, static_cast<double>(look.length(7)), false, false, framed};
    }
    const bool plain = qobject_cast<const QMenu*>(widget) || qobject_cast<const QMenuBar*>(widget) ||
                       widget->isWindow() || widget->inherits("QAbstractScrollArea") || widget->inherits("QLabel");
    return {rect, fieldRadius, false, false, !plain};
}

bool isByKeyboard(Qt::FocusReason reason, bool before)
{
    switch (reason) {
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return true;
    case Qt::MouseFocusReason:
        return false;
    default:
        return before;
    }
}

FocusRing::FocusRing()
{
    setObjectName(QStringLiteral("focusRing"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
    hide();
}

void FocusRing::watch(bool on)
{
    for (QWidget* each = m_target; each; each = each->parentWidget()) {
        if (on)
            each->installEventFilter(this);
        else
            each->removeEventFilter(this);
        if (each == m_host)
            break;
    }
}

void FocusRing::setTarget(QWidget* target)
{
    if (m_target)
        watch(false);
    m_target = target;
    m_host = target ? ringHost(target) : nullptr;
    if (!m_host) {
        m_target = nullptr;
        hide();
        return;
    }
    watch(true);
    if (parentWidget() != m_host)
        setParent(m_host);
    place();
}

void FocusRing::place()
{
    if (!m_target || !m_host || !m_host->isAncestorOf(m_target)) {
        hide();
        return;
    }
    const FocusShape shape = focusShapeOf(m_target);
    const int margin = lookOf(this).length(reach);
    const QRect around = shape.rect.toAlignedRect().adjusted(-margin, -margin, margin, margin);
    setGeometry(around.translated(m_target->mapTo(m_host, QPoint(0, 0))));
    setVisible(m_target->isVisibleTo(m_host));
    raise();
    update();
}

bool FocusRing::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
    case QEvent::Hide:
    case QEvent::EnabledChange:
        place();
        break;
    case QEvent::ParentChange:
        // The target, or something that holds it, has moved elsewhere.
        QMetaObject::invokeMethod(
            this, [this] { setTarget(m_target); }, Qt::QueuedConnection);
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void FocusRing::paintEvent(QPaintEvent*)
{
    if (!m_target)
        return;
    const FocusShape shape = focusShapeOf(m_target);
    if (!shape.visible)
        return;
    QPainter painter(this);
    const QPoint origin = mapFromGlobal(m_target->mapToGlobal(QPoint(0, 0)));
    drawFocusRing(painter, shape.rect.translated(origin), shape.radius, shape.gap, lookOf(this));
}

FocusFollower::FocusFollower() : m_ring(new FocusRing)
{
    qApp->installEventFilter(this);
}

FocusFollower::~FocusFollower()
{
    delete m_ring;
}

bool FocusFollower::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::FocusIn && watched->isWidgetType())
        focusArrived(static_cast<QWidget*>(watched), static_cast<QFocusEvent*>(event)->reason());
    else if (event->type() == QEvent::MouseButtonPress && m_ring && m_ring->target() && watched == m_ring->target())
        focusArrived(m_ring->target(), Qt::MouseFocusReason);
    else if (event->type() == QEvent::FocusOut && m_ring && watched == m_ring->target())
        m_ring->setTarget(nullptr);
    return false;
}

void FocusFollower::focusArrived(QWidget* widget, Qt::FocusReason reason)
{
    m_byKeyboard = isByKeyboard(reason, m_byKeyboard);
    const FocusShape shape = focusShapeOf(widget);
    // The ring dies with the window that it was a child of.
    if (!m_ring)
        m_ring = new FocusRing;
    m_ring->setTarget(shape.visible && (shape.always || m_byKeyboard) ? widget : nullptr);
}

} // namespace velmora
