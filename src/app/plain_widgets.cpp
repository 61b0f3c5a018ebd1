#include "app/plain_widgets.h"

#include "app/kit/velmora_style.h"
#include "app/text.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace velmora
{

QLabel* makeLabel(const QString& text, Type type, QWidget* parent)
{
    auto* label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    label->setFont(lookOf(label).font(type));
    return label;
}

QLabel* makeHint(const QString& text, Type type, QWidget* parent)
{
    QLabel* label = makeLabel(text, type, parent);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setWordWrap(true);
    return label;
}

QPushButton* makeLargeButton(const QString& text, const char* objectName, QWidget* parent)
{
    auto* button = new QPushButton(withoutMnemonics(text), parent);
    button->setObjectName(QLatin1String(objectName));
    button->setAccessibleName(accessibleText(text));
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

QString accessibleText(QString text)
{
    while (text.endsWith(QChar(u'…')) || text.endsWith(QLatin1Char(':')))
        text.chop(1);
    return text;
}

} // namespace velmora
