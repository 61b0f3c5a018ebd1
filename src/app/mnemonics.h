#pragma once

#include <QStringList>

namespace velmora
{

/// The texts of one menu with a mnemonic in each, marked by "&" as Qt takes it: the first free letter that begins a
/// word, else any free letter, else none. Marks that a text holds already are shown as they stand.
QStringList withMnemonics(const QStringList& texts);

} // namespace velmora
