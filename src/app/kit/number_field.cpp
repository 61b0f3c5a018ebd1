#include "app/kit/number_field.h"

#include "app/kit/look.h"
#include "app/kit/paint.h"
#include "app/kit/slider_scale.h"
#include "app/kit/velmora_style.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace velmora
{
namespace
{

constexpr QChar trueMinus(0x2212);
constexpr double largestPlain = 1e15; ///< beyond it every digit of a double is a whole one

/// The beginning of a number that only waits for its digits.
bool isUnfinished(const QString& text)
{
    const QString rest = text.trimmed();
    return rest.isEmpty() || rest == QLatin1String("-") || rest == trueMinus || rest == QLatin1String("+");
}

} // namespace

NumberField::NumberField(QWidget* parent) : QAbstractSpinBox(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lineEdit()->setFrame(false);
    connect(lineEdit(), &QLineEdit::textEdited, this, &NumberField::textTyped);
    showValue();
}

void NumberField::setRange(double minimum, double maximum, double step)
{
    m_minimum = minimum;
    m_maximum = std::max(minimum, maximum);
    m_step = step;
    update();
}

void NumberField::setPrefix(const QString& prefix)
{
    m_prefix = prefix;
    placeText();
}

void NumberField::setUnit(const QString& unit)
{
    m_unit = unit;
    placeText();
}

void NumberField::setDecimals(int decimals, Digits digits)
{
    m_decimals = std::clamp(decimals, 0, 9);
    m_digits = digits;
    if (!m_typed)
        showValue();
}

void NumberField::placeText()
{
    const Look& look = lookOf(this);
    const QFontMetricsF metrics(look.font(Type::hint));
    const auto room = [&](const QString& text) {
        return text.isEmpty() ? 0 : static_cast<int>(std::ceil(metrics.horizontalAdvance(text))) + look.length(4);
    };
    lineEdit()->setTextMargins(room(m_prefix), 0, room(m_unit), 0);
    update();
}

void NumberField::setValue(double value)
{
    m_value = value;
    if (!m_typed)
        showValue();
    update();
}

void NumberField::showValue()
{
    m_typed = false;
    setWrong(false);
    const QString text = format(m_value, m_decimals, m_digits);
    if (lineEdit()->text() != text)
        lineEdit()->setText(text);
}

void NumberField::textTyped(const QString& text)
{
    m_typed = true;
    setWrong(!isUnfinished(text) && !parse(text, m_unit));
}

void NumberField::setWrong(bool wrong)
{
    m_wrong = wrong;
    setMarkedWrong(this, wrong);
}

void NumberField::commit()
{
    if (!m_typed)
        return;
    const QString text = lineEdit()->text();
    const auto number = parse(text, m_unit);
    if (!number) {
        setWrong(true);
        return;
    }
    // The digits that the text does not show stay as long as the text is left as it was.
    const bool unchanged = text == format(m_value, m_decimals, m_digits);
    if (!unchanged)
        take(*number);
    showValue();
}

void NumberField::finishTyping()
{
    commit();
    if (m_typed)
        showValue();
}

void NumberField::take(double value)
{
    if (value == m_value)
        return;
    m_value = value;
    update();
    emit valueEdited(value);
}

void NumberField::adjust(double value)
{
    if (!std::isfinite(value))
        return;
    m_typed = false;
    take(value);
    showValue();
}

void NumberField::stepBy(int steps)
{
    finishTyping();
    double next = withoutDust(m_value + steps * m_step);
    if (wrapping() && m_maximum > m_minimum) {
        const double range = m_maximum - m_minimum;
        if (next > m_maximum || next < m_minimum)
            next = m_minimum + std::fmod(std::fmod(next - m_minimum, range) + range, range);
    } else {
        next = std::clamp(next, m_minimum, m_maximum);
        // From beyond the range a step leads back to it, never the other way about.
        if ((steps > 0 && next < m_value) || (steps < 0 && next > m_value))
            return;
    }
    take(next);
    showValue();
    selectAll();
}

QAbstractSpinBox::StepEnabled NumberField::stepEnabled() const
{
    if (wrapping())
        return StepUpEnabled | StepDownEnabled;
    StepEnabled possible = StepNone;
    possible.setFlag(StepUpEnabled, m_value < m_maximum);
    possible.setFlag(StepDownEnabled, m_value > m_minimum);
    return possible;
}

QValidator::State NumberField::validate(QString&, int&) const
{
    return QValidator::Intermediate; // everything may be typed; commit() judges
}

QSize NumberField::sizeHint() const
{
    return {lookOf(this).length(measure::halfControl), lookOf(this).length(measure::controlHeight)};
}

QSize NumberField::minimumSizeHint() const
{
    return {lookOf(this).length(64), lookOf(this).length(measure::controlHeight)};
}

void NumberField::keyPressEvent(QKeyEvent* event)
{
    const int steps = event->modifiers() & Qt::ShiftModifier ? 10 : 1;
    switch (event->key()) {
    case Qt::Key_Up:
        stepBy(steps);
        return;
    case Qt::Key_Down:
        stepBy(-steps);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        commit();
        selectAll();
        return;
    case Qt::Key_Escape:
        if (!m_typed)
            break;
        showValue();
        selectAll();
        return;
    default:
        QAbstractSpinBox::keyPressEvent(event);
        return;
    }
    event->ignore();
}

void NumberField::focusOutEvent(QFocusEvent* event)
{
    // The context menu borrows the focus: nothing is finished.
    if (event->reason() != Qt::PopupFocusReason)
        finishTyping();
    QAbstractSpinBox::focusOutEvent(event);
}

void NumberField::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QAbstractSpinBox::wheelEvent(event);
    else
        event->ignore(); // scrolls the panel
}

void NumberField::paintEvent(QPaintEvent* event)
{
    QAbstractSpinBox::paintEvent(event);
    const Look& look = lookOf(this);
    QPainter painter(this);
    const QColor ink = isEnabled() ? look.roles.secondary : look.roles.disabled;
    const QFont font = look.font(Type::hint);
    const double right = lineEdit()->geometry().right() + 1 - 2;
    // A long number pushes the letter towards the edge.
    const double number =
        lineEdit()->textMargins().right() + QFontMetricsF(lineEdit()->font()).horizontalAdvance(lineEdit()->text());
    const double room = right - number - QFontMetricsF(font).horizontalAdvance(m_prefix);
    const double inset = std::clamp(room - look.length(6), static_cast<double>(look.length(3)),
                                    static_cast<double>(look.length(measure::fieldInset)));
    drawLine(painter, QRectF(inset, 0, width(), height()), Qt::AlignLeft | Qt::AlignVCenter, m_prefix, font, ink);
    drawLine(painter, QRectF(0, 0, right, height()), Qt::AlignRight | Qt::AlignVCenter, m_unit, font, ink);
}

QString NumberField::format(double value, int decimals, Digits digits)
{
    if (!std::isfinite(value))
        return QStringLiteral("—");
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::OmitGroupSeparator);
    QString text =
        std::abs(value) < largestPlain ? plain.toString(value, 'f', decimals) : plain.toString(value, 'g', 15);
    if (digits == Digits::atMost && text.contains(QLatin1Char('.')) && !text.contains(QLatin1Char('e'))) {
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
    }
    if (text == QLatin1String("-0"))
        return QStringLiteral("0");
    return text.replace(QLatin1Char('-'), trueMinus);
}

std::optional<double> NumberField::parse(const QString& text, const QString& unit)
{
    QString number = text.trimmed();
    if (!unit.isEmpty() && number.endsWith(unit, Qt::CaseInsensitive))
        number = number.chopped(unit.size()).trimmed();
    number.replace(trueMinus, QLatin1Char('-'));
    // A comma is a decimal one; whoever types thousands apart gets to see that it is not understood.
    if (number.count(QLatin1Char(',')) == 1 && !number.contains(QLatin1Char('.')))
        number.replace(QLatin1Char(','), QLatin1Char('.'));
    QLocale plain = QLocale::c();
    plain.setNumberOptions(QLocale::RejectGroupSeparator);
    bool understood = false;
    const double value = plain.toDouble(number, &understood);
    if (!understood || !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace velmora
