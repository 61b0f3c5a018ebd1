#include "worlds/editor_world.h"

#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

Rect starterBox(const AppState& state)
{
    return state.project().textOverlays.front().bounds();
}

TEST(Operations, storeInTheirOrder)
{
    using Act = std::function<void(EditorWorld&)>;
    const Act selectItem = [](EditorWorld& w) { w.state.selectItem(w.state.project().items.front().id); };
    const Act withPicture = [](EditorWorld& w) {
        w.panels.toOpen = {{w.picture("back.png", 10, 10)}};
        w.state.pickBackgroundImage();
        w.state.edit({}, [](DMGProject& project) {
            project.backgroundImageFit = BackgroundImageFit::stretch;
            project.backgroundImageScale = 2;
            project.backgroundImageOffsetX = project.backgroundImageOffsetY = 7;
        });
        w.state.write(w.folder / "clean.velmora");
        w.state.editContents();
        w.state.setInspectorTab(3);
    };
    const struct {
        const char* name;
        Act before;
        Act act;
        std::vector<std::string> events;
    } cases[] = {
        {"add no files", selectItem, [](auto& w) { w.state.addFiles({}); }, {"dirty+"}},
        {"add files",
         selectItem,
         [](auto& w) {
             w.state.addFiles({"/a", "/b"});
         },
         {"project", "dirty+"}},
        {"remove an unknown item", selectItem, [](auto& w) { w.state.remove(Uuid::random()); }, {"project", "dirty+"}},
        {"remove the selected item",
         selectItem,
         [](auto& w) { w.state.removeSelected(); },
         {"project", "item-", "dirty+"}},
        {"add text",
         selectItem,
         [](auto& w) { w.state.addTextOverlay(); },
         {"background", "project", "text+", "item-", "tab 3", "dirty+"}},
        {"add a picture",
         selectItem,
         [](auto& w) { w.state.addOverlayImage(w.picture("p.png", 9, 9), {}); },
         {"project", "background", "overlay+", "item-", "tab 3", "dirty+"}},
        {"pick a background",
         selectItem,
         [](auto& w) {
             w.state.setInspectorTab(3);
             w.panels.toOpen = {{"/x.png"}};
             w.state.pickBackgroundImage();
         },
         {"tab 3", "project path", "project kind", "project", "project", "project", "project", "dirty+", "background",
          "tab 0", "object"}},
        {"clear the background",
         withPicture,
         [](auto& w) { w.state.clearBackgroundImage(); },
         {"project path", "project fit", "project scale", "project offsetX", "project offsetY", "dirty+", "project",
          "background", "tab 0", "object"}},
        {"nudge the background",
         withPicture,
         [](auto& w) { w.state.nudgeBackgroundImage(1, 2); },
         {"project offsetX", "project offsetY", "dirty+"}},
        {"nudge no background", selectItem, [](auto& w) { w.state.nudgeBackgroundImage(1, 2); }, {}},
        {"fit the window",
         withPicture,
         [](auto& w) { w.state.fitWindowToImage(); },
         {"project width", "project height", "dirty+"}},
        {"fit to no picture", selectItem, [](auto& w) { w.state.fitWindowToImage(); }, {}},
        {"restore the defaults",
         [](auto& w) {
             w.state.selectItem(w.state.project().items.front().id);
             w.state.editBackground();
             w.state.setSelection(w.state.project().items.front().id);
             w.state.setInspectorTab(3);
         },
         [](auto& w) {
             w.alerts.answers = {0};
             w.state.resetToDefaultSettings();
         },
         {"project", "item-", "overlay+", "contents", "tab 0", "dirty+", "object"}},
        {"restore no defaults", selectItem, [](auto& w) { w.state.resetToDefaultSettings(); }, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EditorWorld world;
        c.before(world);
        const DMGProject before = world.state.project();
        const auto& events = world.record();
        c.act(world);
        EXPECT_EQ(events, c.events);
        // However many stores there were, it is one step.
        if (world.state.project() != before) {
            world.state.undo();
            EXPECT_EQ(world.state.project(), before);
        }
    }
}

TEST(Operations, putNewFilesOnTheFreeSlots)
{
    EditorWorld world;
    world.panels.toOpen = {{"/apps/One.app/", "/apps/Ünö.txt"}};
    world.state.addFilesViaPanel();
    EXPECT_EQ(world.panels.opened, (std::vector<OpenPanelRequest>{{.multiple = true, .folders = true}}));
    const auto& items = world.state.project().items;
    ASSERT_EQ(items.size(), 3U);
    EXPECT_EQ(items[1].sourcePath, "/apps/One.app");
    EXPECT_EQ(items[1].displayName, "One.app");
    EXPECT_EQ(items[1].position(), (Point{169, 166}));
    EXPECT_EQ(items[2].displayName, "Ünö.txt");
    EXPECT_EQ(items[2].position(), (Point{319, 120}));

    world.state.edit({}, [](DMGProject& project) { project.items[1].hidden = true; });
    world.state.addFiles({"/c"});
    EXPECT_EQ(world.state.project().items.back().position(), (Point{319, 120}))
        << "neither links nor hidden files count";

    const DMGProject before = world.state.project();
    world.state.write(world.folder / "clean.velmora");
    world.state.addFilesViaPanel(); // given up
    EXPECT_FALSE(world.state.isDirty());
    world.state.addApplicationsLink();
    EXPECT_EQ(world.state.project().items.back().symlinkTarget, "/Applications");
    EXPECT_EQ(world.state.project().items.back().position(), (Point{450, 166}));
}

TEST(Operations, bringANewPictureIntoTheWindow)
{
    // The window's content is 600 × 332.
    const struct {
        const char* name;
        int width;
        int height;
        std::optional<Point> point;
        Rect box;
    } cases[] = {
        {"small, in the middle", 100, 50, {}, {250, 141, 100, 50}},
        {"as large as it may be", 220, 20, {}, {190, 156, 220, 20}},
        {"wide", 1000, 500, {}, {190, 111, 220, 110}},
        {"tall", 10, 440, {}, {297.5, 56, 5, 220}},
        {"at a point", 100, 50, Point{70, 60}, {20, 35, 100, 50}},
        {"top left", 100, 50, Point{10, 10}, {0, 0, 100, 50}},
        {"bottom right", 100, 50, Point{590, 330}, {500, 282, 100, 50}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EditorWorld world;
        const fs::path file = world.picture("picture.png", c.width, c.height);
        world.state.selectTextOverlay(world.state.project().textOverlays.front().id);
        world.panels.toOpen = {{file}};
        world.state.addOverlayImage(c.point);
        ASSERT_TRUE(world.state.selectedOverlay());
        const DMGOverlayImage& overlay = *world.state.selectedOverlay();
        EXPECT_EQ(overlay.bounds(), c.box);
        EXPECT_EQ(overlay.originalWidth, c.box.width);
        EXPECT_EQ(overlay.originalHeight, c.box.height);
        EXPECT_EQ(overlay.sourcePath, file.string());
        EXPECT_TRUE(world.state.textSelection()) << "the selected caption stays selected";
    }
    EditorWorld narrow;
    narrow.state.edit({}, [](DMGProject& project) { project.windowWidth = 150; });
    narrow.state.addOverlayImage(narrow.picture("wide.png", 200, 20), Point{75, 20});
    EXPECT_EQ(narrow.state.selectedOverlay()->x, -50) << "too wide: the right edges meet";
}

TEST(Operations, tellWhichPictureCannotBeOpened)
{
    EditorWorld world;
    const DMGProject before = world.state.project();
    const fs::path text = world.folder / "text.png";
    BuildWorld::write(text, "no picture");
    world.state.addOverlayImage(text, {});
    EXPECT_EQ(world.alerts.shown, (std::vector<Alert>{plainAlert("Could not open image:\n" + text.string())}));
    world.state.addBuiltInArrow("arrow_of_time", {});
    EXPECT_EQ(world.lastAlert(), plainAlert("Could not load built-in arrow."));
    EXPECT_EQ(world.state.project(), before);
    EXPECT_FALSE(world.state.isDirty());
}

TEST(Operations, forgetThePictureOfARemovedOverlay)
{
    EditorWorld world;
    AppState& state = world.state;
    state.addBuiltInArrow("arrow_blue_bold", {});
    const DMGOverlayImage arrow = *state.selectedOverlay();
    EXPECT_EQ(arrow.builtInArrowID, "arrow_blue_bold");
    EXPECT_EQ(arrow.bounds(), (Rect{190, 123, 220, 86}));
    ASSERT_TRUE(world.pictures.image(arrow.sourcePath));
    state.removeSelectedOverlay();
    EXPECT_FALSE(world.pictures.image(arrow.sourcePath));

    state.addBuiltInArrow("arrow_blue_bold", {});
    world.alerts.answers = {0};
    state.resetToDefaultSettings();
    EXPECT_FALSE(world.pictures.image(arrow.sourcePath));
}

TEST(Operations, resizeAndCentreBoxes)
{
    EditorWorld world;
    AppState& state = world.state;
    state.addOverlayImage(world.picture("p.png", 220, 110), {});
    const Uuid overlay = *state.overlaySelection();
    state.commitOverlayBounds(overlay, {700, -20, -300, 110});
    EXPECT_EQ(state.selectedOverlay()->bounds(), (Rect{700, -20, 300, 110})) << "as given, with absolute sizes";
    state.resetOverlayToOriginalSize(overlay);
    EXPECT_EQ(state.selectedOverlay()->bounds(), (Rect{740, -20, 220, 110})) << "about the centre, not clamped";
    state.edit({}, [](DMGProject& p) { p.overlayImages.back().originalWidth = 0; });
    state.commitOverlayBounds(overlay, {0, 0, 100, 50});
    state.resetOverlayToOriginalSize(overlay);
    EXPECT_EQ(state.selectedOverlay()->bounds(), (Rect{0, -30, 100, 110})) << "the unknown width stays";

    const Uuid text = state.project().textOverlays.front().id;
    const struct {
        const char* name;
        Rect box;
        bool horizontal;
        bool vertical;
        Rect centred;
    } cases[] = {
        {"across", {10, 20, 100, 40}, true, false, {250, 20, 100, 40}},
        {"upright", {10, 20, 100, 40}, false, true, {10, 146, 100, 40}},
        {"both", {10, 20, 100, 40}, true, true, {250, 146, 100, 40}},
        {"too wide", {10, 20, 700, 40}, true, false, {0, 20, 700, 40}},
        {"neither, outside", {590, 20, 100, 40}, false, false, {500, 20, 100, 40}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        state.commitTextOverlayBounds(text, c.box);
        EXPECT_EQ(starterBox(state), c.box);
        state.centerTextOverlayOnCanvas(c.horizontal, c.vertical, text);
        EXPECT_EQ(starterBox(state), c.centred);
    }
}

TEST(Operations, storeAStillClickWithoutAStep)
{
    EditorWorld world;
    const DMGOverlayImage arrow = world.state.project().overlayImages.front();
    const auto& events = world.record();
    world.state.commitOverlayBounds(arrow.id, arrow.bounds());
    EXPECT_EQ(events, (std::vector<std::string>{"project", "dirty+"}));
    EXPECT_FALSE(world.state.canUndo());
    world.state.commitOverlayBounds(Uuid::random(), {1, 2, 3, 4});
    EXPECT_EQ(events.size(), 2U);
}

TEST(Operations, removeOneThingAtATime)
{
    EditorWorld world;
    AppState& state = world.state;
    world.panels.toOpen = {{world.picture("back.png", 10, 10)}};
    state.pickBackgroundImage();
    state.selectItem(state.project().items.front().id);
    state.addOverlayImage(world.picture("p.png", 9, 9), {});
    state.selectTextOverlay(state.project().textOverlays.front().id);
    state.setSelection(state.project().items.front().id);
    const auto count = [&] {
        const DMGProject& p = state.project();
        return std::to_string(p.textOverlays.size()) + std::to_string(p.overlayImages.size()) +
               std::to_string(p.items.size()) + (state.hasBackgroundImage() ? "picture" : "");
    };
    EXPECT_EQ(count(), "121picture");
    state.removeSelectedOrBackground();
    EXPECT_EQ(count(), "021picture");
    state.removeSelectedOrBackground();
    EXPECT_EQ(count(), "020picture") << "no overlay is selected any more";
    state.selectOverlay(state.project().overlayImages.back().id);
    state.removeSelectedOrBackground();
    EXPECT_EQ(count(), "010picture");
    state.removeSelectedOrBackground();
    EXPECT_EQ(count(), "010");
    EXPECT_EQ(state.project().backgroundKind, BackgroundKind::image);
    const DMGProject before = state.project();
    state.removeSelectedOrBackground();
    EXPECT_EQ(state.project(), before);
}

TEST(Operations, nudgeWhatIsSelected)
{
    EditorWorld world;
    AppState& state = world.state;
    const DMGProject before = state.project();
    state.nudgeSelection(1, 1);
    EXPECT_EQ(state.project(), before);

    state.selectItem(state.project().items.front().id);
    for (int press = 0; press < 3; ++press)
        state.nudgeSelection(-1, 10);
    EXPECT_EQ(state.selectedItem()->position(), (Point{447, 196}));
    state.undo();
    EXPECT_EQ(state.project(), before) << "repeated presses are one step";

    state.selectOverlay(before.overlayImages.front().id);
    state.nudgeSelection(1, 0);
    EXPECT_DOUBLE_EQ(state.selectedOverlay()->x, 246.67);
    state.selectTextOverlay(before.textOverlays.front().id);
    state.nudgeSelection(0, 1);
    EXPECT_EQ(starterBox(state).y, 273);
}

TEST(Operations, fitTheWindowToThePixelsOfThePicture)
{
    EditorWorld world;
    const fs::path file = world.picture("back.png", 40, 30);
    world.panels.toOpen = {{file}};
    world.state.pickBackgroundImage();
    EXPECT_EQ(world.panels.opened.back().message, "Choose a background image for the DMG window");
    world.state.fitWindowToImage();
    EXPECT_EQ(world.state.project().contentSize(), (Size{40, 30}));
    EXPECT_EQ(world.state.project().windowHeight, 58);

    BuildWorld::write(file, "damaged");
    const DMGProject before = world.state.project();
    world.state.fitWindowToImage();
    EXPECT_EQ(world.state.project(), before);
}

TEST(Operations, restoreTheDefaultsAfterAQuestion)
{
    EditorWorld world;
    AppState& state = world.state;
    state.addFiles({"/a/One.app"});
    state.edit({}, [](DMGProject& project) {
        project.volumeName = "Mine";
        project.encryption = ImageEncryption::aes256;
        project.encryptionPassword = "secret";
        project.items[1].x = 5;
        project.overlayImages.clear();
    });
    state.selectTextOverlay(state.project().textOverlays.front().id);
    const DMGProject before = state.project();
    state.resetToDefaultSettings(); // closed without an answer
    EXPECT_EQ(state.project(), before);
    EXPECT_EQ(world.lastAlert().buttons, (std::vector<std::string>{"Restore Defaults", "Cancel"}));
    EXPECT_EQ(world.lastAlert().title, "Restore Default Settings?");
    EXPECT_EQ(world.lastAlert().style, AlertStyle::informational);

    world.alerts.answers = {0};
    state.resetToDefaultSettings();
    EXPECT_EQ(state.project().volumeName, "Mine");
    EXPECT_EQ(state.project().items[1].x, 169);
    EXPECT_EQ(state.project().encryption, ImageEncryption::none);
    EXPECT_EQ(state.project().encryptionPassword, "");
    EXPECT_TRUE(state.selectedOverlay()) << "the new arrow is selected";
    EXPECT_TRUE(state.textSelection()) << "the caption's selection is left alone";
    state.undo();
    EXPECT_EQ(state.project(), before);
}

TEST(Operations, takeWhatTheFontPanelReturns)
{
    EditorWorld world;
    AppState& state = world.state;
    state.presentFontPanel(Uuid::random());
    EXPECT_FALSE(world.fontPanel.choose);

    const Uuid first = state.project().textOverlays.front().id;
    state.edit({}, [](DMGProject& project) {
        project.textOverlays.front().fontName = "NoSuchFont-Bold";
        project.textOverlays.front().fontSize = 5;
    });
    state.presentFontPanel(first);
    EXPECT_EQ(world.fontPanel.current, (FontChoice{"NoSuchFont-Bold", 8})) << "as small as fonts are shown";
    const auto& events = world.record();
    world.fontPanel.choose({"NoSuchFont-Bold", 30});
    EXPECT_EQ(events, (std::vector<std::string>{"project", "project fontSize", "object"}));
    const auto font = [&] {
        const DMGTextOverlay& text = state.project().textOverlays.front();
        return FontChoice{text.fontName, text.fontSize};
    };
    EXPECT_EQ(font(), (FontChoice{"NoSuchFont-Bold", 30}));
    world.fontPanel.choose({"TeXGyreHeros-Bold", 30});
    EXPECT_EQ(font(), (FontChoice{"TeXGyreHeros-Bold", 30}));
    state.undo();
    EXPECT_EQ(font(), (FontChoice{"NoSuchFont-Bold", 5})) << "trying out fonts is one step";
    world.fontPanel.choose({"TeXGyreHeros-Bold", 31});
    EXPECT_EQ(font(), (FontChoice{"NoSuchFont-Bold", 31})) << "another size alone";

    const auto chooseForFirst = world.fontPanel.choose;
    state.addTextOverlay();
    state.presentFontPanel(*state.textSelection());
    world.fontPanel.choose({"TeXGyreHeros-Italic", 20});
    EXPECT_EQ(font().pointSize, 31) << "the panel belongs to the newer box";

    state.removeTextOverlay(first);
    const DMGProject before = state.project();
    chooseForFirst({"TeXGyreHeros-Bold", 12});
    EXPECT_EQ(state.project(), before);
    auto other = world.makeState();
    other->presentFontPanel(other->project().textOverlays.front().id);
    other.reset();
    world.fontPanel.choose({"TeXGyreHeros-Bold", 12}); // nobody is there any more
}

TEST(Operations, moveItemsInTheirList)
{
    EditorWorld world;
    AppState& state = world.state;
    state.edit({}, [](DMGProject& p) {
        p.items = {{.displayName = "a"}, {.displayName = "b"}, {.displayName = "c"}, {.displayName = "d"}};
    });
    const auto order = [&] {
        std::string names;
        for (const DMGItem& item : state.project().items)
            names += item.displayName;
        return names;
    };
    const DMGProject start = state.project();
    const struct {
        std::size_t item;
        std::size_t row;
        const char* order;
    } cases[] = {
        {0, 0, "abcd"}, {0, 1, "abcd"}, {0, 2, "bacd"}, {0, 4, "bcda"}, {1, 99, "acdb"},
        {3, 0, "dabc"}, {2, 1, "acbd"}, {3, 3, "abcd"}, {3, 4, "abcd"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::to_string(c.item) + " before " + std::to_string(c.row));
        state.moveItem(start.items[c.item].id, c.row);
        EXPECT_EQ(order(), c.order);
        if (order() == "abcd")
            continue;
        EXPECT_EQ(state.undoName(), "Reorder Items");
        state.undo();
        EXPECT_EQ(state.project(), start);
    }
    const bool couldRedo = state.canRedo();
    state.moveItem(Uuid::random(), 0);
    state.moveItem(start.items[0].id, 1);
    EXPECT_EQ(state.canRedo(), couldRedo) << "moving nowhere is no step";
}

TEST(Operations, stackPictures)
{
    EditorWorld world;
    AppState& state = world.state;
    state.edit({}, [](DMGProject& p) { p.overlayImages = {{.sourcePath = "/a"}, {.sourcePath = "/b"}}; });
    const Uuid back = state.project().overlayImages[0].id;
    const auto names = [&] {
        return state.project().overlayImages[0].sourcePath + state.project().overlayImages[1].sourcePath;
    };
    EXPECT_TRUE(state.canBringOverlayForward(back));
    EXPECT_FALSE(state.canSendOverlayBackward(back));
    state.sendOverlayBackward(back);
    EXPECT_EQ(names(), "/a/b");
    state.bringOverlayForward(back);
    EXPECT_EQ(names(), "/b/a");
    EXPECT_FALSE(state.canBringOverlayForward(back));
    state.bringOverlayForward(back);
    EXPECT_EQ(names(), "/b/a");
    state.sendOverlayBackward(back);
    EXPECT_EQ(names(), "/a/b");
    state.undo();
    state.undo();
    EXPECT_EQ(names(), "/a/b");
    EXPECT_FALSE(state.canBringOverlayForward(Uuid::random()));
}

TEST(Operations, replaceWhatAnElementIsMadeOf)
{
    EditorWorld world;
    AppState& state = world.state;
    state.edit({}, [](DMGProject& p) {
        p.items = {{.sourcePath = "/old/Notes.app/", .displayName = "Notes.app"},
                   {.sourcePath = "/old/read.txt", .displayName = "Read Me"}};
        p.overlayImages = {
            {.sourcePath = "/gone.png", .builtInArrowID = "x", .x = 10, .y = 20, .width = 100, .height = 60}};
    });
    const auto item = [&](std::size_t i) -> const DMGItem& { return state.project().items[i]; };
    for (std::size_t i : {0U, 1U}) {
        world.panels.toOpen = {{"/new/Larkspur.app/"}};
        state.replaceItemViaPanel(item(i).id);
        EXPECT_EQ(item(i).sourcePath, "/new/Larkspur.app");
        EXPECT_EQ(state.undoName(), "Replace Item");
    }
    EXPECT_EQ(item(0).displayName, "Larkspur.app");
    EXPECT_EQ(item(1).displayName, "Read Me") << "a name that was given stays";

    const auto overlay = [&]() -> const DMGOverlayImage& { return state.project().overlayImages[0]; };
    world.panels.toOpen = {{"/no/such.png"}};
    state.replaceOverlayImageViaPanel(overlay().id);
    EXPECT_EQ(world.lastAlert(), plainAlert("Could not open image:\n/no/such.png"));
    EXPECT_EQ(overlay().sourcePath, "/gone.png");
    const fs::path square = world.picture("square.png", 300, 300);
    world.panels.toOpen = {{square}};
    state.replaceOverlayImageViaPanel(overlay().id);
    EXPECT_EQ(overlay().sourcePath, square.string());
    EXPECT_FALSE(overlay().builtInArrowID);
    EXPECT_EQ(overlay().bounds(), (Rect{30, 20, 60, 60}));
    EXPECT_DOUBLE_EQ(overlay().originalWidth, 220);
    EXPECT_EQ(state.undoName(), "Replace Image");
}

TEST(Operations, tellPicturesByTheirExtension)
{
    for (const char* name : {"/a.png", "/a.JPG", "/a.jpeg", "/a.TiF", "/a.tiff", "/a.gif", "/a.webp", "/b.x.heic"})
        EXPECT_TRUE(AppState::isImageURL(name)) << name;
    for (const char* name : {"/a", "/png", "/.png", "/a.png/b", "/a.pn", "/a.png ", "/a.bmp", ""})
        EXPECT_FALSE(AppState::isImageURL(name)) << name;
}

} // namespace
} // namespace velmora::testing
