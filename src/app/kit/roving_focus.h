#pragma once

#include <QList>
#include <QObject>
#include <QPointer>

class QWidget;

namespace velmora
{

/// Makes a row or column of controls one stop of the Tab key: the arrow keys move within, Home and End to its ends.
/// Disabled and hidden controls are passed over. Owned by `area`, the widget that holds the controls.
class RovingFocus : public QObject
{
    Q_OBJECT

public:
    explicit RovingFocus(QWidget* area);

    /// Adds a control behind those that are there.
    void add(QWidget* control);
    /// Makes this control the one that Tab reaches, without giving it the focus.
    void setCurrent(QWidget* control);

signals:
    /// An arrow key moved the focus to this control.
    void moved(QWidget* control);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* next(QWidget* from, int direction) const;

    QList<QPointer<QWidget>> m_controls;
    QPointer<QWidget> m_current; ///< the control that Tab reaches; null when none can have the focus
};

} // namespace velmora
