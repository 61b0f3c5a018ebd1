#pragma once

#include <QColor>

#include <array>
#include <optional>
#include <string_view>

namespace velmora
{

/// The looks of the editor's own windows; a built image knows nothing of them. `system` is always light.
enum class AppTheme { system, midnight, emerald, skyBlue };

enum class ColorScheme { light, dark };

/// All themes in the order in which a person is offered them.
inline constexpr std::array allAppThemes{AppTheme::system, AppTheme::midnight, AppTheme::emerald, AppTheme::skyBlue};

/// The stored text of a theme, which is its display name as well.
std::string_view rawValue(AppTheme theme);
/// The theme with this stored text, or nothing; the comparison is exact.
std::optional<AppTheme> appThemeFromRawValue(std::string_view raw);
std::string_view displayName(AppTheme theme);
/// One line that describes the theme.
std::string_view blurb(AppTheme theme);
ColorScheme colorScheme(AppTheme theme);
bool isDark(AppTheme theme);

/// The colours that make up a theme. All are sRGB.
struct ThemePalette {
    QColor accent{};
    QColor swatchSecondary{};               ///< beside the accent on the theme's card
    std::array<QColor, 2> chromeGradient{}; ///< first and second stop: toolbar, tab column, settings window
    QColor canvasBackground{};              ///< the graph paper
    QColor canvasGridMinor{};
    QColor canvasGridMajor{};
    QColor dividerColor{};
    QColor hoverFill{}; ///< laid over what is under the pointer

    bool operator==(const ThemePalette&) const = default;
};

/// The theme's colours. `systemAccent` is the desktop's accent, which only `system` shows.
ThemePalette palette(AppTheme theme, const QColor& systemAccent);

} // namespace velmora
