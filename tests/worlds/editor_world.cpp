#include "worlds/editor_world.h"

#include "render/picture.h"

#include <QEventLoop>
#include <QImage>
#include <QTimer>
#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

template <typename T>
std::optional<T> next(std::deque<T>& answers)
{
    if (answers.empty())
        return std::nullopt;
    T answer = std::move(answers.front());
    answers.pop_front();
    return answer;
}

void writePicture(const fs::path& path, int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(Qt::red);
    BuildWorld::write(path, encodePng(image, 72).toStdString()); // a pixel is a point
}

fs::path makeResources(const fs::path& folder)
{
    writePicture(folder / "Arrows/arrow_pro_swoosh.png", 40, 10);
    return folder;
}

/// Which of the fields that are stored one after another differ, each with a blank in front.
std::string changedFields(const DMGProject& before, const DMGProject& after)
{
    std::string names;
    const auto compare = [&](const char* name, const auto& read) {
        if (read(before) != read(after))
            names += std::string(" ") + name;
    };
    compare("width", [](const DMGProject& p) { return p.windowWidth; });
    compare("height", [](const DMGProject& p) { return p.windowHeight; });
    compare("kind", [](const DMGProject& p) { return p.backgroundKind; });
    compare("path", [](const DMGProject& p) { return p.backgroundImagePath; });
    compare("fit", [](const DMGProject& p) { return p.backgroundImageFit; });
    compare("scale", [](const DMGProject& p) { return p.backgroundImageScale; });
    compare("offsetX", [](const DMGProject& p) { return p.backgroundImageOffsetX; });
    compare("offsetY", [](const DMGProject& p) { return p.backgroundImageOffsetY; });
    if (!before.textOverlays.empty() && !after.textOverlays.empty()) {
        compare("fontName", [](const DMGProject& p) { return p.textOverlays.front().fontName; });
        compare("fontSize", [](const DMGProject& p) { return p.textOverlays.front().fontSize; });
    }
    return names;
}

} // namespace

std::vector<fs::path> ScriptedPanels::open(const OpenPanelRequest& request)
{
    opened.push_back(request);
    return next(toOpen).value_or(std::vector<fs::path>());
}

std::optional<fs::path> ScriptedPanels::save(const SavePanelRequest& request)
{
    saved.push_back(request);
    return next(toSave);
}

std::size_t ScriptedAlerts::show(const Alert& alert)
{
    shown.push_back(alert);
    return next(answers).value_or(alert.buttons.empty() ? 0 : alert.buttons.size() - 1);
}

void ScriptedFontPanel::present(const FontChoice& font, std::function<void(const FontChoice&)> chosen)
{
    current = font;
    choose = std::move(chosen);
}

std::optional<std::string> MemorySettings::stringValue(const std::string& key) const
{
    const auto found = texts.find(key);
    return found == texts.end() ? std::nullopt : std::optional(found->second);
}

EditorWorld::EditorWorld()
    : arrows({makeResources(build.home / "resources"), build.home / "support", build.home / "arrows"}, pictures),
      m_state(makeState()),
      state(*m_state)
{
}

std::unique_ptr<AppState> EditorWorld::makeState()
{
    const auto environment = [this](StopToken stop) {
        BuildEnvironment result = build.environment();
        result.arrows = &arrows;
        result.cache = &pictures;
        result.stop = buildStop = stop;
        return result;
    };
    return std::make_unique<AppState>(EditorPorts{.panels = panels,
                                                  .alerts = alerts,
                                                  .fontPanel = fontPanel,
                                                  .desktop = desktop,
                                                  .settings = settings,
                                                  .pictures = pictures,
                                                  .arrows = arrows,
                                                  .buildEnvironment = environment,
                                                  .now = [this] { return now; }});
}

fs::path EditorWorld::picture(const std::string& name, int width, int height) const
{
    writePicture(folder / name, width, height);
    return folder / name;
}

void EditorWorld::waitForBuild()
{
    QEventLoop loop;
    QObject::connect(&state, &AppState::isBuildingChanged, &loop, &QEventLoop::quit);
    QTimer::singleShot(std::chrono::seconds(30), &loop, &QEventLoop::quit);
    loop.exec();
    ASSERT_FALSE(state.isBuilding()) << "the build does not end";
}

std::vector<std::string>& EditorWorld::record()
{
    m_events.clear();
    AppState* s = &state;
    const auto tell = [this, s](void (AppState::*changed)(), const std::function<std::string()>& text) {
        QObject::connect(s, changed, s, [this, text] { m_events.push_back(text()); });
    };
    const auto mark = [](bool set) { return set ? "+" : "-"; };
    tell(&AppState::projectChanged, [s, seen = s->project()]() mutable {
        const std::string fields = changedFields(seen, s->project());
        seen = s->project();
        return "project" + fields;
    });
    tell(&AppState::selectionChanged, [=] { return std::string("item") + mark(s->selection().has_value()); });
    tell(&AppState::overlaySelectionChanged,
         [=] { return std::string("overlay") + mark(s->overlaySelection().has_value()); });
    tell(&AppState::textSelectionChanged, [=] { return std::string("text") + mark(s->textSelection().has_value()); });
    tell(&AppState::editorModeChanged, [=] {
        return s->editorMode() == EditorMode::contents
                   ? "contents"
                   : (s->editorMode() == EditorMode::background ? "background" : "licenses");
    });
    tell(&AppState::inspectorTabChanged, [=] { return "tab " + std::to_string(s->inspectorTab()); });
    tell(&AppState::documentURLChanged, [=] { return "document " + s->documentName(); });
    tell(&AppState::isDirtyChanged, [=] { return std::string("dirty") + mark(s->isDirty()); });
    tell(&AppState::isBuildingChanged, [=] { return std::string("building") + mark(s->isBuilding()); });
    tell(&AppState::lastOutputURLChanged, [=] { return std::string("output") + mark(s->lastOutputURL().has_value()); });
    tell(&AppState::buildErrorChanged, [=] { return std::string("error") + mark(s->buildError().has_value()); });
    tell(&AppState::showArrowPickerChanged, [] { return "picker"; });
    tell(&AppState::buildFinished, [] { return "finished"; });
    tell(&AppState::objectChanged, [] { return "object"; });
    return m_events;
}

Alert plainAlert(const std::string& text)
{
    return {.title = "Velmora", .text = text, .style = AlertStyle::warning, .buttons = {}};
}

} // namespace velmora::testing
