#include "app/theme/app_theme.h"
#include "app/theme/theme_roles.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

static void PrintTo(const QColor& color, std::ostream* out)
{
    *out << color.name(QColor::HexArgb).toStdString();
}

namespace velmora
{
namespace
{

const QColor orange(0xF2, 0x8C, 0x1E);

/// "#AARRGGBB" of each, separated by blanks.
template <typename... Colors>
std::string names(const Colors&... colors)
{
    std::string text;
    ((text += (text.empty() ? "" : " ") + colors.name(QColor::HexArgb).toStdString()), ...);
    return text;
}

TEST(AppTheme, hasItsGivenColours)
{
    const struct {
        const char* raw;
        bool dark;
        std::string accentAndSwatch;
        std::string chromeAndCanvas;
    } cases[] = {
        {"Default", false, "#fff28c1e #ffe0e0e0", "#fff7f7f7 #ffebebeb #fff5f7fc"},
        {"Midnight Blue", true, "#ff2e7af5 #ff141c38", "#ff242b47 #ff171c33 #ff1c2133"},
        {"Emerald", true, "#ff1abd7a #ff0f3829", "#ff1a3329 #ff0f241c #ff17241f"},
        {"Sky Blue", true, "#ff3b8ed0 #ff212121", "#ff333333 #ff2b2b2b #ff212121"},
    };
    ASSERT_EQ(std::size(cases), allAppThemes.size());
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& c = cases[i];
        SCOPED_TRACE(c.raw);
        const AppTheme theme = allAppThemes[i];
        EXPECT_EQ(rawValue(theme), c.raw);
        EXPECT_EQ(appThemeFromRawValue(c.raw), theme);
        EXPECT_EQ(isDark(theme), c.dark);
        const auto p = palette(theme, orange);
        EXPECT_EQ(names(p.accent, p.swatchSecondary), c.accentAndSwatch);
        EXPECT_EQ(names(p.chromeGradient[0], p.chromeGradient[1], p.canvasBackground), c.chromeAndCanvas);
        EXPECT_EQ(names(p.canvasGridMinor, p.canvasGridMajor, p.dividerColor, p.hoverFill),
                  c.dark ? "#0fffffff #1affffff #1fffffff #14ffffff" : "#99ccd9eb #b3b8c9e0 #1f000000 #0f000000");
    }
    EXPECT_EQ(appThemeFromRawValue("emerald"), std::nullopt);
    EXPECT_EQ(appThemeFromRawValue("Sunset"), std::nullopt);
}

TEST(ThemeRoles, deriveTheAccentsOfTheOrdinaryThemes)
{
    const QColor blue(0x0A, 0x6B, 0xDE);
    // accentFill, accentText, accentSoft, selection, focus
    const std::string expected[] = {
        "#ff0a6bde #ff095ec3 #ffd4e3f7 #ffd8e6f8 #ff0a6bde",
        "#ff2a70e1 #ff71a5f8 #ff203767 #ff203563 #ff2e7af5",
        "#ff1abd7a #ff31c487 #ff154934 #ff154632 #ff1abd7a",
        "#ff3b8ed0 #ff7ab2df #ff2d4151 #ff2d3f4e #ff3b8ed0",
    };
    for (std::size_t i = 0; i < allAppThemes.size(); ++i) {
        const auto r = roles(allAppThemes[i], blue);
        EXPECT_EQ(names(r.accentFill, r.accentText, r.accentSoft, r.selection, r.focus), expected[i]);
    }
    EXPECT_EQ(roles(AppTheme::midnight, blue).onAccent, QColor(Qt::white));
    EXPECT_LT(roles(AppTheme::emerald, blue).onAccent.lightness(), 20);
}

TEST(ThemeRoles, canBeReadWithAnyAccent)
{
    const QColor accents[] = {
        QColor(0, 0, 0),          QColor(255, 255, 255),    QColor(0xFF, 0xCC, 0x00), QColor(0xFF, 0x3B, 0x30),
        QColor(0x8C, 0x8C, 0x8C), QColor(0x76, 0x76, 0x76), QColor(0x34, 0xC7, 0x59), QColor(0xAF, 0x52, 0xDE),
        QColor(0xFF, 0x2D, 0x55), QColor(0x00, 0xFF, 0xFF), QColor(0x00, 0x00, 0xFF), orange,
    };
    for (const AppTheme theme : allAppThemes) {
        for (const QColor& accent : accents) {
            SCOPED_TRACE(std::string(rawValue(theme)) + " " + names(accent));
            const auto r = roles(theme, accent);
            const auto chrome = palette(theme, accent).chromeGradient[0];
            EXPECT_GE(contrast(r.onAccent, r.accentFill), 4.5);
            for (const QColor& ground : {r.panel, r.sheet, chrome, r.field, r.accentSoft})
                EXPECT_GE(contrast(r.accentText, ground), 4.6) << names(ground);
            for (const QColor& ground : {r.panel, r.field, chrome})
                EXPECT_GE(contrast(r.focus, ground), 3.0) << names(ground);
            for (const QColor& ground : {r.panel, r.field, chrome, r.button, r.selection, r.accentSoft})
                EXPECT_GE(contrast(r.primary, ground), 4.5) << names(ground);
            for (const QColor& ground : {r.panel, r.button, r.log, chrome})
                EXPECT_GE(contrast(r.secondary, ground), 4.5) << names(ground);
            EXPECT_GE(contrast(r.success, r.successGround), 4.5);
            EXPECT_GE(contrast(r.warning, r.warningGround), 4.5);
            EXPECT_GE(contrast(r.error, r.errorGround), 4.5);
        }
    }
    EXPECT_DOUBLE_EQ(contrast(QColor(Qt::black), QColor(Qt::white)), 21);
}

} // namespace
} // namespace velmora
