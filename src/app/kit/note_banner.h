#pragma once

#include "app/kit/note.h"

class QLabel;
class QPushButton;

namespace velmora
{

/// A warning: an icon, a sentence whose beginning may stand out, and at most one button.
class NoteBanner : public Note
{
    Q_OBJECT

public:
    explicit NoteBanner(QWidget* parent = nullptr);

    /// Plain text: `lead` semibold, then the rest.
    void setText(const QString& lead, const QString& rest = {});
    /// An empty label removes the button.
    void setButton(const QString& label);
    [[nodiscard]] QPushButton* button() const { return m_button; }

signals:
    void buttonClicked();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_text;
    QPushButton* m_button;
};

} // namespace velmora
