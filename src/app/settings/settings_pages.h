#pragma once

namespace velmora
{

/// The pages of the settings window by their stored index.
namespace SettingsTab
{
inline constexpr int theme = 0;
inline constexpr int updates = 1;
inline constexpr int language = 2;
inline constexpr int window = 3;
inline constexpr int about = 4;
inline constexpr int help = 5;
inline constexpr int count = 6;
inline constexpr int last = -1; ///< whichever was shown last
} // namespace SettingsTab

} // namespace velmora
