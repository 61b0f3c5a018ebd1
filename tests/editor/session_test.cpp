#include "worlds/editor_world.h"

#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

TEST(Session, goesFromANewProjectToAnImageAndBack)
{
    EditorWorld world;
    AppState& state = world.state;
    std::vector<DMGProject> states; // after every step
    const auto did = [&](const char* step) {
        SCOPED_TRACE(step);
        EXPECT_TRUE(state.isDirty());
        EXPECT_TRUE(states.empty() || state.project() != states.back());
        states.push_back(state.project());
    };
    state.newProject();
    states.push_back(state.project());

    world.panels.toOpen = {{world.build.source / "My App.app"}};
    state.addFilesViaPanel();
    did("add files");
    state.presentOverlayPicker();
    state.addBuiltInArrow("arrow_blue_bold", Point{300, 250});
    did("add an arrow");
    const Uuid arrow = *state.overlaySelection();
    state.addTextOverlay();
    did("add a caption");
    const Uuid caption = *state.textSelection();
    state.commitTextOverlayBounds(caption, {10, 20, 200, 36});
    did("move the caption");
    state.centerTextOverlayOnCanvas(true, false, caption);
    did("centre the caption");
    state.selectOverlay(arrow);
    state.nudgeSelection(0, -10);
    state.nudgeSelection(0, -10);
    did("nudge the arrow");

    for (std::size_t step = states.size() - 1; step-- > 0;) {
        state.undo();
        EXPECT_EQ(state.project(), states[step]);
    }
    EXPECT_FALSE(state.canUndo());
    EXPECT_FALSE(state.isDirty());
    EXPECT_FALSE(state.overlaySelection());
    for (std::size_t step = 1; step < states.size(); ++step) {
        state.redo();
        EXPECT_EQ(state.project(), states[step]);
    }
    EXPECT_FALSE(state.canRedo());
    EXPECT_EQ(state.overlaySelection(), arrow);

    world.panels.toSave = {world.folder / "My App.velmora"};
    state.save();
    EXPECT_FALSE(state.isDirty());
    state.newProject();
    world.panels.toOpen = {{world.folder / "My App.velmora"}};
    state.open();
    EXPECT_EQ(state.project(), states.back());

    world.build.tools->answers["hdiutil create"] = {{1, "", "disk full"}};
    world.panels.toSave = {world.build.output};
    state.build();
    world.waitForBuild();
    EXPECT_EQ(state.buildError(), "hdiutil create failed:\ndisk full");
    world.build.tools->answers.erase("hdiutil create");
    world.panels.toSave = {world.build.output};
    state.build();
    world.waitForBuild();
    EXPECT_EQ(state.lastOutputURL(), world.build.output);
    EXPECT_FALSE(state.buildError());
    EXPECT_TRUE(world.build.scratchFiles().empty());

    world.alerts.answers = {0};
    state.resetToDefaultSettings();
    EXPECT_EQ(state.project().overlayImages.size(), 1U);
    state.undo();
    EXPECT_EQ(state.project(), states.back());
    EXPECT_FALSE(state.isDirty());
    EXPECT_EQ(world.alerts.shown.size(), 1U);
}

} // namespace
} // namespace velmora::testing
