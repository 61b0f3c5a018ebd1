#include "app/inspector/hex_field.h"

#include "app/kit/look.h"
#include "app/kit/velmora_style.h"

#include <QKeyEvent>

#include <algorithm>

namespace velmora
{

HexField::HexField(QWidget* parent) : QLineEdit(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
        m_typed = true;
        setMarkedWrong(this, !text.isEmpty() && text != QLatin1String("#") && !parse(text, m_color));
    });
    showColor();
}

void HexField::setColor(const QColor& color)
{
    m_color = color;
    if (!m_typed)
        showColor();
}

QSize HexField::sizeHint() const
{
    return {lookOf(this).length(measure::halfControl), lookOf(this).length(measure::controlHeight)};
}

QString HexField::format(const QColor& color)
{
    const QString digits = color.name(QColor::HexRgb).mid(1).toUpper();
    const QString opacity = QStringLiteral("%1").arg(color.alpha(), 2, 16, QLatin1Char('0')).toUpper();
    return QLatin1Char('#') + digits + (color.alpha() < 255 ? opacity : QString());
}

std::optional<QColor> HexField::parse(const QString& text, const QColor& present)
{
    QString digits = text.trimmed();
    if (digits.startsWith(QLatin1Char('#')))
        digits.remove(0, 1);
    const bool hex = std::all_of(digits.begin(), digits.end(), [](QChar c) {
        return c.isDigit() ? c.unicode() < 128 : (c.toLower() >= QLatin1Char('a') && c.toLower() <= QLatin1Char('f'));
    });
    if (!hex || (digits.size() != 3 && digits.size() != 6 && digits.size() != 8))
        return std::nullopt;
    QColor color(QLatin1Char('#') + digits.left(6));
    color.setAlpha(digits.size() == 8 ? digits.right(2).toInt(nullptr, 16) : present.alpha());
    return color;
}

void HexField::showColor()
{
    m_typed = false;
    setMarkedWrong(this, false);
    const QString shown = format(m_color);
    if (text() != shown)
        setText(shown);
}

void HexField::commit()
{
    if (!m_typed)
        return;
    const auto typed = parse(text(), m_color);
    if (!typed) {
        setMarkedWrong(this, true);
        return;
    }
    // The stored components may be finer than the digits: they stay when these were not changed.
    const bool changed = format(*typed) != format(m_color);
    if (changed)
        m_color = *typed;
    showColor();
    if (changed)
        emit colorEdited(m_color);
}

void HexField::finishTyping()
{
    commit();
    if (m_typed)
        showColor();
}

void HexField::keyPressEvent(QKeyEvent* event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter || (event->key() == Qt::Key_Escape && m_typed)) {
        if (enter)
            commit();
        else
            showColor();
        selectAll();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

void HexField::focusOutEvent(QFocusEvent* event)
{
    // The context menu borrows the focus: nothing is finished.
    if (event->reason() != Qt::PopupFocusReason)
        finishTyping();
    QLineEdit::focusOutEvent(event);
}

} // namespace velmora
