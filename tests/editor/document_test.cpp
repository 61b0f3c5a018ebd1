#include "editor/document_file.h"
#include "editor/file_names.h"
#include "model/document.h"
#include "platform/file_tree.h"
#include "worlds/editor_world.h"

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmora::testing
{
namespace
{

using Names = std::vector<std::string>;

/// While it lives no file can grow beyond so many bytes: a disk that is full.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    rlimit m_before{};
};

std::uint32_t modeOf(const fs::path& file)
{
    return describe(file).mode;
}

void renameVolume(AppState& state, const std::string& name)
{
    state.edit({}, [&](DMGProject& project) { project.volumeName = name; });
}

TEST(Documents, areSavedAndOpenedAgain)
{
    EditorWorld world;
    AppState& state = world.state;
    renameVolume(state, "A/B: C");
    const fs::path file = world.folder / "A.velmora";
    world.panels.toSave = {file};
    const auto& events = world.record();
    state.save();
    EXPECT_EQ(events, (Names{"document A.velmora", "dirty-"}));
    EXPECT_EQ(world.panels.saved, (std::vector<SavePanelRequest>{{.proposedName = "A-B- C.velmora",
                                                                  .type = {"Velmora Project", {"velmora"}},
                                                                  .extension = "velmora"}}));
    renameVolume(state, "Later");
    state.save();
    EXPECT_EQ(world.panels.saved.size(), 1U) << "the place is known now";

    auto other = world.makeState();
    world.panels.toOpen = {{file}};
    other->open();
    EXPECT_EQ(other->project(), state.project());
    EXPECT_EQ(other->documentURL(), file);
    EXPECT_FALSE(other->isDirty());
    EXPECT_FALSE(other->canUndo());
}

TEST(Documents, startAfreshWithANewProject)
{
    EditorWorld world;
    AppState& state = world.state;
    state.addBuiltInArrow("arrow_blue_bold", {});
    state.write(world.folder / "A.velmora");
    state.openProject(world.folder / "A.velmora");
    state.selectOverlay(state.project().overlayImages.back().id);
    renameVolume(state, "B");
    world.panels.toSave = {world.folder / "no.dmg"};
    state.build(); // fails: the image would have no content
    world.waitForBuild();
    const auto& events = world.record();
    state.newProject();
    EXPECT_EQ(events, (Names{"project", "overlay-", "document Untitled.velmora", "dirty-"}));
    EXPECT_EQ(state.project().volumeName, "My App");
    EXPECT_EQ(state.buildLog(), "");
    EXPECT_TRUE(state.buildError()) << "a new project keeps the last failure";
    EXPECT_EQ(state.editorMode(), EditorMode::background);
    EXPECT_EQ(state.inspectorTab(), 3);
    EXPECT_FALSE(state.canUndo());
    EXPECT_TRUE(world.alerts.shown.empty()) << "it asks nothing";
}

TEST(Documents, migrateWhenTheyAreOpened)
{
    EditorWorld world;
    DMGProject project;
    project.items = {{.sourcePath = "/a", .displayName = "a", .x = 100, .y = 100}};
    project.iconUsesTopLeftCoords = true;
    const fs::path file = world.folder / "old.velmora";
    BuildWorld::write(file, Document::encode(project));
    world.state.openProject(file);
    EXPECT_EQ(world.state.project().items.front().position(), (Point{168, 140}));
    EXPECT_FALSE(world.state.isDirty());
}

TEST(Documents, findWhatLiesBesideThem)
{
    EditorWorld world;
    DMGProject project;
    project.items = {{.sourcePath = "apps/My.app", .displayName = "My.app"}, {.sourcePath = "/a", .displayName = "a"}};
    project.volumeIconPath = "../icon.png";
    const fs::path file = world.folder / "designs" / "moved.velmora";
    BuildWorld::write(file, Document::encode(project));
    world.state.openProject(file);
    const DMGProject& open = world.state.project();
    EXPECT_EQ(open.items[0].sourcePath, (world.folder / "designs/apps/My.app").string());
    EXPECT_EQ(open.items[1].sourcePath, "/a");
    EXPECT_EQ(open.volumeIconPath, (world.folder / "icon.png").string());
    EXPECT_EQ(open.backgroundImagePath, "");
    EXPECT_FALSE(world.state.isDirty());
}

TEST(Documents, keepTheOpenOneWhenAnotherCannotBeRead)
{
    EditorWorld world;
    AppState& state = world.state;
    state.selectItem(state.project().items.front().id);
    renameVolume(state, "Mine");
    const DMGProject before = state.project();
    const fs::path damaged = world.folder / "damaged.velmora";
    BuildWorld::write(damaged, "{\"volumeName\": 3}");
    for (const fs::path& file : {damaged, world.folder / "missing.velmora", world.folder, fs::path("/dev/zero")}) {
        SCOPED_TRACE(file);
        world.alerts.shown.clear();
        state.openProject(file);
        ASSERT_EQ(world.alerts.shown.size(), 1U);
        EXPECT_EQ(world.lastAlert(), plainAlert(world.lastAlert().text));
        EXPECT_EQ(world.lastAlert().text.rfind("Could not open project:\n", 0), 0U);
        EXPECT_EQ(state.project(), before);
        EXPECT_TRUE(state.selection());
        EXPECT_FALSE(state.documentURL());
        EXPECT_TRUE(state.isDirty());
        EXPECT_TRUE(state.canUndo());
    }
    world.panels.toOpen = {};
    state.open(); // given up
    EXPECT_EQ(state.project(), before);
}

TEST(Documents, stayModifiedWhenTheyCannotBeWritten)
{
    EditorWorld world;
    AppState& state = world.state;
    renameVolume(state, "Mine");
    const fs::path nowhere = world.folder / "missing" / "A.velmora";
    world.panels.toSave = {nowhere};
    state.saveAs();
    EXPECT_EQ(state.documentURL(), nowhere) << "the place is the document's before it is written";
    EXPECT_TRUE(state.isDirty());
    EXPECT_EQ(world.lastAlert(), plainAlert(world.lastAlert().text));
    EXPECT_EQ(world.lastAlert().text.rfind("Could not save project:\n", 0), 0U);
    state.saveAs(); // given up
    EXPECT_EQ(state.documentURL(), nowhere);

    fs::create_symlink("/dev/full", world.folder / "full.velmora");
    state.write(world.folder / "full.velmora");
    EXPECT_EQ(world.alerts.shown.size(), 2U);
    state.edit({}, [](DMGProject& project) { project.windowWidth = std::numeric_limits<double>::infinity(); });
    BuildWorld::write(world.folder / "old.velmora", "old");
    state.write(world.folder / "old.velmora");
    EXPECT_EQ(world.alerts.shown.size(), 3U);
    EXPECT_EQ(BuildWorld::read(world.folder / "old.velmora"), "old") << "the bytes are made before the file is opened";
    EXPECT_TRUE(state.isDirty());
}

TEST(Documents, followLinksAndKeepPermissions)
{
    EditorWorld world;
    const fs::path file = world.folder / "real.velmora";
    BuildWorld::write(file, "old");
    ::chmod(file.c_str(), 0640);
    fs::create_symlink("real.velmora", world.folder / "link");
    writeDocumentFile(world.folder / "link", "new", DocumentAccess::ownerOnly);
    EXPECT_EQ(BuildWorld::read(file), "new");
    EXPECT_EQ(modeOf(file), 0640U);
    EXPECT_TRUE(fs::is_symlink(world.folder / "link"));
}

TEST(Documents, withAPasswordAreForTheirOwnerOnly)
{
    EditorWorld world;
    const mode_t umask = ::umask(0);
    world.state.write(world.folder / "open.velmora");
    world.state.edit({}, [](DMGProject& project) { project.encryptionPassword = "secret"; });
    world.state.write(world.folder / "secret.velmora");
    fs::create_symlink("target.velmora", world.folder / "link.velmora");
    world.state.write(world.folder / "link.velmora");
    ::umask(umask);
    EXPECT_EQ(modeOf(world.folder / "open.velmora"), 0644U);
    EXPECT_EQ(modeOf(world.folder / "secret.velmora"), 0600U);
    EXPECT_EQ(modeOf(world.folder / "target.velmora"), 0600U);
    EXPECT_TRUE(world.alerts.shown.empty());
}

TEST(Documents, surviveAFullDisk)
{
    const std::string bytes(8000, 'n');
    const struct {
        const char* name;
        std::string former;
        rlim_t room;
        std::string left;
        std::string told;
    } cases[] = {
        {"room for the old one", std::string(100, 'o'), 4000, std::string(100, 'o'),
         "Its former content was put back."},
        {"no room at all", std::string(100, 'o'), 10, std::string(10, 'o'), "Its former content is lost: "},
        {"a new one", "", 4000, "", "."},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EditorWorld world;
        const fs::path file = world.folder / "A.velmora";
        if (!c.former.empty())
            BuildWorld::write(file, c.former);
        std::string told;
        {
            const FullDisk disk(c.room);
            try {
                writeDocumentFile(file, bytes, DocumentAccess::ordinary);
            } catch (const FileError& error) {
                told = error.what();
            }
        }
        EXPECT_NE(told.find("A.velmora"), std::string::npos) << told;
        EXPECT_NE(told.find(c.told), std::string::npos) << told;
        EXPECT_EQ(fs::exists(file) ? BuildWorld::read(file) : "", c.left);
        EXPECT_EQ(fs::exists(file), !c.former.empty());
    }
}

TEST(Documents, sayNothingOfContentThatWasNotTouched)
{
    if (::geteuid() == 0)
        GTEST_SKIP() << "permissions do not bind the superuser";
    EditorWorld world;
    for (const mode_t mode : {0400U, 0000U}) {
        const fs::path file = world.folder / "locked.velmora";
        BuildWorld::write(file, "old");
        ::chmod(file.c_str(), mode);
        try {
            writeDocumentFile(file, "new", DocumentAccess::ordinary);
            FAIL();
        } catch (const FileError& error) {
            EXPECT_EQ(std::string(error.what()).find("former"), std::string::npos) << error.what();
        }
        ::chmod(file.c_str(), 0600);
        EXPECT_EQ(BuildWorld::read(file), "old");
        fs::remove(file);
    }
}

TEST(Documents, askAboutUnsavedChanges)
{
    constexpr std::size_t save = 0;
    constexpr std::size_t dontSave = 1;
    constexpr std::size_t cancel = 2;
    const struct {
        const char* name;
        bool modified;
        std::deque<std::size_t> answers;
        std::deque<fs::path> place;
        bool goesOn;
    } cases[] = {
        {"nothing to save", false, {}, {}, true},
        {"saved", true, {save}, {"A.velmora"}, true},
        {"not saved", true, {dontSave}, {}, true},
        {"cancelled", true, {cancel}, {}, false},
        {"closed without an answer", true, {}, {}, false},
        {"saved, but nowhere", true, {save}, {}, false},
        {"saved in vain", true, {save}, {"missing/A.velmora"}, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EditorWorld world;
        const fs::path other = world.folder / "other.velmora";
        world.makeState()->write(other);
        if (c.modified)
            renameVolume(world.state, "Mine");
        const auto script = [&] {
            world.alerts.answers = c.answers;
            world.panels.toSave.clear();
            for (const fs::path& place : c.place)
                world.panels.toSave.push_back(world.folder / place);
        };
        script();
        EXPECT_EQ(world.state.confirmClose(), c.goesOn);
        if (c.modified) {
            EXPECT_EQ(world.alerts.shown.front().buttons, (Names{"Save", "Don't Save", "Cancel"}));
        }
        script();
        EXPECT_EQ(world.state.confirmQuit(), c.goesOn);
        script();
        world.state.openHandedOver(other);
        EXPECT_EQ(world.state.documentURL() == other, c.goesOn);
    }
}

TEST(Documents, areRememberedLatestFirst)
{
    EditorWorld world;
    AppState& state = world.state;
    for (int number = 0; number < 12; ++number)
        state.write(world.folder / ("a \"b\",\n" + std::to_string(number)));
    state.openProject(world.folder / "a \"b\",\n5");
    state.openProject(world.folder / "missing");
    const auto recent = world.makeState()->recentDocuments();
    ASSERT_EQ(recent.size(), 10U);
    EXPECT_EQ(recent[0], world.folder / "a \"b\",\n5");
    EXPECT_EQ(recent[1], world.folder / "a \"b\",\n11");
    EXPECT_EQ(recent[9], world.folder / "a \"b\",\n2");
    state.clearRecentDocuments();
    EXPECT_TRUE(state.recentDocuments().empty());
    for (const char* damaged : {"nonsense", "{}", "[1, \"relative\", null, \"/a\"]"}) {
        world.settings.texts["recentDocuments"] = damaged;
        EXPECT_LE(state.recentDocuments().size(), 1U) << damaged;
    }
}

TEST(FileNames, areCleanedForProposing)
{
    const std::string letters(300, 'a');
    std::string accents;
    for (int i = 0; i < 100; ++i)
        accents += "e\u0301\u0327"; // one letter to a person, five bytes
    std::string kept;
    for (int i = 0; i < 36; ++i)
        kept += "e\u0301\u0327";
    const struct {
        std::string name;
        std::string proposed;
    } cases[] = {
        {"My App", "My App.dmg"},
        {"Größe 日本語", "Größe 日本語.dmg"},
        {"a/b:c", "a-b-c.dmg"},
        {"..hidden", "hidden.dmg"},
        {" . padded \t", "padded.dmg"},
        {"../../etc", "-..-etc.dmg"},
        {"a\nb\x01"
         "c\x7f"
         "d\u0085",
         "abcd.dmg"},
        {"", "Untitled.dmg"},
        {" .\t", "Untitled.dmg"},
        {"2.0", "2.0.dmg"},
        {letters, letters.substr(0, 180) + ".dmg"},
        {accents, kept + ".dmg"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(proposedFileName(c.name, "dmg"), c.proposed) << c.name;
}

} // namespace
} // namespace velmora::testing
