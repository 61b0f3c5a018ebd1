#pragma once

#include <QString>

#include <functional>

class QPushButton;

namespace velmora
{

/// A button of a panel. `objectName` is its name for tests and tools; its accessible name is its text.
QPushButton* actionButton(const QString& text, const char* objectName, std::function<void()> act);

} // namespace velmora
