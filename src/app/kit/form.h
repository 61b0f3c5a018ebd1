#pragma once

#include <QList>
#include <QString>
#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace velmora
{

class Switch;

/// A labelled row of a panel: the label in a column of 84, the control in the rest. Its label names the control to
/// assistive technology unless the control has a name.
class FormRow : public QWidget
{
    Q_OBJECT

public:
    FormRow(const QString& label, QWidget* control, QWidget* parent = nullptr);

    /// Shows why the content is wrong below the control and marks the control; empty takes both away.
    void setError(const QString& sentence);

private:
    QWidget* m_control;
    QLabel* m_error = nullptr;
    QVBoxLayout* m_column;
};

/// A titled group of rows with the measures of the inspector's panels. A hairline parts it from the one above.
class Section : public QWidget
{
    Q_OBJECT

public:
    /// Without a title there is no header.
    explicit Section(const QString& title, QWidget* parent = nullptr);

    void setTitle(const QString& title);
    /// Puts a switch at the right end of the header that governs the section: while it is off the rows are hidden.
    Switch* addSwitch();
    /// Adds a row at the end; the section owns it.
    void addRow(QWidget* row);
    FormRow* addRow(const QString& label, QWidget* control);
    /// Adds a sentence of help in small secondary type.
    QLabel* addHint(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QLabel* m_title;
    QWidget* m_body;
    QVBoxLayout* m_rows;
    Switch* m_switch = nullptr;
};

/// Controls that share a row evenly: 8 apart, three or more 6 apart.
QWidget* sideBySide(const QList<QWidget*>& controls);
/// A control at the left of a row, with its own width.
QWidget* atLeft(const QList<QWidget*>& controls);
/// A label's text as the name of its control: no colon, no ellipsis, no mnemonic.
QString accessibleNameFor(const QString& label);

} // namespace velmora
