#include "worlds/build_world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace velmora::testing
{
namespace
{

namespace fs = std::filesystem;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Key;
using ::testing::Not;
using ::testing::Pair;

class Staging : public ::testing::Test
{
protected:
    DMGItem file(const std::string& name, const std::string& content)
    {
        const fs::path path = world.source / ("file" + std::to_string(++m_files));
        BuildWorld::write(path, content);
        return {.sourcePath = path.string(), .displayName = name};
    }
    DMGItem folder(const std::string& name, const fs::path& path) const
    {
        return {.sourcePath = path.string(), .displayName = name};
    }
    DMGItem link(const std::string& name, const fs::path& target) const
    {
        return {.displayName = name, .symlinkTarget = target.string()};
    }
    [[nodiscard]] const std::map<std::string, std::string>& stage() const { return world.tools->stage; }

    BuildWorld world{};
    DMGProject project = world.typicalProject();

private:
    int m_files = 0;
};

TEST_F(Staging, putsTheVisibleEntriesTheLicenceAndTheBackgroundIntoTheVolume)
{
    project.items.push_back(file("secret", "x"));
    project.items.back().hidden = true;
    project.items.push_back(link("Dangling", "../nowhere"));
    project.licenseEnabled = true;
    project.licenseText = "  Be nice.\n";
    EXPECT_EQ(world.build(project), "");
    EXPECT_TRUE(world.logged("Staging 4 item(s)…"));
    EXPECT_TRUE(world.logged("Adding LICENSE.txt…"));
    EXPECT_THAT(stage(), Contains(Pair("My App.app/Contents/Info.plist", "<plist/>")));
    EXPECT_THAT(stage(), Contains(Pair("Applications", "->/Applications")));
    EXPECT_THAT(stage(), Contains(Pair("Dangling", "->../nowhere")));
    EXPECT_THAT(stage(), Contains(Pair("LICENSE.txt", "  Be nice.\n")));
    EXPECT_THAT(stage(), Contains(Key(".background/background.tiff")));
    EXPECT_THAT(stage(), Contains(Key(".background/overlay-0.png")));
    EXPECT_THAT(stage(), Not(Contains(Key(".background/background.png"))));
    EXPECT_THAT(stage(), Not(Contains(Key("secret"))));
    EXPECT_THAT(world.warnings, IsEmpty());
}

TEST_F(Staging, writesNoBlankLicence)
{
    project.licenseEnabled = true;
    project.licenseText = " \n\t\r\n";
    EXPECT_EQ(world.build(project), "");
    EXPECT_FALSE(world.logged("Adding LICENSE.txt…"));
    EXPECT_THAT(stage(), Not(Contains(Key("LICENSE.txt"))));
}

TEST_F(Staging, keepsTheLaterOfTwoEntriesThatTheVolumeHoldsForOne)
{
    const struct {
        const char* first;
        const char* second;
    } cases[] = {{"Read Me", "Read Me"}, {"Read Me", "READ me"}, {"Caf\u00e9", "CAFE\u0301"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.second);
        world.log.clear();
        project = world.typicalProject();
        project.items.push_back(file(c.first, "first"));
        project.items.push_back(file(c.second, "second"));
        EXPECT_EQ(world.build(project), "");
        EXPECT_THAT(stage(), Contains(Pair(c.second, "second")));
        EXPECT_EQ(stage().count(c.first), c.first == std::string_view(c.second) ? 1u : 0u);
        EXPECT_THAT(world.warnings, ElementsAre(HasSubstr(c.second)));
        EXPECT_THAT(world.log, Contains("⚠️ " + world.warnings[0]));
    }
}

TEST_F(Staging, warnsOfEntriesThatMeetTheBuildsOwnFiles)
{
    project.licenseEnabled = true;
    project.licenseText = "licence";
    project.items.push_back(file("license.TXT", "entry"));
    BuildWorld::write(world.source / "hidden/note", "kept");
    project.items.push_back(folder(".BackGround", world.source / "hidden"));
    EXPECT_EQ(world.build(project), "");
    EXPECT_THAT(world.warnings, ElementsAre(HasSubstr("license.TXT"), HasSubstr(".BackGround")));
    for (const std::string& warning : world.warnings)
        EXPECT_THAT(world.log, Contains("⚠️ " + warning));
    EXPECT_THAT(stage(), Contains(Pair("LICENSE.txt", "licence")));
    EXPECT_THAT(stage(), Contains(Pair(".background/note", "kept")));
    EXPECT_THAT(stage(), Contains(Key(".background/background.tiff")));
    EXPECT_THAT(stage(), Not(Contains(Key("license.TXT"))));
}

TEST_F(Staging, neverWritesThroughALink)
{
    const fs::path canary = world.source / "canary";
    BuildWorld::write(canary / "file", "alive");
    const fs::path trap = world.source / "trap";
    fs::create_directories(trap);
    for (const char* name : {"background.png", "Background@2x.png", "background.tiff", "overlay-0.png"})
        fs::create_symlink(canary / "file", trap / name);
    const struct {
        const char* name;
        DMGItem item;
    } cases[] = {
        {"the background's folder is a link", link(".background", canary)},
        {"the same in other case", link(".Background", canary)},
        {"links inside the background's folder", folder(".background", trap)},
        {"the licence is a link", link("LICENSE.txt", canary / "file")},
        {"the licence is a link to nothing", link("LICENSE.txt", canary / "new")},
        {"the licence is a folder", folder("LICENSE.txt", canary)},
    };
    project.licenseEnabled = true;
    project.licenseText = "licence";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject trapped = project;
        trapped.items.push_back(c.item);
        world.tools->answers["tiffutil"] = {{1, "", "no"}}; // so that the pictures stay, and are written twice
        EXPECT_EQ(world.build(trapped), "");
        EXPECT_THAT(stage(), Contains(Pair("LICENSE.txt", "licence")));
        EXPECT_THAT(stage(), Contains(Pair(".background/background.png", HasSubstr("PNG"))));
        EXPECT_THAT(stage(), Contains(Pair(".background/background@2x.png", HasSubstr("PNG"))));
        EXPECT_THAT(stage(), Contains(Pair(".background/overlay-0.png", HasSubstr("PNG"))));
        EXPECT_THAT(stage(), Contains(Pair(".background", "/")));
        EXPECT_EQ(BuildWorld::read(canary / "file"), "alive");
        EXPECT_EQ(std::distance(fs::directory_iterator(canary), {}), 1);
        EXPECT_FALSE(world.warnings.empty());
    }
}

TEST_F(Staging, namesTheFileThatCannotBeCopied)
{
    fs::create_directories(world.source / "bad");
    fs::create_symlink("loop", world.source / "bad/loop"); // a link is copied as it is
    ASSERT_EQ(std::system(("mkfifo '" + (world.source / "bad/pipe").string() + "'").c_str()), 0);
    project.items.push_back(folder("bad", world.source / "bad"));
    EXPECT_THAT(world.build(project), HasSubstr("bad/pipe"));
    EXPECT_THAT(world.scratchFiles(), IsEmpty());
    EXPECT_FALSE(world.tools->find("hdiutil create"));
}

TEST_F(Staging, fallsBackToOnePictureWhenTheTwoCannotBeCombined)
{
    world.tools->answers["tiffutil"] = {{1, "", "no such format"}};
    world.tools->answers["sips"] = {{1, "", "no pixels"}};
    EXPECT_EQ(world.build(project), "");
    EXPECT_TRUE(world.logged("⚠️ tiffutil failed — falling back to @2x PNG."));
    EXPECT_EQ(stage().at(".background/background.png"), stage().at(".background/background@2x.png"));
    EXPECT_THAT(stage(), Not(Contains(Key(".background/background.tiff"))));
    EXPECT_THAT(world.tools->script, HasSubstr("file \".background:background.png\""));
    EXPECT_THAT(world.warnings, Contains(HasSubstr("no such format")));
    EXPECT_THAT(world.warnings, Contains(HasSubstr("no pixels")));
    const auto& calls = world.tools->calls;
    ASSERT_EQ(calls[3].name, "sips");
    EXPECT_EQ(calls[3].arguments[2], "144");
    EXPECT_TRUE(calls[3].arguments.back().ends_with("/background.png"));
}

TEST_F(Staging, leavesTheBackgroundOutWhenItsPictureIsMissing)
{
    project.backgroundKind = BackgroundKind::image;
    for (const char* path : {"", "/nowhere/picture.png"}) {
        SCOPED_TRACE(path);
        project.backgroundImagePath = path;
        EXPECT_EQ(world.build(project), "");
        EXPECT_THAT(stage(), Not(Contains(Key(".background"))));
        EXPECT_THAT(world.tools->script, Not(HasSubstr("background picture")));
        EXPECT_THAT(world.warnings, ElementsAre(HasSubstr("no background")));
        EXPECT_FALSE(world.logged("Baking 1 overlay(s) into background…"));
    }
}

TEST_F(Staging, leavesOutOverlaysThatCannotBeLoaded)
{
    DMGOverlayImage lost = project.overlayImages[0];
    lost.sourcePath = "/nowhere/lost.png";
    project.overlayImages.insert(project.overlayImages.begin(), lost);
    EXPECT_EQ(world.build(project), "");
    EXPECT_TRUE(world.logged("⚠️ Could not load overlay image — skipping."));
    EXPECT_TRUE(world.logged("Baking 1 overlay(s) into background…"));
    EXPECT_THAT(stage(), Contains(Key(".background/overlay-1.png"))); // counted over the whole list
    EXPECT_THAT(stage(), Not(Contains(Key(".background/overlay-0.png"))));
    EXPECT_THAT(world.warnings, ElementsAre(HasSubstr("/nowhere/lost.png")));

    // Pictures that cannot be encoded end the build.
    world.cache.store(std::make_shared<Picture>(), "broken.png");
    project.overlayImages = {{.sourcePath = "broken.png", .width = 10, .height = 10}};
    EXPECT_EQ(world.build(project), "Could not encode overlay PNG.");
    EXPECT_THAT(world.scratchFiles(), IsEmpty());
}

TEST_F(Staging, forgetsThePicturesOfTheScratchFolder)
{
    EXPECT_EQ(world.build(project), "");
    EXPECT_TRUE(world.cache.image(project.overlayImages[0].sourcePath));
    const fs::path scratch = world.temporary / ("velmora-build-" + BuildWorld::uuid(1));
    EXPECT_FALSE(world.cache.image((scratch / "stage/.background/overlay-0.png").string()));
}

} // namespace
} // namespace velmora::testing
