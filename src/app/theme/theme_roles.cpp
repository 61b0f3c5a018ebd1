#include "app/theme/theme_roles.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace velmora
{
namespace
{

constexpr double readableText = 4.5;
constexpr double readableWhite = 4.0; ///< from here on white is preferred on an accent
constexpr double accentTextContrast = 4.6;
constexpr double visibleRing = 3.0;

double linear(double component)
{
    return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color)
{
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// `color` moved by `part` (0 to 1) towards `goal`, in whole steps of the colour's 8 bits.
QColor mixed(const QColor& color, const QColor& goal, double part)
{
    const auto mix = [part](int from, int to) { return static_cast<int>(std::lround(from + (to - from) * part)); };
    return QColor(mix(color.red(), goal.red()), mix(color.green(), goal.green()), mix(color.blue(), goal.blue()));
}

/// `color` moved towards `goal` no farther than needed to reach the contrast on every ground, or `goal` itself.
QColor movedUntil(const QColor& color, const QColor& goal, double wanted, std::initializer_list<QColor> grounds)
{
    for (int percent = 0; percent < 100; percent += 2) {
        const QColor moved = mixed(color, goal, percent / 100.0);
        if (std::all_of(grounds.begin(), grounds.end(),
                        [&](const QColor& ground) { return contrast(moved, ground) >= wanted; }))
            return moved;
    }
    return goal;
}

struct GivenRole {
    QColor ThemeRoles::*role = nullptr;
    std::array<unsigned, allAppThemes.size()> colors{}; ///< by theme
};

constexpr GivenRole givenRoles[] = {
    {&ThemeRoles::window, {0xF0F1F4, 0x151A2D, 0x0E1A15, 0x1F1F1F}},
    {&ThemeRoles::panel, {0xFAFAFC, 0x1C223A, 0x14251E, 0x292929}},
    {&ThemeRoles::sheet, {0xFAFAFC, 0x1E2540, 0x162A22, 0x2B2B2B}},
    {&ThemeRoles::field, {0xFFFFFF, 0x121729, 0x0B1712, 0x1A1A1A}},
    {&ThemeRoles::log, {0xFFFFFF, 0x10152A, 0x0A1510, 0x181818}},
    {&ThemeRoles::button, {0xFFFFFF, 0x2D3554, 0x224035, 0x3D3D3D}},
    {&ThemeRoles::border, {0xD0D3DA, 0x3A4261, 0x2F4A3F, 0x474747}},
    {&ThemeRoles::control, {0x858A96, 0x717BA0, 0x67857A, 0x838383}},
    {&ThemeRoles::primary, {0x1B1D22, 0xEDF0FA, 0xEAF5EF, 0xEFEFEF}},
    {&ThemeRoles::secondary, {0x5A5F6B, 0xAAB3CF, 0xA6BDB2, 0xB2B2B2}},
    {&ThemeRoles::disabled, {0x9EA2AC, 0x656E8E, 0x5F776C, 0x747474}},
    {&ThemeRoles::success, {0x1A7A3C, 0x5BD18B, 0x62D991, 0x5BD18B}},
    {&ThemeRoles::successGround, {0xE6F5EA, 0x173A36, 0x173B2A, 0x213A2B}},
    {&ThemeRoles::warning, {0x8A5600, 0xF0B94D, 0xF0B94D, 0xF0B94D}},
    {&ThemeRoles::warningGround, {0xFFF4DC, 0x38301F, 0x352F1B, 0x393222}},
    {&ThemeRoles::error, {0xC02B20, 0xFF8A80, 0xFF8A80, 0xFF8A80}},
    {&ThemeRoles::errorGround, {0xFDECEA, 0x3D2230, 0x3A2524, 0x412A28}},
    {&ThemeRoles::checkerFirst, {0xFFFFFF, 0x121729, 0x0B1712, 0x1A1A1A}},
    {&ThemeRoles::checkerSecond, {0xE9EBF0, 0x232738, 0x1C2723, 0x2A2A2A}},
};

} // namespace

double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

ThemeRoles roles(AppTheme theme, const QColor& systemAccent)
{
    const ThemePalette given = palette(theme, systemAccent);
    const QColor black(0, 0, 0);
    const QColor white(255, 255, 255);
    const bool dark = isDark(theme);
    const QColor away = dark ? white : black;
    const QColor accent = given.accent;
    const QColor chrome = given.chromeGradient[0];

    ThemeRoles r;
    for (const auto& each : givenRoles)
        r.*each.role = QColor::fromRgb(each.colors.at(static_cast<std::size_t>(theme)));
    const bool whiteInk = contrast(white, accent) >= readableWhite;
    r.onAccent = whiteInk ? white : mixed(accent, black, 0.86);
    r.accentFill = movedUntil(accent, whiteInk ? black : white, readableText, {r.onAccent});
    r.accentSoft = mixed(r.panel, accent, dark ? 0.24 : 0.16);
    r.selection = mixed(r.panel, accent, dark ? 0.22 : 0.14);
    r.accentText = movedUntil(accent, away, accentTextContrast, {r.panel, r.sheet, chrome, r.field, r.accentSoft});
    r.focus = movedUntil(accent, away, visibleRing, {r.panel, r.field, chrome});
    return r;
}

} // namespace velmora
