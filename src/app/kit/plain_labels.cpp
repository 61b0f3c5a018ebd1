#include "app/kit/plain_labels.h"

#include <QLabel>

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

} // namespace velmora
