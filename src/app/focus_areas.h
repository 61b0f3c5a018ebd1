#pragma once

#include <QList>

class QWidget;

namespace velmora
{

/// The first control inside `area` (or the area itself) that the Tab key reaches now; null when there is none.
QWidget* firstFocusable(QWidget& area);

/// Moves the focus to the next (`direction` 1) or previous (-1) of the areas, round and round; areas in which nothing
/// can have the focus are passed over. From outside all of them it goes to the first or last.
void cycleFocusArea(const QList<QWidget*>& areas, int direction);

/// Moves the focus to the next or previous control as the Tab key does: through the areas in their order, whenever
/// their controls were made. False when the focus is in none of them.
bool stepFocus(const QList<QWidget*>& areas, bool forward);

} // namespace velmora
