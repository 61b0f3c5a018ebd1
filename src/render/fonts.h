#pragma once

#include <QFont>
#include <QString>

#include <optional>
#include <string>

/// Fonts by PostScript name, the way projects name them.
///
/// The program brings one family along so that captions look the same on a machine without fonts, and because the
/// default caption font, Helvetica Neue, exists on Apple systems only. It is TeX Gyre Heros: its letter shapes and
/// widths are Helvetica's, whereas the other candidate, Liberation Sans, has the right widths but another design.
/// Heros' own line height is a fifth too large, so a stand-in carries the line metrics of the font it stands for.
namespace velmora::Fonts
{

/// A font's vertical metrics as parts of the font size.
struct LineMetrics {
    double ascent = 0;
    double descent = 0;
    double leading = 0;
};

/// What a font name led to.
struct Resolved {
    QFont font{};                       ///< unhinted, at `referencePixels`
    QString familyName{};               ///< for a person; a stand-in shows the name of what it stands for
    std::optional<LineMetrics> lines{}; ///< to use instead of the font's own metrics
    bool found = false;                 ///< the font itself or its equal; false: something else had to be taken
};

/// Pixel size of every resolved font. Text is laid out at this size and the painter scaled, so that fractional sizes
/// are exact and lines break alike at every resolution. Sizes from 64 to 256 give the same pictures.
inline constexpr int referencePixels = 128;

/// The font whose PostScript name is exactly `name` (letter case counts); for the names of Helvetica and Helvetica
/// Neue the bundled family where the machine lacks them; else the system font, or the bundled one on a machine
/// without fonts. Answers are kept. Any thread; needs a QGuiApplication.
Resolved resolve(const std::string& name);

} // namespace velmora::Fonts
