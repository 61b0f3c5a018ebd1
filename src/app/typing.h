#pragma once

#include <QObject>

class QWidget;

namespace velmora
{

/// Has the field with the focus take over what was typed into it and not committed yet, as if the focus left it. For
/// commands that no click comes before: keys, menus, the window's own button.
void commitTyping();

/// Leaves Undo and Redo in the fields of a window to the window's commands: the project's history has every step, and
/// the field's own one would undo what is shown but not what is stored.
class HistoryKeys : public QObject
{
    Q_OBJECT

public:
    /// `window` owns it.
    explicit HistoryKeys(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace velmora
