#include "app/kit/mnemonic_hints.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>

namespace velmora
{

MnemonicHints::MnemonicHints()
{
    qApp->installEventFilter(this);
}

bool MnemonicHints::eventFilter(QObject* /*watched*/, QEvent* event)
{
    const bool pressed = event->type() == QEvent::KeyPress;
    const bool isKey = pressed || event->type() == QEvent::KeyRelease;
    const bool ofAlt = isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Alt;
    const bool shown = ofAlt ? pressed : m_shown && event->type() != QEvent::WindowDeactivate;
    if (shown == m_shown)
        return false;
    m_shown = shown;
    for (QWidget* each : QApplication::allWidgets()) {
        if (const auto* label = qobject_cast<QLabel*>(each); label && label->buddy())
            each->update();
    }
    return false;
}

} // namespace velmora
