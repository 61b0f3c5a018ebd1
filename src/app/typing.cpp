#include "app/typing.h"

#include "app/inspector/hex_field.h"
#include "app/kit/number_field.h"

#include <QApplication>
#include <QKeyEvent>

namespace velmora
{

void commitTyping()
{
    QWidget* focus = QApplication::focusWidget();
    if (auto* number = qobject_cast<NumberField*>(focus))
        number->finishTyping();
    else if (auto* color = qobject_cast<HexField*>(focus))
        color->finishTyping();
}

HistoryKeys::HistoryKeys(QWidget* window) : QObject(window)
{
    qApp->installEventFilter(this);
}

bool HistoryKeys::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() != QEvent::ShortcutOverride || !watched->isWidgetType() ||
        static_cast<QWidget*>(watched)->window() != parent())
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if (!key->matches(QKeySequence::Undo) && !key->matches(QKeySequence::Redo))
        return false;
    event->ignore();
    return true;
}

} // namespace velmora
