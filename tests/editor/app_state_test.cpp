#include "worlds/editor_world.h"

#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

/// The state with one of everything: an item beside the Applications link, the default arrow and caption.
struct FilledWorld : EditorWorld {
    FilledWorld()
    {
        state.addFiles({folder / "A.app"});
        save();
        item = state.project().items.back().id;
    }
    void save() { state.write(folder / "clean.velmora"); }

    Uuid item{};
    const Uuid arrow = state.project().overlayImages.front().id;
    const Uuid caption = state.project().textOverlays.front().id;
};

TEST(AppState, beginsWithTheUnmodifiedStarterProject)
{
    EditorWorld world;
    EXPECT_FALSE(world.state.isDirty());
    EXPECT_EQ(world.state.documentName(), "Untitled.velmora");
    EXPECT_EQ(world.state.project().overlayImages.size(), 1U);
    EXPECT_EQ(world.state.project().items.size(), 1U);
    EXPECT_FALSE(world.state.canUndo());
}

TEST(AppState, selectsOneThingAtATime)
{
    using Change = std::function<void(AppState&, FilledWorld&)>;
    const Change item = [](AppState& s, FilledWorld& w) { s.selectItem(w.item); };
    const Change arrow = [](AppState& s, FilledWorld& w) { s.selectOverlay(w.arrow); };
    const Change caption = [](AppState& s, FilledWorld& w) { s.selectTextOverlay(w.caption); };
    using Events = std::vector<std::string>;
    const struct {
        const char* name;
        Change before;
        Change change;
        Events events;
    } cases[] = {
        {"an item", arrow, item, {"item+", "overlay-"}},
        {"an item instead of a caption", caption, item, {"item+", "text-"}},
        {"no item keeps the overlay", arrow, [](auto& s, auto&) { s.selectItem({}); }, {}},
        {"an overlay", item, arrow, {"overlay+", "item-", "background", "tab 3"}},
        {"no overlay keeps the item", item, [](auto& s, auto&) { s.selectOverlay({}); }, {}},
        {"no overlay", arrow, [](auto& s, auto&) { s.selectOverlay({}); }, {"overlay-"}},
        {"a caption", arrow, caption, {"text+", "overlay-"}},
        {"no caption keeps the item", item, [](auto& s, auto&) { s.selectTextOverlay({}); }, {}},
        {"background", item, [](auto& s, auto&) { s.editBackground(); }, {"background", "item-"}},
        {"background keeps the overlay", arrow, [](auto& s, auto&) { s.editBackground(); }, {"tab 0"}},
        {"contents", arrow, [](auto& s, auto&) { s.editContents(); }, {"contents", "overlay-"}},
        {"contents keep the item", item, [](auto& s, auto&) { s.editContents(); }, {}},
        {"licenses keep everything", caption, [](auto& s, auto&) { s.editLicenses(); }, {"licenses"}},
        {"the picker", item, [](auto& s, auto&) { s.presentOverlayPicker(); }, {"background", "picker"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FilledWorld world;
        c.before(world.state, world);
        const auto& events = world.record();
        c.change(world.state, world);
        EXPECT_EQ(events, c.events);
        EXPECT_FALSE(world.state.isDirty());
    }
}

TEST(AppState, findsWhatIsSelected)
{
    FilledWorld world;
    AppState& state = world.state;
    state.selectItem(world.item);
    ASSERT_TRUE(state.selectedItem());
    EXPECT_EQ(state.selectedItem()->displayName, "A.app");
    EXPECT_TRUE(state.canRemoveSelection());
    state.selectItem(Uuid::random());
    EXPECT_FALSE(state.selectedItem());
    EXPECT_TRUE(state.canRemoveSelection()) << "the id counts, not whether it still exists";
    state.selectItem({});
    EXPECT_FALSE(state.canRemoveSelection());

    state.edit({}, [](DMGProject& project) { project.backgroundImagePath = "/picture.png"; });
    EXPECT_FALSE(state.canRemoveSelection()) << "the gradient is shown";
    state.edit({}, [](DMGProject& project) { project.backgroundKind = BackgroundKind::image; });
    EXPECT_TRUE(state.canRemoveSelection());
}

TEST(AppState, bindsToAnElementByItsId)
{
    FilledWorld world;
    AppState& state = world.state;
    EXPECT_FALSE(state.binding(Uuid::random()));
    EXPECT_FALSE(state.overlayBinding(world.item)) << "the id of another kind of element";
    EXPECT_TRUE(state.overlayBinding(world.arrow));
    EXPECT_TRUE(state.textOverlayBinding(world.caption));

    const auto binding = state.binding(world.item);
    ASSERT_TRUE(binding);
    const auto& events = world.record();
    DMGItem item = binding->read();
    binding->write(item);
    EXPECT_EQ(events, (std::vector<std::string>{"project", "dirty+"})) << "even an unchanged element marks";
    item.hidden = true;
    binding->write(item);
    EXPECT_TRUE(state.project().items.back().hidden);

    state.remove(world.item);
    world.save();
    binding->write(item);
    EXPECT_FALSE(state.isDirty());
    EXPECT_NE(binding->read().id, world.item);
    EXPECT_EQ(binding->read().displayName, "");
}

TEST(AppState, undoesWithTheSelectionAndTheModifiedMark)
{
    FilledWorld world;
    AppState& state = world.state;
    state.selectOverlay(world.arrow);
    const DMGProject saved = state.project();
    state.removeSelectedOrBackground();
    state.editContents();
    EXPECT_TRUE(state.isDirty());

    const auto& events = world.record();
    state.undo();
    EXPECT_EQ(events, (std::vector<std::string>{"project", "overlay+", "background", "dirty-"}));
    EXPECT_EQ(state.project(), saved);
    EXPECT_EQ(state.overlaySelection(), world.arrow);
    state.undo(); // before the file was added
    EXPECT_TRUE(state.isDirty());
    EXPECT_EQ(state.project().items.size(), 1U);
    state.redo();
    EXPECT_FALSE(state.isDirty());
    state.redo();
    EXPECT_TRUE(state.isDirty());
    EXPECT_EQ(state.overlaySelection(), std::nullopt);
    EXPECT_TRUE(state.project().overlayImages.empty());
}

TEST(AppState, makesOneStepOfAGestureHoweverLongItTakes)
{
    FilledWorld world;
    AppState& state = world.state;
    const DMGProject before = state.project();
    const auto dragTo = [&](double x) {
        world.now += std::chrono::seconds(10);
        state.selectItem(world.item); // as the canvas does at every event
        DMGItem item = state.binding(world.item)->read();
        item.x = x;
        state.binding(world.item)->write(item);
    };
    state.beginGesture();
    dragTo(100);
    dragTo(200);
    state.endGesture();
    state.beginGesture();
    dragTo(300);
    state.undo(); // in the middle of the second
    EXPECT_EQ(state.project().items.back().x, 200);
    state.undo();
    EXPECT_EQ(state.project(), before);
    EXPECT_FALSE(state.isDirty());

    state.beginGesture();
    dragTo(400);
    dragTo(500);
    state.cancelGesture();
    EXPECT_EQ(state.project(), before);
    EXPECT_FALSE(state.isDirty());
    dragTo(600);
    dragTo(700);
    state.undo();
    EXPECT_EQ(state.project().items.back().x, 600) << "outside a gesture each is a step";
}

TEST(AppState, endsARunOfTypingWithACommand)
{
    using Change = std::function<void(FilledWorld&)>;
    const struct {
        const char* name;
        Change between;
        std::size_t steps;
    } cases[] = {
        {"nothing", [](auto&) {}, 1},
        {"the field loses its focus", [](auto& w) { w.state.endTypingRun(); }, 2},
        {"a selection", [](auto& w) { w.state.selectItem(w.item); }, 2},
        {"a command that changes nothing", [](auto& w) { w.state.addFiles({}); }, 2},
        {"a save", [](auto& w) { w.save(); }, 2},
        {"a pause", [](auto& w) { w.now += std::chrono::seconds(2); }, 2},
        {"another command", [](auto& w) { w.state.addApplicationsLink(); }, 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        FilledWorld world;
        const auto type = [&](const std::string& text) {
            world.state.edit({"volumeName", {}}, [&](DMGProject& project) { project.volumeName = text; });
        };
        const DMGProject before = world.state.project();
        type("N");
        type("Ne");
        c.between(world);
        type("New");
        std::size_t steps = 0;
        for (; world.state.project() != before && world.state.canUndo(); ++steps)
            world.state.undo();
        EXPECT_EQ(steps, c.steps);
    }
}

TEST(AppState, migratesLegacyPositionsWithoutMarkingTheDocument)
{
    FilledWorld world;
    AppState& state = world.state;
    state.edit({}, [](DMGProject& project) { project.iconUsesTopLeftCoords = true; });
    world.save();
    const double x = state.project().items.back().x;
    state.migrateLegacyIconCoordinates();
    EXPECT_EQ(state.project().items.back().x, x + 68);
    EXPECT_FALSE(state.isDirty());
    state.migrateLegacyIconCoordinates();
    EXPECT_EQ(state.project().items.back().x, x + 68);
    state.undo();
    state.redo();
    EXPECT_EQ(state.project().items.back().x, x + 68) << "it is no step";
    EXPECT_FALSE(state.isDirty());
}

} // namespace
} // namespace velmora::testing
