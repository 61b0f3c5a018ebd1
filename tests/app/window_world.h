#pragma once

#include "app/kit/look.h"
#include "app/main_window.h"
#include "app/theme/theme_manager.h"
#include "l10n/language_manager.h"
#include "update/updater.h"
#include "worlds/editor_world.h"

#include <QAction>
#include <QApplication>
#include <QTest>

namespace velmora::testing
{

/// Has the application take on the light look without motion, as the program does before it makes a window.
struct StillLook {
    StillLook()
    {
        DesktopLook desktop = readDesktop();
        desktop.reducedMotion = true;
        applyLook(*qApp, makeLook(AppTheme::system, defaultSystemAccent(), desktop));
    }
};

/// The editor's window over a world that only pretends.
struct WindowWorld : EditorWorld {
    std::unique_ptr<SettingsStore> store = openSettingsFile(folder / "settings.ini");
    ThemeManager themes{openSettingsFile(folder / "theme.ini")};
    LanguageManager languages{openSettingsFile(folder / "language.ini"), [] { return std::vector<std::string>{}; }};
    Updater updater{officialUpdateSource(), *store, alerts, desktop};
    std::unique_ptr<MainWindow> window = std::make_unique<MainWindow>(AppContext{.state = state,
                                                                                 .themes = themes,
                                                                                 .languages = languages,
                                                                                 .updater = updater,
                                                                                 .settings = *store,
                                                                                 .desktop = desktop,
                                                                                 .pictures = pictures,
                                                                                 .arrows = arrows});

    void show()
    {
        window->showAtStart();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    /// A control or action by its object name; the test ends without it.
    template <typename T = QWidget>
    T& the(const char* name)
    {
        T* found = window->findChild<T*>(QLatin1String(name));
        if (!found)
            throw std::runtime_error(std::string("there is no ") + name);
        return *found;
    }
    void click(const char* name) { QTest::mouseClick(&the(name), Qt::LeftButton); }
    void choose(const char* action) { the<QAction>(action).trigger(); }
    bool isEnabled(const char* action) { return the<QAction>(action).isEnabled(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QWidget* focus = QApplication::focusWidget();
        QTest::keyClick(focus ? focus : window.get(), key, modifiers);
    }
};

} // namespace velmora::testing
