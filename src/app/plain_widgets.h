#pragma once

#include "app/kit/plain_labels.h"

class QButtonGroup;
class QPlainTextEdit;
class QPushButton;

namespace velmora
{

/// A push button of sheets and settings. `objectName` is its name for tests and tools.
QPushButton* makeLargeButton(const QString& text, const char* objectName, QWidget* parent = nullptr);
/// Has Tab lead to the chosen one of a group's radio buttons; the arrow keys lead to the others. Call it whenever the
/// program itself has chosen.
void leadTabToChosen(const QButtonGroup& group);
/// The text of a field, with "\n" between its lines and everything else as it was typed: Qt's own function turns
/// no-break spaces into blanks.
QString exactText(const QPlainTextEdit& field);

} // namespace velmora
