#pragma once

#include "app/kit/look.h"

#include <QString>

class QLabel;
class QWidget;

namespace velmora
{

/// A label whose text is shown as it stands, whatever is in it.
QLabel* makeLabel(const QString& text, Type type, QWidget* parent = nullptr);
/// The same in secondary ink, wrapped.
QLabel* makeHint(const QString& text, Type type = Type::hint, QWidget* parent = nullptr);

} // namespace velmora
