#pragma once

#include <QWidget>

class QPushButton;

namespace velmora
{

/// What stands where there is nothing to show: a large sign, what is the matter, what to do, at most one button.
class EmptyState : public QWidget
{
    Q_OBJECT

public:
    /// `icon` is the name of an icon of the family.
    EmptyState(const QString& icon, const QString& title, const QString& sentence, QWidget* parent = nullptr);

    /// An empty label removes the button.
    void setButton(const QString& label);
    [[nodiscard]] QPushButton* button() const { return m_button; }

signals:
    void buttonClicked();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_icon;
    QPushButton* m_button;
};

} // namespace velmora
