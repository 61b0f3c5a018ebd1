#include "app/plain_widgets.h"

#include "app/kit/form.h"
#include "app/kit/velmora_style.h"
#include "app/text.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QPlainTextEdit>
#include <QPushButton>

namespace velmora
{

QPushButton* makeLargeButton(const QString& text, const char* objectName, QWidget* parent)
{
    auto* button = new QPushButton(withoutMnemonics(text), parent);
    button->setObjectName(QLatin1String(objectName));
    button->setAccessibleName(accessibleNameFor(text));
    setLarge(button);
    return button;
}

void leadTabToChosen(const QButtonGroup& group)
{
    for (QAbstractButton* button : group.buttons())
        button->setFocusPolicy(button->isChecked() || !group.checkedButton() ? Qt::StrongFocus : Qt::ClickFocus);
}

QString exactText(const QPlainTextEdit& field)
{
    QString text = field.document()->toRawText();
    return text.replace(QChar::ParagraphSeparator, QLatin1Char('\n')).replace(QChar::LineSeparator, QLatin1Char('\n'));
}

} // namespace velmora
