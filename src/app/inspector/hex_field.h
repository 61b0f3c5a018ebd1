#pragma once

#include <QColor>
#include <QLineEdit>

#include <optional>

namespace velmora
{

/// A field for a colour as "#RRGGBB", with two more digits when it is not opaque. Committed by Return, Tab or losing
/// the focus; Escape brings the old text back. What is no colour marks the field as wrong and is given up when the
/// focus leaves.
class HexField : public QLineEdit
{
    Q_OBJECT

public:
    explicit HexField(QWidget* parent = nullptr);

    [[nodiscard]] QColor color() const { return m_color; }
    /// Takes on a colour without a signal. Text that a person is just typing stays as it is.
    void setColor(const QColor& color);

    /// Takes over what was typed, as when the focus leaves: what is no colour is given up.
    void finishTyping();

    [[nodiscard]] QSize sizeHint() const override;

    static QString format(const QColor& color);
    /// The colour that a person typed, with or without "#", of 3, 6 or 8 digits; without digits for it the opacity is
    /// that of `present`. Nothing when it is no colour.
    static std::optional<QColor> parse(const QString& text, const QColor& present);

signals:
    /// The person committed another colour.
    void colorEdited(const QColor& color);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void commit();
    void showColor();

    QColor m_color{Qt::black};
    bool m_typed = false; ///< the text is the person's, not committed yet
};

} // namespace velmora
