#pragma once

#include "app/theme/app_theme.h"
#include "platform/settings.h"

#include <QColor>
#include <QObject>

#include <functional>
#include <memory>

namespace velmora
{

/// The accent where the desktop offers none.
QColor defaultSystemAccent();

/// The chosen theme. It stores the choice and says when windows are to take it on; whoever owns the windows does that.
/// Used on the user-interface thread.
class ThemeManager : public QObject
{
    Q_OBJECT

public:
    /// The settings key of the chosen theme's raw value.
    static constexpr const char* storageKey = "appTheme";

    /// Starts with the theme that the store names, else with `system`; themeChanged() follows from the event loop.
    /// `systemAccent` answers the desktop's accent at the moment of the question.
    explicit ThemeManager(std::unique_ptr<SettingsStore> store,
                          std::function<QColor()> systemAccent = defaultSystemAccent);

    /// The program's one manager, made on first use over the user's settings.
    static ThemeManager& shared();

    [[nodiscard]] AppTheme theme() const { return m_theme; }
    /// Chooses a theme, the present one included: stores it at once and applies it.
    void setTheme(AppTheme theme);

    [[nodiscard]] QColor accent() const { return palette().accent; }
    [[nodiscard]] ColorScheme colorScheme() const { return velmora::colorScheme(m_theme); }
    [[nodiscard]] ThemePalette palette() const { return velmora::palette(m_theme, m_systemAccent()); }

    /// The desktop's accent at this moment.
    [[nodiscard]] QColor systemAccent() const { return m_systemAccent(); }
    /// Hands in where the desktop's accent comes from, and applies the theme.
    void setSystemAccent(std::function<QColor()> systemAccent);
    /// Has every window take on the theme; call it when a window is new or the desktop's accent has changed.
    void applyEverywhere() { emit themeChanged(); }

signals:
    /// The application and its windows are to take on the theme's appearance and colours, even when they have not
    /// changed.
    void themeChanged();

private:
    std::unique_ptr<SettingsStore> m_store;
    std::function<QColor()> m_systemAccent;
    AppTheme m_theme = AppTheme::system;
};

} // namespace velmora
