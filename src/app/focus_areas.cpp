#include "app/focus_areas.h"

#include <QApplication>
#include <QWidget>

namespace velmora
{
namespace
{

bool takesTab(const QWidget& widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && !widget.focusProxy() && widget.isVisible() &&
           widget.isEnabled();
}

/// What the Tab key reaches in an area now, in its order: the focus chain runs through the whole window, but the
/// area's own part of it is in the right order.
QList<QWidget*> tabStops(QWidget& area)
{
    QList<QWidget*> stops;
    QWidget* widget = &area;
    do {
        if ((widget == &area || area.isAncestorOf(widget)) && takesTab(*widget))
            stops << widget;
        widget = widget->nextInFocusChain();
    } while (widget != &area);
    return stops;
}

/// The number of the area that has the focus, or -1.
qsizetype currentArea(const QList<QWidget*>& areas)
{
    const QWidget* focus = QApplication::focusWidget();
    for (qsizetype i = 0; i < areas.size(); ++i) {
        if (focus && (areas[i] == focus || areas[i]->isAncestorOf(focus)))
            return i;
    }
    return -1;
}

/// What Tab reaches in the next area, in the direction of 1 or -1, in which it reaches anything; round and round.
QList<QWidget*> nextStops(const QList<QWidget*>& areas, qsizetype from, qsizetype direction)
{
    const qsizetype count = areas.size();
    for (qsizetype step = 1; step <= count; ++step) {
        const QList<QWidget*> stops = tabStops(*areas[((from + direction * step) % count + count) % count]);
        if (!stops.isEmpty())
            return stops;
    }
    return {};
}

} // namespace

QWidget* firstFocusable(QWidget& area)
{
    const QList<QWidget*> stops = tabStops(area);
    return stops.isEmpty() ? nullptr : stops.front();
}

void cycleFocusArea(const QList<QWidget*>& areas, int direction)
{
    const qsizetype at = currentArea(areas);
    const qsizetype from = at < 0 && direction < 0 ? areas.size() : at;
    const QList<QWidget*> stops = nextStops(areas, from, direction);
    if (!stops.isEmpty())
        stops.front()->setFocus(Qt::TabFocusReason);
}

bool stepFocus(const QList<QWidget*>& areas, bool forward)
{
    const qsizetype from = currentArea(areas);
    if (from < 0)
        return false;
    const Qt::FocusReason reason = forward ? Qt::TabFocusReason : Qt::BacktabFocusReason;
    const qsizetype direction = forward ? 1 : -1;
    const QList<QWidget*> here = tabStops(*areas[from]);
    const qsizetype next = here.indexOf(QApplication::focusWidget()) + direction;
    if (here.contains(QApplication::focusWidget()) && next >= 0 && next < here.size()) {
        here[next]->setFocus(reason);
        return true;
    }
    const QList<QWidget*> there = nextStops(areas, from, direction);
    if (there.isEmpty())
        return false;
    (forward ? there.front() : there.back())->setFocus(reason);
    return true;
}

} // namespace velmora
