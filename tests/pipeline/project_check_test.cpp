#include "pipeline/project_check.h"
#include "pipeline/tool_check.h"
#include "worlds/build_world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>

namespace velmora::testing
{
namespace
{

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

std::vector<std::string> lines(const Problems& problems)
{
    std::vector<std::string> result;
    std::transform(problems.begin(), problems.end(), std::back_inserter(result), describe);
    return result;
}

class ProjectCheck : public ::testing::Test
{
protected:
    /// One item more, from the source that the project has anyway.
    static void add(DMGProject& project, const std::string& name)
    {
        project.items.push_back({.sourcePath = project.items[0].sourcePath, .displayName = name, .x = 150, .y = 180});
    }

    BuildWorld world{};
};

TEST_F(ProjectCheck, saysWhatWouldGoWrong)
{
    const std::string text = (world.source / "notes.txt").string();
    BuildWorld::write(text, "no picture");
    const std::string link = (world.source / "link").string();
    fs::create_symlink("My App.app", link);
    const struct {
        const char* name;
        std::function<void(DMGProject&)> change;
        std::vector<const char*> expected; ///< what each line holds
    } cases[] = {
        {"nothing", [](DMGProject&) {}, {}},
        {"one name twice",
         [](DMGProject& p) { add(p, "MY APP.app"); },
         {"error: items[2].displayName: “MY APP.app” and “My App.app” of items[0] are one name"}},
        {"the names that the build needs",
         [&](DMGProject& p) {
             for (const char* name : {"License.TXT", ".background", ".VolumeIcon.icns", ".DS_Store"})
                 add(p, name);
             p.items[5].hidden = true;
             p.items[2].sourcePath = text;
             p.licenseEnabled = true;
             p.licenseText = "yours";
             p.volumeIconPath = (world.source / "arrow.png").string();
         },
         {"error: items[2].displayName: “License.TXT” cannot", "warning: items[3].displayName: “.background” also",
          "error: items[4].displayName: “.VolumeIcon.icns” cannot"}},
        {"a file where the background's folder goes",
         [&](DMGProject& p) {
             add(p, ".background");
             p.items[2].sourcePath = text;
         },
         {"error: items[2].displayName: “.background” cannot"}},
        {"a link instead of the file",
         [&](DMGProject& p) { p.items[0].sourcePath = link; },
         {"warning: items[0].sourcePath: “"}},
        {"a licence without text", [](DMGProject& p) { p.licenseEnabled = true; }, {"warning: licenseText: "}},
        {"no background picture",
         [](DMGProject& p) { p.backgroundKind = BackgroundKind::image; },
         {"error: backgroundImagePath: No background picture was chosen"}},
        {"pictures that are none",
         [&](DMGProject& p) {
             p.backgroundKind = BackgroundKind::image;
             p.backgroundImagePath = p.volumeIconPath = p.overlayImages[0].sourcePath = text;
         },
         {"error: backgroundImagePath: ", "error: overlayImages[0].sourcePath: ", "error: volumeIconPath: "}},
        {"an icon file that is none",
         [&](DMGProject& p) {
             p.volumeIconPath = (world.source / "fake.ICNS").string();
             BuildWorld::write(p.volumeIconPath, "PNG");
         },
         {"error: volumeIconPath: The volume icon “"}},
        {"a built-in arrow whose file is on another machine",
         [](DMGProject& p) {
             p.overlayImages[0].sourcePath = "/elsewhere.png";
             p.overlayImages[0].builtInArrowID = BuiltInArrowLibrary::all()[1].id;
         },
         {}},
        {"a font and an overlay that cannot be drawn",
         [](DMGProject& p) {
             p.textOverlays = {{.fontName = "No-Such-Font", .width = 100, .height = 20}};
             p.overlayImages[0].width = 1e300;
         },
         {"warning: textOverlays[0].fontName: The font “No-Such-Font” is not installed; ",
          "error: background: The overlay picture “"}},
        {"icons outside the window",
         [](DMGProject& p) {
             p.items[0].x = 39;
             p.items[1].y = 400;
             add(p, "hidden");
             p.items[2].x = -500;
             p.items[2].hidden = true;
         },
         {"warning: items[0]: The icon of “My App.app” is not inside the window, which shows 600 × 372 points.",
          "warning: items[1]: "}},
        {"nothing to encrypt or sign with",
         [](DMGProject& p) {
             p.encryption = ImageEncryption::aes128;
             p.signingMode = SigningMode::signAndNotarize;
         },
         {"error: encryptionPassword: ", "error: codeSignIdentity: ", "error: notaryProfile: "}},
        {"no room for a compressed image",
         [&](DMGProject&) {
             world.freeSpace = [&](const fs::path& folder) {
                 return folder == world.temporary ? DiskSpace{1, 1 << 30, 1 << 20} : DiskSpace{2, 1, 1 << 20};
             };
         },
         {"warning: output: There may not be enough room in the folder "}},
        {"no room to work",
         [&](DMGProject&) { world.freeSpace = [](const fs::path&) {
                                return DiskSpace{1, 1, 1 << 20};
                            }; },
         {"error: output: There is not enough room in the folder "}},
        {"one number that spoils two things",
         [](DMGProject& p) { p.windowWidth = std::nan(""); },
         {"error: windowWidth: the value is not a finite number."}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject project = world.typicalProject();
        world.freeSpace = {};
        c.change(project);
        const auto found = lines(checkProject(project, world.output, world.environment()));
        std::vector<::testing::Matcher<std::string>> expected;
        for (const char* part : c.expected)
            expected.emplace_back(HasSubstr(part));
        EXPECT_THAT(found, ::testing::ElementsAreArray(expected));
        EXPECT_THAT(world.tools->calls, IsEmpty());
    }
}

TEST_F(ProjectCheck, looksIntoTheFolders)
{
    const fs::path folder = world.source / "My App.app/Contents";
    for (const char* name : {"Read Me", "READ ME", "bad\xFF"})
        BuildWorld::write(folder / "Deep" / name, "x");
    fs::create_symlink("/gone", folder / "dangling");
    ASSERT_EQ(std::system(("mkfifo '" + (folder / "pipe").string() + "'").c_str()), 0);
    const auto found = lines(checkProject(world.typicalProject(), world.output, world.environment()));
    EXPECT_THAT(found, ::testing::UnorderedElementsAre(
                           HasSubstr("/Contents/pipe” is neither a file nor a folder nor a link."),
                           HasSubstr("/Deep/Read Me” and “READ ME” beside it are one name on the volume."),
                           HasSubstr("” cannot be on a volume: ")));
}

TEST_F(ProjectCheck, namesWhatMayNotBeRead)
{
    const fs::path folder = world.source / "My App.app/Contents";
    fs::permissions(folder, fs::perms::none);
    const bool readsEverything = std::ifstream(folder / "Info.plist").is_open();
    const auto found = lines(checkProject(world.typicalProject(), world.output, world.environment()));
    fs::permissions(folder, fs::perms::owner_all);
    if (readsEverything)
        GTEST_SKIP() << "permissions do not bind the superuser";
    EXPECT_THAT(found, ElementsAre(HasSubstr("/Contents” may not be read.")));
}

TEST_F(ProjectCheck, namesAllOfWhatABuildNamesTheFirst)
{
    DMGProject project = world.typicalProject();
    project.volumeName = "a:b";
    project.items[1].displayName = "a/b";
    project.items.push_back({.sourcePath = "/gone/1", .displayName = "one"});
    project.items.push_back({.sourcePath = "/gone/2\x1b[2J", .displayName = "two"});
    project.gradientAngle = std::nan("");
    BuildWorld::write(world.output / "precious", "x");
    const Problems problems = checkProject(project, world.output, world.environment());
    EXPECT_EQ(world.build(project), problems[0].message);
    EXPECT_THAT(
        lines(problems),
        ElementsAre("error: items[2].sourcePath: Missing source file: /gone/1",
                    "error: items[3].sourcePath: Missing source file: /gone/2 [2J",
                    "error: output: The image cannot be written to “" + world.output.string() + "”: that is a folder.",
                    HasSubstr("error: volumeName: "), HasSubstr("error: items[1].displayName: "),
                    HasSubstr("error: gradientAngle: "), HasSubstr("warning: items[2]: The icon of “one”"),
                    HasSubstr("warning: items[3]: The icon of “two”")));
}

TEST_F(ProjectCheck, asksTheToolsWithoutTheUsersSecrets)
{
    const std::vector<ShellResult> no{{1, "", "not on this machine\n"}};
    const struct {
        const char* name;
        std::map<std::string, std::vector<ShellResult>> answers;
        std::vector<const char*> expected;
    } cases[] = {
        {"all is there", {}, {}},
        {"the file system is not; the rest is tried on another",
         {{"hdiutil create", {no[0], {0, "", ""}}}},
         {"error: filesystem: APFS is not possible here: not on this machine"}},
        {"no image tool at all, so nothing to sign",
         {{"hdiutil create", no}, {"codesign", no}},
         {"error: filesystem: "}},
        {"the format is not", {{"hdiutil convert", {no[0], {0, "", ""}}}}, {"error: format: "}},
        {"encryption is not", {{"hdiutil convert", {{0, "", ""}, no[0]}}}, {"error: encryption: AES 256-bit is not"}},
        {"the flag is not", {{"hdiutil internet-enable", no}}, {"error: internetEnabled: "}},
        {"signing is not",
         {{"codesign", no}, {"xcrun notarytool", no}},
         {"error: signingMode: Code signing", "error: signingMode: Notarization"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject project = world.typicalProject();
        project.filesystem = FilesystemKind::apfs;
        project.encryption = ImageEncryption::aes256;
        project.encryptionPassword = "correct horse";
        project.internetEnabled = true;
        project.signingMode = SigningMode::signAndNotarize;
        project.codeSignIdentity = "Ann Example";
        world.tools->calls.clear();
        world.tools->answers = c.answers;
        const auto found = lines(checkTools(project, world.environment()));
        std::vector<::testing::Matcher<std::string>> expected;
        for (const char* part : c.expected)
            expected.emplace_back(HasSubstr(part));
        EXPECT_THAT(found, ::testing::ElementsAreArray(expected));
        EXPECT_THAT(world.scratchFiles(), IsEmpty());
        const auto& calls = world.tools->calls;
        if (calls.size() > 1 && calls[1].name == "hdiutil create") {
            EXPECT_THAT(calls[1].arguments, ::testing::Contains("HFS+"));
        }
        for (const ToolCall& call : world.tools->calls) {
            EXPECT_THAT(call.input.value_or(""), Not(HasSubstr("correct")));
            EXPECT_THAT(call.arguments, Not(::testing::Contains("Ann Example")));
            EXPECT_FALSE(call.logged);
        }
    }
}

TEST_F(ProjectCheck, triesNamesWhereTheyAreStaged)
{
    DMGProject project = world.typicalProject();
    for (int i = 0; i < 86; ++i)
        project.items[1].displayName += "漢"; // few for a volume, over 255 bytes here
    EXPECT_THAT(lines(checkProject(project, world.output, world.environment())), IsEmpty());
    EXPECT_THAT(lines(checkTools(project, world.environment())),
                ElementsAre(HasSubstr("error: items[1].displayName: ")));
}

TEST_F(ProjectCheck, comparesAGivenSizeWithTheContent)
{
    DMGProject project = world.typicalProject();
    project.imageSizeAutomatic = false;
    project.manualSizeMB = 79; // what 40,000 KB need
    EXPECT_THAT(checkTools(project, world.environment()), IsEmpty());
    project.manualSizeMB = 78;
    EXPECT_THAT(lines(checkTools(project, world.environment())),
                ElementsAre(HasSubstr("warning: manualSizeMB: 78 MB is less than the content needs; the image would "
                                      "have 79 MB")));
}

} // namespace
} // namespace velmora::testing
