#pragma once

#include "app/kit/look.h"

#include <QString>

class QButtonGroup;
class QLabel;
class QPlainTextEdit;
class QPushButton;
class QWidget;

namespace velmora
{

/// A label whose text is shown as it stands, whatever is in it.
QLabel* makeLabel(const QString& text, Type type, QWidget* parent = nullptr);
/// The same in secondary ink, wrapped.
QLabel* makeHint(const QString& text, Type type = Type::hint, QWidget* parent = nullptr);
/// A push button of sheets and settings. `objectName` is its name for tests and tools.
QPushButton* makeLargeButton(const QString& text, const char* objectName, QWidget* parent = nullptr);
/// Has Tab lead to the chosen one of a group's radio buttons; the arrow keys lead to the others. Call it whenever the
/// program itself has chosen.
void leadTabToChosen(const QButtonGroup& group);
/// The text of a field, with "\n" between its lines and everything else as it was typed: Qt's own function turns
/// no-break spaces into blanks.
QString exactText(const QPlainTextEdit& field);
/// An accessible name out of a control's text: without the ellipsis and colon at its end.
QString accessibleText(QString text);

} // namespace velmora
