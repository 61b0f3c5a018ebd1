#pragma once

#include "app/theme/app_theme.h"

#include <QColor>

namespace velmora
{

/// What the editor's controls and texts are painted with, by role. All opaque sRGB.
struct ThemeRoles {
    QColor window{};
    QColor panel{};
    QColor sheet{};
    QColor field{};
    QColor log{}; ///< the ground of a log
    QColor button{};
    QColor border{};  ///< decoration
    QColor control{}; ///< the outline of check boxes, wells and dials
    QColor primary{}; ///< text
    QColor secondary{};
    QColor disabled{};
    QColor accentFill{}; ///< the ground of what is filled with the accent
    QColor onAccent{};   ///< text on accentFill
    QColor accentText{}; ///< accented text on panel, sheet, chrome, field and accentSoft
    QColor accentSoft{}; ///< the ground of a selected tool or tile
    QColor selection{};  ///< the ground of a selected row
    QColor focus{};      ///< the ring around what has the focus
    QColor success{};    ///< marks and text of good news, on its ground
    QColor successGround{};
    QColor warning{};
    QColor warningGround{};
    QColor error{};
    QColor errorGround{};
    QColor checkerFirst{}; ///< the squares behind transparent pictures
    QColor checkerSecond{};

    bool operator==(const ThemeRoles&) const = default;
};

/// The roles of a theme. Those of the accent are derived from it, because a desktop's accent may be any colour: the
/// accent is moved towards black or white until text on it and text of it can be read.
ThemeRoles roles(AppTheme theme, const QColor& systemAccent);

/// How well one colour can be read on another: the contrast ratio of WCAG 2.1 ("contrast ratio", "relative luminance"),
/// from 1 to 21. Both are taken as opaque.
double contrast(const QColor& one, const QColor& other);

} // namespace velmora
