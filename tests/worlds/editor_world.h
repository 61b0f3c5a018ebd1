#pragma once

#include "editor/app_state.h"
#include "platform/ports/alerts.h"
#include "platform/ports/desktop.h"
#include "platform/ports/file_panels.h"
#include "platform/ports/font_panel.h"
#include "platform/settings.h"
#include "worlds/build_world.h"

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmora::testing
{

namespace fs = std::filesystem;

/// Answers from a list; without an answer the person gives up.
struct ScriptedPanels : FilePanels {
    std::deque<std::vector<fs::path>> toOpen{};
    std::deque<fs::path> toSave{};
    std::vector<OpenPanelRequest> opened{};
    std::vector<SavePanelRequest> saved{};

    std::vector<fs::path> open(const OpenPanelRequest& request) override;
    std::optional<fs::path> save(const SavePanelRequest& request) override;
};

/// Answers from a list; without an answer the alert is closed.
struct ScriptedAlerts : Alerts {
    std::deque<std::size_t> answers{};
    std::vector<Alert> shown{};
    std::size_t show(const Alert& alert) override;
};

struct ScriptedFontPanel : FontPanel {
    FontChoice current{};
    std::function<void(const FontChoice&)> choose{};
    void present(const FontChoice& font, std::function<void(const FontChoice&)> chosen) override;
};

struct RecordingDesktop : Desktop {
    std::vector<fs::path> revealed{};
    void reveal(const fs::path& file) override { revealed.push_back(file); }
    void openFolder(const fs::path&) override {}
    void openAddress(const std::string&) override {}
};

struct MemorySettings : SettingsStore {
    std::map<std::string, std::string> texts{};
    [[nodiscard]] std::optional<std::string> stringValue(const std::string& key) const override;
    [[nodiscard]] std::optional<bool> boolValue(const std::string&) const override { return {}; }
    [[nodiscard]] std::optional<std::int64_t> intValue(const std::string&) const override { return {}; }
    void setString(const std::string& key, const std::string& value) override { texts[key] = value; }
    void setBool(const std::string&, bool) override {}
    void setInt(const std::string&, std::int64_t) override {}
};

/// An editor state whose world is a temporary folder, scripts of answers and tools that only pretend.
class EditorWorld
{
public:
    EditorWorld();

    /// Writes a PNG file and returns its path.
    [[nodiscard]] fs::path picture(const std::string& name, int width, int height) const;
    [[nodiscard]] std::unique_ptr<AppState> makeState();
    /// Runs the event loop until the build is over.
    void waitForBuild();
    /// The alert that the program showed last.
    [[nodiscard]] Alert lastAlert() const { return alerts.shown.empty() ? Alert{} : alerts.shown.back(); }
    /// Everything that the state's signals tell from now on, in order.
    std::vector<std::string>& record();

    BuildWorld build{};
    const fs::path folder = build.output.parent_path();
    ScriptedPanels panels{};
    ScriptedAlerts alerts{};
    ScriptedFontPanel fontPanel{};
    RecordingDesktop desktop{};
    MemorySettings settings{};
    OverlayImageCache pictures{};
    BuiltInArrowLibrary arrows;
    std::chrono::steady_clock::time_point now{};
    StopToken buildStop{}; ///< of the latest build

private:
    std::vector<std::string> m_events{};
    std::unique_ptr<AppState> m_state{};

public:
    AppState& state;
};

/// The message box for failures.
Alert plainAlert(const std::string& text);

} // namespace velmora::testing
