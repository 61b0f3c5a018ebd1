#pragma once

namespace velmora
{

class AppState;
class BuiltInArrowLibrary;
class Desktop;
class LanguageManager;
class OverlayImageCache;
class SettingsStore;
class ThemeManager;
class Updater;

/// What the program's windows work with. Everything referred to outlives them.
struct AppContext {
    AppState& state;
    ThemeManager& themes;
    LanguageManager& languages;
    Updater& updater;
    SettingsStore& settings;
    Desktop& desktop;
    OverlayImageCache& pictures;
    const BuiltInArrowLibrary& arrows;
};

} // namespace velmora
