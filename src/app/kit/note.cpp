#include "app/kit/note.h"

#include <QAccessible>
#include <QShowEvent>

namespace velmora
{

void Note::announce()
{
    if (!isVisible())
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    emit announced();
}

void Note::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    if (!event->spontaneous()) // a window that comes back brings nothing new
        announce();
}

} // namespace velmora
