#include "app/theme/theme_manager.h"

#include <QMetaObject>

#include <string>
#include <utility>

namespace velmora
{
namespace
{

/// A theme of earlier versions.
constexpr std::string_view retiredTheme = "Sunset";

AppTheme storedTheme(SettingsStore& store)
{
    const auto raw = store.stringValue(ThemeManager::storageKey);
    if (!raw)
        return AppTheme::system;
    if (*raw == retiredTheme) {
        store.setString(ThemeManager::storageKey, std::string(rawValue(AppTheme::skyBlue)));
        return AppTheme::skyBlue;
    }
    // A name that this version does not know stays stored: another version may know it.
    return appThemeFromRawValue(*raw).value_or(AppTheme::system);
}

} // namespace

QColor defaultSystemAccent()
{
    return QColor(0x0A, 0x6B, 0xDE);
}

ThemeManager::ThemeManager(std::unique_ptr<SettingsStore> store, std::function<QColor()> systemAccent)
    : m_store(std::move(store)), m_systemAccent(std::move(systemAccent)), m_theme(storedTheme(*m_store))
{
    // Dropped by itself when the manager is gone first.
    QMetaObject::invokeMethod(this, &ThemeManager::applyEverywhere, Qt::QueuedConnection);
}

ThemeManager& ThemeManager::shared()
{
    static ThemeManager manager(openUserSettings());
    return manager;
}

void ThemeManager::setTheme(AppTheme theme)
{
    m_theme = theme;
    m_store->setString(storageKey, std::string(rawValue(theme)));
    applyEverywhere();
}

void ThemeManager::setSystemAccent(std::function<QColor()> systemAccent)
{
    m_systemAccent = std::move(systemAccent);
    applyEverywhere();
}

} // namespace velmora
