#include "app/kit/password_field.h"

#include "app/kit/icons.h"
#include "l10n/labels.h"

#include <QAction>
#include <QToolButton>

namespace velmora
{

PasswordField::PasswordField(QWidget* parent) : QLineEdit(parent), m_eye(addAction(QIcon(), TrailingPosition))
{
    setEchoMode(QLineEdit::Password);
    // Qt's button for an action is for the mouse alone.
    m_button = findChild<QToolButton*>();
    m_button->setObjectName(QStringLiteral("eye"));
    m_button->setFocusPolicy(Qt::TabFocus);
    connect(m_eye, &QAction::triggered, this, [this] {
        setEchoMode(echoMode() == QLineEdit::Password ? QLineEdit::Normal : QLineEdit::Password);
        showEye();
        emit shownChanged(echoMode() == QLineEdit::Normal);
    });
    showEye();
}

void PasswordField::showEye()
{
    const bool hidden = echoMode() == QLineEdit::Password;
    m_eye->setIcon(toolIcon(hidden ? QStringLiteral("eye") : QStringLiteral("eye-off"), IconInk::secondary));
    m_eye->setText(hidden ? QString::fromUtf8(Labels::showPassword) : QString::fromUtf8(Labels::hidePassword));
    m_button->setAccessibleName(m_eye->text());
}

} // namespace velmora
