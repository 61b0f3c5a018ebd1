#pragma once

class QWidget;

namespace velmora
{

class SettingsStore;

/// How large the main window is. Sizes are in points, the window manager's frame left out.
namespace WindowPrefs
{
inline constexpr const char* openMaximizedKey = "openMaximized";
inline constexpr int defaultWidth = 1180;
inline constexpr int defaultHeight = 760;

/// Whether a new window fills the screen: also when nobody has chosen yet.
bool opensMaximized(const SettingsStore& settings);
void setOpensMaximized(SettingsStore& settings, bool maximized);

/// Gives a window that is not yet shown the size that the user wants at launch.
void sizeNewWindow(QWidget& window, const SettingsStore& settings);
/// Makes the window fill its screen, less panels and docks.
void fillScreen(QWidget& window);
/// Gives the window its default size, in the middle of its screen.
void defaultSize(QWidget& window);
} // namespace WindowPrefs

} // namespace velmora
