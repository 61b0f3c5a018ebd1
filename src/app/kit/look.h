#pragma once

#include "app/theme/app_theme.h"
#include "app/theme/theme_roles.h"

#include <QFont>
#include <QPalette>
#include <QString>

class QApplication;
class QWidget;

namespace velmora
{

/// The type sizes by what they are used for. The number is the size, in points of the interface.
enum class Type {
    pageTitle,     ///< 20 semibold, slightly tightened
    sheetTitle,    ///< 16 semibold
    panelHead,     ///< 15 semibold
    body,          ///< 13: settings rows, menus
    bodyMedium,    ///< 13: large buttons
    bodyStrong,    ///< 13 semibold: large default buttons, titles of empty states
    control,       ///< 12: rows and fields
    controlMedium, ///< 12: buttons
    controlStrong, ///< 12 semibold: section headers, default buttons
    hint,          ///< 11: hints, units, notes
    hintMedium,    ///< 11: labels of tools
    hintStrong,    ///< 11 semibold: the label of the filled tool
    tab,           ///< 10 medium
    log,           ///< 11 of the fixed font
    document,      ///< 13 of the fixed font
};

/// What the desktop says about how a person reads and what moves; read once, when the program starts.
struct DesktopLook {
    QString family{};            ///< of the interface font
    QString fixedFamily{};       ///< of the fixed font
    double fontPixelSize = 13;   ///< of the interface font
    bool reducedMotion = false;  ///< no animation
    bool raisedContrast = false; ///< stronger outlines
    QColor accent{};             ///< what the desktop marks things with; invalid when it offers none, or a grey
};

/// The running desktop. Needs an application.
DesktopLook readDesktop();

/// Everything a painter has to know, read at paint time and never kept. Lengths in this interface are points; `length`
/// turns them into device-independent pixels.
struct Look {
    AppTheme theme = AppTheme::system;
    ThemePalette palette{};
    ThemeRoles roles{};
    QString family{};
    QString fixedFamily{};
    double scale = 1; ///< device-independent pixels per point: more than 1 where the desktop's font is large
    bool reducedMotion = false;
    bool raisedContrast = false;

    [[nodiscard]] bool dark() const { return isDark(theme); }
    /// Points as whole device-independent pixels.
    [[nodiscard]] int length(double points) const;
    [[nodiscard]] QFont font(Type type) const;
    /// The distance of two lines, in device-independent pixels.
    [[nodiscard]] int lineHeight(Type type) const;
    /// A duration in milliseconds: 0 where motion is reduced.
    [[nodiscard]] int duration(int milliseconds) const { return reducedMotion ? 0 : milliseconds; }
    /// The ink for a control's text.
    [[nodiscard]] QColor ink(bool enabled) const { return enabled ? roles.primary : roles.disabled; }
};

/// The look of a theme on a desktop. `systemAccent` is the desktop's accent, which only the light theme shows.
Look makeLook(AppTheme theme, const QColor& systemAccent, const DesktopLook& desktop);

/// The roles as Qt's own widgets and panels ask for them. Secondary ink is PlaceholderText, the panel AlternateBase,
/// an error BrightText and accented text Link, so a label follows the theme by its foreground role alone.
QPalette paletteOf(const Look& look);

/// Has the whole application take on a look: style, palette and font. Widgets repaint, none is rebuilt; the scale of a
/// look is for the program's lifetime.
void applyLook(QApplication& application, const Look& look);

/// The look that `widget` is painted with: that of the last applyLook(), or the light one before the first.
const Look& lookOf(const QWidget* widget);

/// Lengths in points that more than one control uses.
namespace measure
{
inline constexpr double controlHeight = 24;
inline constexpr double largeControlHeight = 28;
inline constexpr double fieldRadius = 5;
inline constexpr double buttonRadius = 6;
inline constexpr double toolRadius = 8;
inline constexpr double noteRadius = 7;
inline constexpr double fieldInset = 8; ///< from a field's edge to its text
inline constexpr double focusWidth = 2;
inline constexpr double stepperWidth = 17;
inline constexpr double checkSize = 16;
inline constexpr double sliderKnob = 16;
inline constexpr double sliderTrack = 4;
inline constexpr double checkerSquare = 6;
inline constexpr double panelPadding = 16;
inline constexpr double labelWidth = 84;
inline constexpr double rowGap = 8;
inline constexpr double halfControl = 84; ///< one of a pair that shares a row's control
} // namespace measure

/// Durations in milliseconds.
namespace motion
{
inline constexpr int fadeOut = 120; ///< hover and press leaving
inline constexpr int knob = 140;    ///< switch and segments
inline constexpr int sheetIn = 200;
inline constexpr int sheetOut = 140;
inline constexpr int progress = 250;
inline constexpr int turn = 900; ///< one turn of a busy ring
} // namespace motion

} // namespace velmora
