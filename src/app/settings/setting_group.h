#pragma once

#include "app/kit/focus_ring.h"

#include <QList>
#include <QRadioButton>
#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace velmora
{

/// Rows of settings in one rounded box, parted by hairlines.
class SettingGroup : public QWidget
{
    Q_OBJECT

public:
    explicit SettingGroup(QWidget* parent = nullptr);

    /// Adds a row that fills the box's width.
    void addRow(QWidget* row);
    /// Adds a row of a label, a smaller explanation below it (may be empty), and controls at the right end.
    void addRow(const QString& label, const QString& explanation, const QList<QWidget*>& controls);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QList<QWidget*> m_rows{};
    QVBoxLayout* m_layout;
};

/// A row of a group that is chosen as a whole: its text at the left, its mark at the right.
class ChoiceRow : public QRadioButton, public HasFocusShape
{
    Q_OBJECT

public:
    explicit ChoiceRow(const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] FocusShape focusShape() const override;

protected:
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;
};

} // namespace velmora
