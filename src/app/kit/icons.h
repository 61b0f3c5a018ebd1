#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QStringList>

namespace velmora
{

struct Look;

/// The two colours of an icon: its lines and the one flat area behind them. A transparent tone leaves the area out.
struct IconColors {
    QColor ink{};
    QColor tone{};
};

/// The colours of an icon on a quiet ground: the area is the accent, thin.
IconColors iconColors(const Look& look, bool enabled = true);
/// The same on what is selected.
IconColors selectedIconColors(const Look& look);
/// The same on a control filled with the accent.
IconColors filledIconColors(const Look& look);

/// The names of all icons of the family.
QStringList iconNames();

/// An icon of the family in `size` device-independent pixels, rendered for `ratio` device pixels each and kept. The
/// line is heavier the smaller the icon, so that all sizes look alike. A null picture when no icon has this name.
QPixmap iconPixmap(const QString& name, int size, double ratio, const IconColors& colors);

/// `secondary` is for signs that stand back behind a text.
enum class IconInk { primary, secondary };

/// The icon for buttons, menus and actions; its colours are the look's at the time of painting.
QIcon toolIcon(const QString& name, IconInk ink = IconInk::primary);

/// The program's own icon, in every size.
QIcon programIcon();
/// The same as a picture of `size` device-independent pixels.
QPixmap programIconPixmap(int size, double ratio);

} // namespace velmora
