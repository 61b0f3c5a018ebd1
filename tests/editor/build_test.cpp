#include "worlds/editor_world.h"

#include "platform/file_tree.h"

#include <QCoreApplication>
#include <gtest/gtest.h>

#include <future>
#include <regex>

namespace velmora::testing
{
namespace
{

using Names = std::vector<std::string>;

/// A project that can be built, with the place for its image chosen.
struct BuildableWorld : EditorWorld {
    BuildableWorld()
    {
        state.edit({}, [this](DMGProject& project) { project = build.typicalProject(); });
        panels.toSave = {build.output};
    }
    /// Holds the build at the attaching of its image until release(), or for as long as it is not stopped.
    void hold()
    {
        build.tools->before = [this](const std::string& tool) {
            if (tool != "hdiutil attach")
                return;
            m_reached.set_value();
            while (m_released.wait_for(std::chrono::milliseconds(5)) != std::future_status::ready &&
                   !buildStop.stopRequested()) {
            }
        };
    }
    void waitUntilHeld() { m_reached.get_future().wait(); }
    void release() { m_release.set_value(); }

private:
    std::promise<void> m_reached{};
    std::promise<void> m_release{};
    std::future<void> m_released = m_release.get_future();
};

/// Scratch folders have other names in every build.
std::string withoutUuids(const std::string& text)
{
    return std::regex_replace(text, std::regex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}"), "UUID");
}

TEST(Building, makesTheImageAndTellsEachLineInOrder)
{
    BuildableWorld world;
    AppState& state = world.state;
    std::string appended;
    QObject::connect(&state, &AppState::buildLogAppended, [&](const std::string& text) { appended += text; });
    double fraction = 0;
    QObject::connect(&state, &AppState::buildStepChanged, [&](BuildStep, double done) { fraction = done; });
    const auto& events = world.record();
    state.build();
    EXPECT_TRUE(state.isBuilding());
    world.waitForBuild();
    EXPECT_EQ(events, (Names{"building+", "building-", "output+", "finished"}));
    EXPECT_EQ(state.lastOutputURL(), world.build.output);
    EXPECT_FALSE(state.buildError());
    EXPECT_EQ(BuildWorld::read(world.build.output), "final");
    EXPECT_EQ(fraction, 1);
    EXPECT_EQ(world.panels.saved,
              (std::vector<SavePanelRequest>{
                  {.proposedName = "My App.dmg", .type = {"Disk Image", {"dmg"}}, .extension = "dmg"}}));
    // The log of the same build on this thread is the measure.
    ASSERT_EQ(world.build.build(world.build.typicalProject()), "");
    std::string expected;
    for (const std::string& line : world.build.log)
        expected += line + "\n";
    EXPECT_EQ(withoutUuids(state.buildLog()), withoutUuids(expected));
    EXPECT_EQ(appended, state.buildLog());

    state.revealLastOutput();
    EXPECT_EQ(world.desktop.revealed, std::vector<fs::path>{world.build.output});
}

TEST(Building, endsAFailureWithItsReason)
{
    BuildableWorld world;
    AppState& state = world.state;
    world.build.tools->answers["hdiutil convert"] = {{1, "", "no space"}};
    const auto& events = world.record();
    state.build();
    world.waitForBuild();
    EXPECT_EQ(events, (Names{"building+", "building-", "error+", "finished"}));
    EXPECT_EQ(state.buildError(), "hdiutil convert failed:\nno space");
    const std::string end = "\n\n❌ hdiutil convert failed:\nno space\n";
    EXPECT_EQ(state.buildLog().substr(state.buildLog().size() - end.size()), end);
    EXPECT_TRUE(world.alerts.shown.empty());
    EXPECT_TRUE(world.build.scratchFiles().empty());
    state.revealLastOutput();
    EXPECT_TRUE(world.desktop.revealed.empty());

    const std::string log = state.buildLog();
    state.build(); // given up
    EXPECT_EQ(state.buildLog(), log);
    EXPECT_TRUE(state.buildError());
    EXPECT_FALSE(state.isBuilding());

    world.build.tools->answers.erase("hdiutil convert");
    world.panels.toSave = {world.build.output};
    state.build();
    EXPECT_FALSE(state.buildError());
    EXPECT_EQ(state.buildLog(), "");
    world.waitForBuild();
    EXPECT_TRUE(state.lastOutputURL());
}

TEST(Building, logsEveryWarningOnce)
{
    BuildableWorld world;
    AppState& state = world.state;
    const fs::path folder = world.folder / ".background";
    fs::create_directory(folder);
    state.addFiles({folder}); // told by the build itself
    state.edit({}, [](DMGProject& project) {
        project.overlayImages.push_back({.sourcePath = "/nowhere/gone.png"}); // told at its end
    });
    state.build();
    world.waitForBuild();
    ASSERT_FALSE(state.buildError()) << *state.buildError();
    ASSERT_EQ(state.buildWarnings().size(), 2U);
    for (const std::string& warning : state.buildWarnings()) {
        SCOPED_TRACE(warning);
        const std::string line = "⚠️ " + warning + "\n";
        const std::size_t first = state.buildLog().find(line);
        ASSERT_NE(first, std::string::npos);
        EXPECT_EQ(state.buildLog().find(line, first + 1), std::string::npos);
    }
}

TEST(Building, worksOnACopyAndAlone)
{
    BuildableWorld world;
    AppState& state = world.state;
    state.edit({}, [](DMGProject& project) { project.iconUsesTopLeftCoords = true; });
    state.write(world.folder / "A.velmora");
    world.hold();
    state.build();
    EXPECT_FALSE(state.project().iconUsesTopLeftCoords) << "the open project is migrated as well";
    EXPECT_FALSE(state.isDirty());
    world.waitUntilHeld();
    state.edit({}, [](DMGProject& project) { project.format = DMGFormat::readOnly; });
    world.panels.toSave = {world.folder / "second.dmg"};
    state.build();
    EXPECT_EQ(world.panels.saved.size(), 1U) << "it does not even ask";
    state.newProject(); // harmless meanwhile
    world.release();
    world.waitForBuild();
    EXPECT_FALSE(state.buildError());
    const ToolCall* convert = world.build.tools->find("hdiutil convert");
    ASSERT_TRUE(convert);
    EXPECT_EQ(convert->arguments[3], "UDZO");
    EXPECT_FALSE(fs::exists(world.folder / "second.dmg"));
}

TEST(Building, knowsWhatAFailureIsAbout)
{
    BuildableWorld world;
    AppState& state = world.state;
    const std::string source = state.project().items.at(0).sourcePath;
    const Uuid item = state.project().items.at(0).id;
    state.edit({}, [](DMGProject& project) { project.items[0].sourcePath = "/nowhere"; });
    state.build();
    state.moveItem(item, 2);
    world.waitForBuild();
    EXPECT_EQ(state.buildErrorField(), (ProblemField{"items[0].sourcePath", item}));

    state.edit({}, [&](DMGProject& project) {
        project.items[1].sourcePath = source;
        project.encryption = ImageEncryption::aes256;
    });
    world.panels.toSave = {world.build.output};
    state.build();
    world.waitForBuild();
    EXPECT_EQ(state.buildErrorField(), (ProblemField{"encryptionPassword", {}}));
}

TEST(Building, isStoppedByQuittingOnlyWhenSoAnswered)
{
    constexpr std::size_t stop = 0;
    constexpr std::size_t dontSave = 1;
    BuildableWorld world;
    AppState& state = world.state;
    world.hold();
    state.build();
    world.waitUntilHeld();
    EXPECT_FALSE(state.confirmQuit()); // closed without an answer
    EXPECT_EQ(world.lastAlert().buttons, (Names{"Stop Build and Quit", "Cancel"}));
    world.alerts.answers = {stop};
    EXPECT_FALSE(state.confirmQuit()) << "the second question was cancelled";
    EXPECT_FALSE(world.buildStop.stopRequested());
    world.alerts.answers = {stop, dontSave};
    EXPECT_TRUE(state.confirmQuit());
    EXPECT_FALSE(state.isBuilding());
    EXPECT_EQ(state.buildError(), "Build stopped.");
    EXPECT_TRUE(world.build.scratchFiles().empty());
    EXPECT_TRUE(world.build.tools->attached.empty());
    EXPECT_FALSE(fs::exists(world.build.output));
    state.stopBuild(); // nothing is running
}

TEST(Building, mayBeCutShortByTheEndOfTheEditor)
{
    BuildableWorld world;
    auto other = world.makeState();
    other->edit({}, [&](DMGProject& project) { project = world.build.typicalProject(); });
    world.hold();
    other->build();
    world.waitUntilHeld();
    other.reset();
    EXPECT_TRUE(world.build.scratchFiles().empty());
    QCoreApplication::processEvents(); // what was posted meanwhile reaches nobody
}

TEST(Building, failsWhenItCannotBegin)
{
    EditorWorld world;
    AppState state({.panels = world.panels,
                    .alerts = world.alerts,
                    .fontPanel = world.fontPanel,
                    .desktop = world.desktop,
                    .settings = world.settings,
                    .pictures = world.pictures,
                    .arrows = world.arrows,
                    .buildEnvironment = [](StopToken) -> BuildEnvironment { throw FileError("No room."); }});
    world.panels.toSave = {world.folder / "A.dmg"};
    state.build();
    EXPECT_FALSE(state.isBuilding());
    EXPECT_EQ(state.buildError(), "No room.");
    EXPECT_EQ(state.buildLog(), "\n❌ No room.\n");
}

} // namespace
} // namespace velmora::testing
