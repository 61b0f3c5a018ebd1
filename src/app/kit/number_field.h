#pragma once

#include <QAbstractSpinBox>
#include <QString>

#include <optional>

namespace velmora
{

/// A field for a number. The full value is kept beside the rounded text: it changes only when the text is changed and
/// committed, by Return, Tab or losing the focus; Escape brings the old text back. Typing is not limited to the range,
/// stepping is: Up and Down by one step, with Shift by ten; the wheel only while the field has the focus. What is no
/// number marks the field as wrong and is given up when the focus leaves.
class NumberField : public QAbstractSpinBox
{
    Q_OBJECT
    // The names by which assistive technology asks.
    Q_PROPERTY(double value READ value WRITE adjust)
    Q_PROPERTY(double minimum READ minimum)
    Q_PROPERTY(double maximum READ maximum)
    Q_PROPERTY(double singleStep READ singleStep)

public:
    explicit NumberField(QWidget* parent = nullptr);

    /// The range and the width of one step. With setWrapping(true) stepping goes on at the other end.
    void setRange(double minimum, double maximum, double step);
    [[nodiscard]] double minimum() const { return m_minimum; }
    [[nodiscard]] double maximum() const { return m_maximum; }
    [[nodiscard]] double singleStep() const { return m_step; }
    /// The letter at the left, for example "W".
    void setPrefix(const QString& prefix);
    /// The unit behind the number; it may be typed along.
    void setUnit(const QString& unit);
    /// The digits shown behind the point: at most so many, or always so many.
    enum class Digits { atMost, always };
    void setDecimals(int decimals, Digits digits = Digits::atMost);

    [[nodiscard]] double value() const { return m_value; }
    /// Takes on a value without a signal. Text that a person is just typing stays as it is.
    void setValue(double value);

    /// Takes on a value as if a person had typed and committed it, with the signal; assistive technology writes so.
    void adjust(double value);

    /// Takes over what was typed, as when the focus leaves: what is no number is given up.
    void finishTyping();

    /// Whether the present text is no number.
    [[nodiscard]] bool isWrong() const { return m_wrong; }

    void stepBy(int steps) override;
    QValidator::State validate(QString& input, int& position) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    /// A number as it is shown: a true minus sign, no more digits than asked for.
    static QString format(double value, int decimals, Digits digits = Digits::atMost);
    /// The number that a person typed: both minus signs, point or comma, the unit behind it or not. Nothing when it is
    /// no finite number.
    static std::optional<double> parse(const QString& text, const QString& unit);

signals:
    /// The person committed another value or stepped to it.
    void valueEdited(double value);

protected:
    [[nodiscard]] StepEnabled stepEnabled() const override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void commit();
    void showValue();
    void textTyped(const QString& text);
    void setWrong(bool wrong);
    void placeText();
    void take(double value);

    double m_value = 0;
    double m_minimum = 0;
    double m_maximum = 100;
    double m_step = 1;
    int m_decimals = 2;
    Digits m_digits = Digits::atMost;
    QString m_prefix;
    QString m_unit;
    bool m_typed = false; ///< the text is the person's, not committed yet
    bool m_wrong = false;
};

} // namespace velmora
