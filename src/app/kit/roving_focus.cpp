#include "app/kit/roving_focus.h"

#include <QKeyEvent>
#include <QWidget>

namespace velmora
{
namespace
{

bool canHaveFocus(const QWidget* control)
{
    return control && control->isEnabled() && !control->isHidden();
}

int directionOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
    case Qt::Key_Up:
        return -1;
    case Qt::Key_Right:
    case Qt::Key_Down:
        return 1;
    default:
        return 0;
    }
}

} // namespace

RovingFocus::RovingFocus(QWidget* area) : QObject(area) {}

void RovingFocus::add(QWidget* control)
{
    m_controls.append(control);
    control->setFocusPolicy(Qt::ClickFocus);
    control->installEventFilter(this);
    if (!canHaveFocus(m_current))
        setCurrent(control);
}

void RovingFocus::setCurrent(QWidget* control)
{
    if (m_current)
        m_current->setFocusPolicy(Qt::ClickFocus);
    m_current = control;
    if (control)
        control->setFocusPolicy(Qt::StrongFocus);
}

QWidget* RovingFocus::next(QWidget* from, int direction) const
{
    const qsizetype count = m_controls.size();
    qsizetype index = m_controls.indexOf(from);
    for (qsizetype step = 0; step < count; ++step) {
        index = (index + direction + count) % count;
        if (canHaveFocus(m_controls.at(index)))
            return m_controls.at(index);
    }
    return nullptr;
}

bool RovingFocus::eventFilter(QObject* watched, QEvent* event)
{
    auto* control = static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::FocusIn:
        if (control != m_current)
            setCurrent(control);
        break;
    case QEvent::EnabledChange:
    case QEvent::Hide:
        // Tab must not lose its way in because the control that it led to cannot take it.
        if (control == m_current && !canHaveFocus(control))
            setCurrent(next(control, 1));
        break;
    case QEvent::Show:
        if (!canHaveFocus(m_current))
            setCurrent(control);
        break;
    case QEvent::KeyPress: {
        const auto* key = static_cast<QKeyEvent*>(event);
        QWidget* goal = nullptr;
        if (const int direction = directionOf(key->key()))
            goal = next(control, direction);
        else if (key->key() == Qt::Key_Home && !m_controls.isEmpty())
            goal = next(m_controls.last(), 1);
        else if (key->key() == Qt::Key_End && !m_controls.isEmpty())
            goal = next(m_controls.first(), -1);
        if (!goal)
            break;
        if (goal != control) {
            setCurrent(goal);
            goal->setFocus(Qt::TabFocusReason);
            emit moved(goal);
        }
        return true;
    }
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace velmora
