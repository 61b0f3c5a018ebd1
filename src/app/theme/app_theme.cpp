#include "app/theme/app_theme.h"

namespace velmora
{
namespace
{

struct Rgb {
    float r = 0;
    float g = 0;
    float b = 0;
};

constexpr Rgb white(float level)
{
    return {level, level, level};
}

struct Row {
    AppTheme theme = AppTheme::system;
    std::string_view name{};
    std::string_view blurb{};
    ColorScheme scheme = ColorScheme::light;
    std::optional<Rgb> accent{}; ///< absent: the desktop's
    Rgb swatchSecondary{};
    Rgb chromeFirst{};
    Rgb chromeSecond{};
    Rgb canvasBackground{};
};

// In the order of the enumeration.
constexpr std::array rows{
    Row{AppTheme::system,
        "Default",
        "Main light app appearance (default)",
        ColorScheme::light,
        std::nullopt,
        white(0.88F),
        white(0.97F),
        white(0.92F),
        {0.96F, 0.97F, 0.99F}},
    Row{AppTheme::midnight,
        "Midnight Blue",
        "Dark chrome · vivid blue accents",
        ColorScheme::dark,
        Rgb{0.18F, 0.48F, 0.96F},
        {0.08F, 0.11F, 0.22F},
        {0.14F, 0.17F, 0.28F},
        {0.09F, 0.11F, 0.2F},
        {0.11F, 0.13F, 0.2F}},
    Row{AppTheme::emerald,
        "Emerald",
        "Dark chrome · emerald green accents",
        ColorScheme::dark,
        Rgb{0.1F, 0.74F, 0.48F},
        {0.06F, 0.22F, 0.16F},
        {0.1F, 0.2F, 0.16F},
        {0.06F, 0.14F, 0.11F},
        {0.09F, 0.14F, 0.12F}},
    Row{AppTheme::skyBlue, "Sky Blue", "CustomTkinter dark · sky-blue accents", ColorScheme::dark,
        Rgb{0.231F, 0.557F, 0.816F}, white(0.13F), white(0.2F), white(0.17F), white(0.13F)},
};

const Row& row(AppTheme theme)
{
    return rows.at(static_cast<std::size_t>(theme));
}

QColor color(Rgb rgb, float alpha = 1)
{
    return QColor::fromRgbF(rgb.r, rgb.g, rgb.b, alpha);
}

} // namespace

std::string_view rawValue(AppTheme theme)
{
    return row(theme).name;
}

std::optional<AppTheme> appThemeFromRawValue(std::string_view raw)
{
    for (const auto& each : rows) {
        if (each.name == raw)
            return each.theme;
    }
    return std::nullopt;
}

std::string_view displayName(AppTheme theme)
{
    return row(theme).name;
}

std::string_view blurb(AppTheme theme)
{
    return row(theme).blurb;
}

ColorScheme colorScheme(AppTheme theme)
{
    return row(theme).scheme;
}

bool isDark(AppTheme theme)
{
    return colorScheme(theme) == ColorScheme::dark;
}

ThemePalette palette(AppTheme theme, const QColor& systemAccent)
{
    const Row& given = row(theme);
    const bool dark = isDark(theme);
    const Rgb ink = dark ? white(1) : white(0);
    ThemePalette result;
    result.accent = given.accent ? color(*given.accent) : systemAccent;
    result.swatchSecondary = color(given.swatchSecondary);
    result.chromeGradient = {color(given.chromeFirst), color(given.chromeSecond)};
    result.canvasBackground = color(given.canvasBackground);
    result.canvasGridMinor = dark ? color(ink, 0.06F) : color({0.8F, 0.85F, 0.92F}, 0.6F);
    result.canvasGridMajor = dark ? color(ink, 0.1F) : color({0.72F, 0.79F, 0.88F}, 0.7F);
    result.dividerColor = color(ink, 0.12F);
    result.hoverFill = color(ink, dark ? 0.08F : 0.06F);
    return result;
}

} // namespace velmora
