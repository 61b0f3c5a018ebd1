#pragma once

#include "app/theme/theme_manager.h"
#include "app/theme/theme_roles.h"

namespace velmora
{

/// The colours of one drawing of the canvas; asked for anew at every drawing.
struct CanvasColors {
    ThemePalette palette{};
    ThemeRoles roles{};
    bool dark = false;
};

inline CanvasColors canvasColors(const ThemeManager& themes)
{
    const ThemePalette palette = themes.palette();
    return {palette, roles(themes.theme(), palette.accent), isDark(themes.theme())};
}

} // namespace velmora
