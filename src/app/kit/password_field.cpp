#include "app/kit/password_field.h"

#include "app/kit/icons.h"

#include <QAction>

namespace velmora
{

PasswordField::PasswordField(QWidget* parent) : QLineEdit(parent), m_eye(addAction(QIcon(), TrailingPosition))
{
    setEchoMode(QLineEdit::Password);
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
    m_eye->setText(hidden ? QStringLiteral("Show Password") : QStringLiteral("Hide Password"));
}

} // namespace velmora
