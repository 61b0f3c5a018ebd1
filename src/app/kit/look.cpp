#include "app/kit/look.h"

#include "app/kit/accessibility.h"
#include "app/kit/velmora_style.h"
#include "app/theme/theme_manager.h"

#include <QApplication>
#include <QFontDatabase>
#include <QFontInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QStyleHints>
#include <QToolTip>
#include <QWidget>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmora
{
namespace
{

struct TypeRow {
    int size = 12;
    int line = 16;
    QFont::Weight weight = QFont::Normal;
    double tracking = 100; ///< percent
    bool fixed = false;
};

// In the order of the enumeration.
constexpr std::array typeRows{
    TypeRow{20, 26, QFont::DemiBold, 98},
    TypeRow{16, 22, QFont::DemiBold},
    TypeRow{15, 20, QFont::DemiBold},
    TypeRow{13, 18, QFont::Normal},
    TypeRow{13, 18, QFont::Medium},
    TypeRow{13, 18, QFont::DemiBold},
    TypeRow{12, 16, QFont::Normal},
    TypeRow{12, 16, QFont::Medium},
    TypeRow{12, 16, QFont::DemiBold},
    TypeRow{11, 15, QFont::Normal},
    TypeRow{11, 13, QFont::Medium},
    TypeRow{11, 13, QFont::DemiBold},
    TypeRow{10, 12, QFont::Medium},
    TypeRow{11, 17, QFont::Normal, 100, true},
    TypeRow{13, 21, QFont::Normal, 100, true},
};

const TypeRow& typeRow(Type type)
{
    return typeRows.at(static_cast<std::size_t>(type));
}

// A font a little larger than the measures were made for still fits them; from here on everything grows with it.
constexpr double designedFontSize = 13;
constexpr double toleratedScale = 1.15;
constexpr double largestScale = 1.5;

double scaleFor(double fontPixelSize)
{
    const double scale = fontPixelSize / designedFontSize;
    return scale > toleratedScale ? std::min(scale, largestScale) : 1;
}

/// Qt has no question for these two; the desktops write the answers into their toolkits' settings.
void readToolkitSettings(DesktopLook& desktop)
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    for (const char* file : {"/gtk-3.0/settings.ini", "/gtk-4.0/settings.ini"}) {
        const QSettings gtk(folder + QLatin1String(file), QSettings::IniFormat);
        const QString animations = gtk.value("Settings/gtk-enable-animations", "true").toString();
        if (animations == QLatin1String("false") || animations == QLatin1String("0"))
            desktop.reducedMotion = true;
        if (gtk.value("Settings/gtk-theme-name").toString().startsWith(QLatin1String("HighContrast")))
            desktop.raisedContrast = true;
    }
    const QSettings plasma(folder + QLatin1String("/kdeglobals"), QSettings::IniFormat);
    if (plasma.value("KDE/AnimationDurationFactor", 1).toDouble() == 0)
        desktop.reducedMotion = true;
    const QStringList accent = plasma.value("AccentColor").toStringList(); // QSettings drops "General"
    if (accent.size() >= 3) {
        const QColor color(accent[0].toInt(), accent[1].toInt(), accent[2].toInt());
        constexpr double grey = 0.1;
        if (color.isValid() && color.hsvSaturationF() > grey)
            desktop.accent = color;
    }
}

void setInk(QPalette& palette, QPalette::ColorGroup group, const QColor& ink)
{
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(group, role, ink);
}

} // namespace

DesktopLook readDesktop()
{
    DesktopLook desktop;
    const QFont general = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    desktop.family = general.family();
    desktop.fixedFamily = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    desktop.fontPixelSize = QFontInfo(general).pixelSize();
    readToolkitSettings(desktop);
    return desktop;
}

int Look::length(double points) const
{
    return static_cast<int>(std::lround(points * scale));
}

QFont Look::font(Type type) const
{
    const TypeRow& row = typeRow(type);
    QFont font(row.fixed ? fixedFamily : family);
    font.setPixelSize(std::max(1, length(row.size)));
    font.setWeight(row.weight);
    if (row.tracking != 100)
        font.setLetterSpacing(QFont::PercentageSpacing, row.tracking);
    if (row.fixed)
        font.setStyleHint(QFont::Monospace);
    return font;
}

int Look::lineHeight(Type type) const
{
    return length(typeRow(type).line);
}

Look makeLook(AppTheme theme, const QColor& systemAccent, const DesktopLook& desktop)
{
    Look look;
    look.theme = theme;
    look.palette = palette(theme, systemAccent);
    look.roles = roles(theme, systemAccent);
    look.family = desktop.family;
    look.fixedFamily = desktop.fixedFamily;
    look.scale = scaleFor(desktop.fontPixelSize);
    look.reducedMotion = desktop.reducedMotion;
    look.raisedContrast = desktop.raisedContrast;
    if (look.raisedContrast) {
        look.roles.border = look.roles.control;
        QColor& divider = look.palette.dividerColor;
        divider.setAlphaF(std::min(1.0F, divider.alphaF() * 2));
    }
    return look;
}

QPalette paletteOf(const Look& look)
{
    const ThemeRoles& roles = look.roles;
    QPalette palette(roles.button, roles.window);
    palette.setColor(QPalette::Window, roles.window);
    palette.setColor(QPalette::Base, roles.field);
    palette.setColor(QPalette::AlternateBase, roles.panel);
    palette.setColor(QPalette::Button, roles.button);
    setInk(palette, QPalette::All, roles.primary);
    palette.setColor(QPalette::PlaceholderText, roles.secondary);
    palette.setColor(QPalette::BrightText, roles.error);
    palette.setColor(QPalette::Highlight, roles.accentFill);
    palette.setColor(QPalette::HighlightedText, roles.onAccent);
    palette.setColor(QPalette::Link, roles.accentText);
    palette.setColor(QPalette::LinkVisited, roles.accentText);
    palette.setColor(QPalette::ToolTipBase, roles.sheet);
    palette.setColor(QPalette::ToolTipText, roles.primary);
    palette.setColor(QPalette::Light, look.dark() ? roles.button.lighter(115) : QColor(Qt::white));
    palette.setColor(QPalette::Midlight, roles.button);
    palette.setColor(QPalette::Mid, roles.border);
    palette.setColor(QPalette::Dark, roles.control);
    palette.setColor(QPalette::Shadow, Qt::black);
    setInk(palette, QPalette::Disabled, roles.disabled);
    palette.setColor(QPalette::Disabled, QPalette::PlaceholderText, roles.disabled);
    palette.setColor(QPalette::Disabled, QPalette::Highlight, roles.selection);
    palette.setColor(QPalette::Disabled, QPalette::HighlightedText, roles.disabled);
    return palette;
}

void applyLook(QApplication& application, const Look& look)
{
    if (auto* style = dynamic_cast<VelmoraStyle*>(QApplication::style()))
        style->setLook(look);
    else
        QApplication::setStyle(new VelmoraStyle(look));
    QApplication::setPalette(paletteOf(look));
    QPalette menus = paletteOf(look);
    menus.setColor(QPalette::Window, look.roles.sheet);
    QApplication::setPalette(menus, "QMenu");
    QToolTip::setPalette(menus);
    QApplication::setFont(look.font(Type::control));
    QApplication::setFont(look.font(Type::body), "QMenu");
    QApplication::setFont(look.font(Type::body), "QMenuBar");
    QApplication::setFont(look.font(Type::hint), "QTipLabel");
    installAccessibility();
    application.styleHints()->setTabFocusBehavior(Qt::TabFocusAllControls);
    // What reads the record while it paints learns of the change by nothing else.
    for (QWidget* widget : QApplication::allWidgets())
        widget->update();
}

const Look& lookOf(const QWidget* widget)
{
    const QStyle* style = widget ? widget->style() : QApplication::style();
    if (const auto* own = dynamic_cast<const VelmoraStyle*>(style))
        return own->look();
    static const Look light = makeLook(AppTheme::system, defaultSystemAccent(), readDesktop());
    return light;
}

} // namespace velmora
