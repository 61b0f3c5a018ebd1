#pragma once

#include "app/theme/theme_manager.h"
#include "editor/app_state.h"
#include "platform/ports/alerts.h"
#include "platform/ports/desktop.h"
#include "platform/ports/file_panels.h"
#include "platform/ports/font_panel.h"
#include "platform/settings.h"
#include "render/built_in_arrows.h"
#include "render/overlay_images.h"

#include <filesystem>
#include <memory>

namespace velmora::bench
{

/// An editor state in a folder of its own that nobody answers.
class CanvasBenchWorld
{
    struct NoPanels : FilePanels {
        std::vector<std::filesystem::path> open(const OpenPanelRequest&) override { return {}; }
        std::optional<std::filesystem::path> save(const SavePanelRequest&) override { return {}; }
    };
    struct NoAlerts : Alerts {
        std::size_t show(const Alert&) override { return 0; }
    };
    struct NoFontPanel : FontPanel {
        void present(const FontChoice&, std::function<void(const FontChoice&)>) override {}
    };
    struct NoDesktop : Desktop {
        void reveal(const std::filesystem::path&) override {}
        void openFolder(const std::filesystem::path&) override {}
        void openAddress(const std::string&) override {}
    };
    struct NoSettings : SettingsStore {
        [[nodiscard]] std::optional<std::string> stringValue(const std::string&) const override { return {}; }
        [[nodiscard]] std::optional<bool> boolValue(const std::string&) const override { return {}; }
        [[nodiscard]] std::optional<std::int64_t> intValue(const std::string&) const override { return {}; }
        void setString(const std::string&, const std::string&) override {}
        void setBool(const std::string&, bool) override {}
        void setInt(const std::string&, std::int64_t) override {}
    };

    NoPanels m_panels{};
    NoAlerts m_alerts{};
    NoFontPanel m_fontPanel{};
    NoDesktop m_desktop{};
    NoSettings m_settings{};

public:
    explicit CanvasBenchWorld(const std::filesystem::path& folder) : arrows({{}, folder, folder}, pictures) {}

    OverlayImageCache pictures{};
    BuiltInArrowLibrary arrows;
    ThemeManager themes{std::make_unique<NoSettings>()};
    AppState state{EditorPorts{.panels = m_panels,
                               .alerts = m_alerts,
                               .fontPanel = m_fontPanel,
                               .desktop = m_desktop,
                               .settings = m_settings,
                               .pictures = pictures,
                               .arrows = arrows,
                               .buildEnvironment = [](StopToken) { return BuildEnvironment{}; }}};
};

} // namespace velmora::bench
