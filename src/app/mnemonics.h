#pragma once

#include <QStringList>

class QWidget;

namespace velmora
{

/// The texts of one menu with a mnemonic in each, marked by "&" as Qt takes it: the first free letter that begins a
/// word, else any free letter, else none; letters in `taken` are not free. Marks that a text holds already are shown as
/// they stand.
QStringList withMnemonics(const QStringList& texts, const QString& taken = {});

/// Gives each label of a panel that has a buddy a letter with which Alt leads to that, none of those that the menu bar
/// of the panel's window has. Not on a Mac.
void giveMnemonics(const QWidget& panel);

} // namespace velmora
