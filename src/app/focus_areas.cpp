#include "app/focus_areas.h"

#include <QApplication>
#include <QWidget>

namespace velmora
{
namespace
{

bool takesTab(const QWidget& widget)
{
    return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isVisible() && widget.isEnabled();
}

} // namespace

QWidget* firstFocusable(QWidget& area)
{
    if (takesTab(area))
        return &area;
    // The focus chain runs through the whole window; the area's own part of it is in the right order.
    for (QWidget* widget = area.nextInFocusChain(); widget != &area; widget = widget->nextInFocusChain()) {
        if (area.isAncestorOf(widget) && takesTab(*widget))
            return widget;
    }
    return nullptr;
}

void cycleFocusArea(const QList<QWidget*>& areas, int direction)
{
    const QWidget* focus = QApplication::focusWidget();
    const qsizetype count = areas.size();
    qsizetype current = direction > 0 ? -1 : count;
    for (qsizetype i = 0; i < count; ++i) {
        if (focus && (areas[i] == focus || areas[i]->isAncestorOf(focus)))
            current = i;
    }
    for (qsizetype step = 1; step <= count; ++step) {
        QWidget* area = areas[((current + direction * step) % count + count) % count];
        if (QWidget* target = firstFocusable(*area)) {
            target->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

} // namespace velmora
