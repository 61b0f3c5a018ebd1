#include "app/theme/theme_manager.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

namespace velmora
{
namespace
{

class ThemeManagerTest : public testing::Test
{
protected:
    [[nodiscard]] std::unique_ptr<SettingsStore> store() const { return openSettingsFile(m_file); }
    [[nodiscard]] std::optional<std::string> stored() const { return store()->stringValue("appTheme"); }
    void storeTheme(const std::string& raw) { store()->setString("appTheme", raw); }

private:
    QTemporaryDir m_folder;
    std::filesystem::path m_file = std::filesystem::path(m_folder.path().toStdString()) / "settings.ini";
};

TEST_F(ThemeManagerTest, comesUpWithTheStoredTheme)
{
    const struct {
        std::optional<std::string> before;
        AppTheme theme;
        std::optional<std::string> after;
    } cases[] = {
        {std::nullopt, AppTheme::system, std::nullopt},
        {"Emerald", AppTheme::emerald, "Emerald"},
        {"Sunset", AppTheme::skyBlue, "Sky Blue"},
        {"Aurora", AppTheme::system, "Aurora"},
        {"", AppTheme::system, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.before.value_or("nothing stored"));
        if (c.before)
            storeTheme(*c.before);
        const ThemeManager manager(store());
        EXPECT_EQ(manager.theme(), c.theme);
        EXPECT_EQ(stored(), c.after);
    }
}

TEST_F(ThemeManagerTest, storesAChoiceBeforeItTellsOfIt)
{
    storeTheme("Aurora");
    ThemeManager manager(store());
    std::vector<std::optional<std::string>> seen;
    QObject::connect(&manager, &ThemeManager::themeChanged, &manager, [&] { seen.push_back(stored()); });

    manager.setTheme(AppTheme::system); // already in force, but only as the stand-in for an unknown one
    manager.setTheme(AppTheme::midnight);
    EXPECT_EQ(seen, (std::vector<std::optional<std::string>>{"Default", "Midnight Blue"}));
    EXPECT_EQ(manager.colorScheme(), ColorScheme::dark);
    EXPECT_EQ(ThemeManager(store()).theme(), AppTheme::midnight) << "it survives a restart";
}

TEST_F(ThemeManagerTest, appliesTheFirstThemeFromTheEventLoop)
{
    int applied = 0;
    {
        ThemeManager manager(store());
        QObject::connect(&manager, &ThemeManager::themeChanged, &manager, [&] { ++applied; });
        EXPECT_EQ(applied, 0);
        QCoreApplication::processEvents();
        EXPECT_EQ(applied, 1);
        const ThemeManager gone(store());
        QObject::connect(&gone, &ThemeManager::themeChanged, [&] { ++applied; });
    }
    QCoreApplication::processEvents();
    EXPECT_EQ(applied, 1) << "nothing comes from a manager that is gone";
}

TEST_F(ThemeManagerTest, followsTheDesktopsAccentInTheSystemThemeOnly)
{
    QColor desktop(1, 2, 3);
    ThemeManager manager(store(), [&] { return desktop; });
    EXPECT_EQ(manager.accent(), QColor(1, 2, 3));
    desktop = QColor(4, 5, 6);
    EXPECT_EQ(manager.accent(), QColor(4, 5, 6));

    int applied = 0;
    QObject::connect(&manager, &ThemeManager::themeChanged, &manager, [&] { ++applied; });
    manager.setSystemAccent([] { return QColor(7, 8, 9); });
    EXPECT_EQ(applied, 1);
    EXPECT_EQ(manager.accent(), QColor(7, 8, 9));
    manager.setTheme(AppTheme::emerald);
    EXPECT_EQ(manager.accent().name(), "#1abd7a");
}

} // namespace
} // namespace velmora
