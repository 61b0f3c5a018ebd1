#include "app/inspector/action_button.h"

#include "app/kit/form.h"
#include "app/text.h"

#include <QPushButton>

namespace velmora
{

QPushButton* actionButton(const QString& text, const char* objectName, std::function<void()> act)
{
    auto* button = new QPushButton(withoutMnemonics(text));
    button->setObjectName(QLatin1String(objectName));
    button->setAccessibleName(accessibleNameFor(text));
    QObject::connect(button, &QPushButton::clicked, button, std::move(act));
    return button;
}

} // namespace velmora
