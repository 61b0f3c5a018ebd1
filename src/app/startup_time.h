#pragma once

class QWidget;

namespace velmora
{

/// Prints to standard error how long after the process's start the window's first picture was handed to the screen,
/// when the environment variable VELMORA_STARTUP_TIME is set. Call it before the window is shown.
void reportFirstPaint(QWidget& window);

} // namespace velmora
