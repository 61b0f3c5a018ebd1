#include "pipeline/dmg_builder.h"

#include "platform/claimed_path.h"
#include "platform/file_tree.h"
#include "worlds/build_world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace velmora::testing
{
namespace
{

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class Builder : public ::testing::Test
{
protected:
    void expectNothingLeft() const
    {
        EXPECT_THAT(world.scratchFiles(), IsEmpty());
        EXPECT_THAT(world.tools->attached, IsEmpty());
    }

    BuildWorld world{};
    DMGProject project = world.typicalProject();
    std::string out = world.output.string();
    std::string scratch = (world.temporary / ("velmora-build-" + BuildWorld::uuid(1))).string();
};

TEST_F(Builder, logsATypicalBuildStepByStep)
{
    BuildWorld::write(world.favorites, "favourites");
    EXPECT_EQ(world.build(project), "");
    const std::string pictures = scratch + "/stage/.background/";
    EXPECT_EQ(world.log,
              (std::vector<std::string>{
                  "Staging 2 item(s)…",
                  "Baking 1 overlay(s) into background…",
                  "$ sips -s dpiWidth 72 -s dpiHeight 72 " + pictures + "background.png",
                  "$ sips -s dpiWidth 144 -s dpiHeight 144 " + pictures + "background@2x.png",
                  "$ tiffutil -cathidpicheck " + pictures + "background.png " + pictures + "background@2x.png -out " +
                      pictures + "background.tiff",
                  "Creating read/write image (79 MB)…",
                  "$ hdiutil create -srcfolder " + scratch +
                      "/stage -volname My App -fs HFS+ -fsargs -c c=64,a=16,e=16 -format UDRW -size 79m " + scratch +
                      "/temp.dmg",
                  "Mounting image…",
                  "$ hdiutil attach " + scratch + "/temp.dmg -readwrite -noverify -noautoopen -nobrowse",
                  attachOutput,
                  "Applying Finder layout…",
                  "Preserving Finder sidebar favorites…",
                  "$ osascript " + world.temporary.string() + "/velmora-" + BuildWorld::uuid(3) + ".applescript",
                  "Restored Finder sidebar favorites.",
                  "Detaching image…",
                  "$ hdiutil detach /dev/disk4s1 -force",
                  "Converting to Compressed (zlib · UDZO)…",
                  "$ hdiutil convert " + scratch + "/temp.dmg -format UDZO -o " + out + " -imagekey zlib-level=9",
                  "✅ Done: " + out,
              }));
    EXPECT_THAT(world.tools->names(), ElementsAre("sips", "sips", "tiffutil", "du", "hdiutil create", "hdiutil attach",
                                                  "osascript", "sync", "sync", "hdiutil detach", "hdiutil convert"));
    EXPECT_EQ(world.tools->find("du")->arguments, (std::vector<std::string>{"-sk", scratch + "/stage"}));
    EXPECT_THAT(world.naps, ElementsAre(2000ms));
    EXPECT_THAT(world.tools->script, HasSubstr("tell disk \"My App\"\n"));
    EXPECT_THAT(world.tools->script, HasSubstr("file \".background:background.tiff\""));
    EXPECT_THAT(world.warnings, IsEmpty());
    EXPECT_TRUE(fs::exists(out));
    expectNothingLeft();
}

TEST_F(Builder, asksTheToolsForWhatTheProjectSays)
{
    project.filesystem = FilesystemKind::apfs;
    project.format = DMGFormat::compressedLZFSE;
    project.imageSizeAutomatic = false;
    project.manualSizeMB = 10;
    project.encryption = ImageEncryption::aes256;
    project.encryptionPassword = "pass phrase";
    project.internetEnabled = true;
    project.signingMode = SigningMode::signAndNotarize;
    project.codeSignIdentity = "Developer ID Application: Zoë (TEAM)";
    project.notaryProfile = "my profile";
    world.tools->answers["du"] = {{0, "11000\tx\n", ""}};
    BuildWorld::write(world.output, "an earlier image");
    EXPECT_EQ(world.build(project), "");
    EXPECT_TRUE(world.logged("Manual image size requested: 10 MB (using 40 MB)."));
    const auto& create = world.tools->find("hdiutil create")->arguments;
    EXPECT_EQ(create, (std::vector<std::string>{"create", "-srcfolder", scratch + "/stage", "-volname", "My App", "-fs",
                                                "APFS", "-fsargs", "-c c=64,a=16,e=16", "-format", "UDRW", "-size",
                                                "40m", scratch + "/temp.dmg"}));
    const ToolCall& convert = *world.tools->find("hdiutil convert");
    EXPECT_EQ(convert.arguments, (std::vector<std::string>{"convert", scratch + "/temp.dmg", "-format", "ULFO", "-o",
                                                           out, "-encryption", "AES-256", "-stdinpass"}));
    EXPECT_EQ(convert.input, "pass phrase");
    EXPECT_EQ(world.tools->find("hdiutil internet-enable")->arguments,
              (std::vector<std::string>{"internet-enable", "-yes", out}));
    EXPECT_EQ(world.tools->find("codesign")->arguments,
              (std::vector<std::string>{"--sign", project.codeSignIdentity, "--force", "--timestamp", out}));
    EXPECT_EQ(world.tools->find("xcrun notarytool")->arguments,
              (std::vector<std::string>{"notarytool", "submit", out, "--keychain-profile", "my profile", "--wait"}));
    EXPECT_EQ(world.tools->find("xcrun stapler")->arguments, (std::vector<std::string>{"stapler", "staple", out}));
    const auto end = std::find(world.log.begin(), world.log.end(), "Enabling internet-enable flag…");
    EXPECT_EQ(
        std::vector<std::string>(end, world.log.end()),
        (std::vector<std::string>{"Enabling internet-enable flag…", "$ hdiutil internet-enable -yes " + out,
                                  "Code signing with “Developer ID Application: Zoë (TEAM)”…",
                                  "$ codesign --sign Developer ID Application: Zoë (TEAM) --force --timestamp " + out,
                                  "Submitting to Apple notary service (this can take a few minutes)…",
                                  "$ xcrun notarytool submit " + out + " --keychain-profile my profile --wait",
                                  "Stapling notarization ticket…", "$ xcrun stapler staple " + out, "✅ Done: " + out}));
}

TEST_F(Builder, keepsThePasswordOnStandardInput)
{
    project.encryption = ImageEncryption::aes128;
    project.encryptionPassword = "Tr0ub4dor";
    std::string files;
    world.tools->before = [&](const std::string&) {
        for (const auto& entry : fs::recursive_directory_iterator(world.temporary)) {
            if (entry.is_regular_file())
                files += BuildWorld::read(entry.path());
        }
    };
    EXPECT_EQ(world.build(project), "");
    EXPECT_FALSE(files.empty());
    EXPECT_THAT(files, Not(HasSubstr("Tr0ub4dor")));
    EXPECT_THAT(world.log, Not(Contains(HasSubstr("Tr0ub4dor"))));
    EXPECT_THAT(world.warnings, Not(Contains(HasSubstr("Tr0ub4dor"))));
    int inputs = 0;
    for (const ToolCall& call : world.tools->calls) {
        EXPECT_THAT(call.arguments, Not(Contains(HasSubstr("Tr0ub4dor"))));
        inputs += call.input ? 1 : 0;
    }
    EXPECT_EQ(inputs, 1);
}

TEST_F(Builder, failsWithTheToolsReasonAndLeavesNothingBehind)
{
    const ShellResult failed{1, "said", "reason\n"};
    const struct {
        const char* name;
        const char* tool;
        ShellResult answer;
        std::string message;
        std::string lastTool;
        bool hasOutput; ///< the new image is there
    } cases[] = {
        {"create", "hdiutil create", failed, "hdiutil create failed:\nreason\n", "hdiutil create", false},
        {"attach", "hdiutil attach", failed, "hdiutil attach failed:\nreason\n", "hdiutil attach", false},
        {"attach that names a device and fails",
         "hdiutil attach",
         {1, "/dev/disk4s1\tx\n", "no mount"},
         "hdiutil attach failed:\nno mount",
         "hdiutil detach",
         false},
        {"no mount point",
         "hdiutil attach",
         {0, "/dev/disk4s1  \tx\n", ""},
         "Could not determine mount point.\n/dev/disk4s1  \tx\n",
         "hdiutil detach",
         false},
        {"no device",
         "hdiutil attach",
         {0, "attached\n", ""},
         "Could not determine mount point.\nattached\n",
         "hdiutil attach",
         false},
        {"convert", "hdiutil convert", failed, "hdiutil convert failed:\nreason\n", "hdiutil convert", false},
        {"codesign", "codesign", failed, "codesign failed:\nreason\n", "codesign", true},
        {"notary", "xcrun notarytool", failed, "notarytool submit failed:\nreason\n", "xcrun notarytool", true},
        {"stapler", "xcrun stapler", failed, "stapler failed:\nreason\n", "xcrun stapler", true},
    };
    project.signingMode = SigningMode::signAndNotarize;
    project.codeSignIdentity = "me";
    project.notaryProfile = "profile";
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto usual = world.tools->answers;
        world.tools->answers[c.tool] = {c.answer};
        world.tools->calls.clear();
        world.tools->attached.clear();
        fs::remove(world.output);
        EXPECT_EQ(world.build(project), c.message);
        EXPECT_EQ(world.tools->names().back(), c.lastTool);
        EXPECT_EQ(fs::exists(world.output), c.hasOutput);
        if (c.lastTool != "hdiutil attach") // where nobody could say which device it is
            expectNothingLeft();
        EXPECT_THAT(world.scratchFiles(), IsEmpty());
        EXPECT_THAT(world.log.back(), Not(HasSubstr("Done")));
        world.tools->answers = usual;
    }
}

TEST_F(Builder, checksPasswordIdentityAndProfileWhenTheirStepComes)
{
    BuildWorld::write(world.output, "earlier");
    DMGProject locked = project;
    locked.encryption = ImageEncryption::aes256;
    EXPECT_EQ(world.build(locked), "Encryption is enabled but no password was set (Volume tab).");
    EXPECT_EQ(world.log.back(), "Converting to Compressed (zlib · UDZO)…");
    EXPECT_FALSE(fs::exists(world.output));
    expectNothingLeft();

    project.signingMode = SigningMode::sign;
    EXPECT_EQ(world.build(project), "Code signing is enabled but no signing identity was provided (Volume tab).");
    EXPECT_TRUE(fs::exists(world.output));
    project.codeSignIdentity = "me";
    EXPECT_EQ(world.build(project), "");
    EXPECT_FALSE(world.tools->find("xcrun notarytool"));

    project.signingMode = SigningMode::signAndNotarize;
    EXPECT_EQ(world.build(project), "Notarization requires a keychain profile name (Output tab).\n"
                                    "Create one with:\n  xcrun notarytool store-credentials");
    EXPECT_EQ(world.log.back(), "$ codesign --sign me --force --timestamp " + out);
}

TEST_F(Builder, triesFiveTimesToDetach)
{
    const ShellResult busy{16, "", "busy"};
    world.tools->answers["hdiutil detach"] = {busy, busy, {0, "", ""}};
    EXPECT_EQ(world.build(project), "");
    EXPECT_TRUE(world.logged("Detach busy, retrying (1/5)…"));
    EXPECT_TRUE(world.logged("Detach busy, retrying (2/5)…"));
    EXPECT_FALSE(world.logged("Detach busy, retrying (3/5)…"));
    EXPECT_THAT(world.naps, ElementsAre(2000ms, 1500ms, 1500ms));
    expectNothingLeft();

    world.naps.clear();
    world.log.clear();
    world.tools->calls.clear();
    world.tools->answers["hdiutil detach"] = {busy};
    EXPECT_EQ(world.build(project), "Could not detach volume (resource busy).");
    EXPECT_EQ(std::count_if(world.tools->calls.begin(), world.tools->calls.end(),
                            [](const ToolCall& call) { return call.name == "hdiutil detach"; }),
              6);
    EXPECT_EQ(world.naps.size(), 6u);
    EXPECT_THAT(std::vector<std::string>(world.log.end() - 3, world.log.end()),
                ElementsAre("Detach busy, retrying (5/5)…", "$ hdiutil detach /dev/disk4s1 -force", "busy"));
    EXPECT_THAT(world.scratchFiles(), IsEmpty());
}

TEST_F(Builder, detachesAgainWhenASignalMeantForTheBuildKilledTheTool)
{
    const ShellResult busy{16, "", "busy"};
    const ShellResult killed{2, "", ""};
    world.tools->answers["hdiutil detach"] = {busy, busy, busy, busy, busy, killed, {0, "", ""}};
    EXPECT_EQ(world.build(project), "Could not detach volume (resource busy).");
    EXPECT_THAT(world.tools->attached, IsEmpty());
}

TEST_F(Builder, goesOnWithoutTheLooksAndSaysSo)
{
    world.tools->answers["osascript"] = {{1, "", " not allowed \n"}};
    world.tools->answers["hdiutil internet-enable"] = {{1, "", "unknown verb"}};
    project.internetEnabled = true;
    EXPECT_EQ(world.build(project), "");
    EXPECT_TRUE(world.logged("⚠️ Finder layout step reported: not allowed"));
    EXPECT_TRUE(world.logged("(Files are included; grant Automation/Finder permission for full layout.)"));
    EXPECT_THAT(world.warnings, ElementsAre(HasSubstr("not allowed"), HasSubstr("unknown verb")));
    EXPECT_EQ(world.log.back(), "✅ Done: " + out);
}

TEST_F(Builder, stopsAtEveryTool)
{
    project.volumeIconPath = (world.source / "arrow.png").string();
    project.internetEnabled = true;
    project.signingMode = SigningMode::signAndNotarize;
    project.codeSignIdentity = "me";
    project.notaryProfile = "profile";
    BuildWorld::write(world.favorites, "favourites");
    EXPECT_EQ(world.build(project), "");
    const std::vector<std::string> all = world.tools->names();
    ASSERT_GT(all.size(), 15u);
    for (std::size_t step = 0; step < all.size(); ++step) {
        SCOPED_TRACE(std::to_string(step) + " " + all[step]);
        BuildWorld one;
        DMGProject stopped = project;
        BuildWorld::write(one.favorites, "favourites");
        one.tools->before = [&](const std::string&) {
            if (one.tools->calls.size() == step + 1)
                one.stop.requestStop();
        };
        EXPECT_EQ(one.build(stopped), "Build stopped.");
        EXPECT_THAT(one.scratchFiles(), IsEmpty());
        EXPECT_THAT(one.tools->attached, IsEmpty());
        // Nothing but the detach of what is attached runs after the stop.
        const std::vector<std::string> ran = one.tools->names();
        ASSERT_LE(ran.size(), step + 2);
        if (ran.size() == step + 2) {
            EXPECT_EQ(ran.back(), "hdiutil detach");
        }
        EXPECT_EQ(BuildWorld::read(one.favorites), "favourites");
    }
}

TEST_F(Builder, stopsWhileItWaitsOrCopies)
{
    BuildEnvironment environment = world.environment();
    environment.sleep = [this](std::chrono::milliseconds) { world.stop.requestStop(); };
    DMGBuilder napping({}, environment);
    EXPECT_THROW(
        {
            try {
                napping.build(project, world.output);
            } catch (const BuildError& error) {
                EXPECT_EQ(error.message, "Build stopped.");
                throw;
            }
        },
        BuildError);
    expectNothingLeft();

    world.tools->calls.clear();
    EXPECT_EQ(world.build(project), "Build stopped."); // requested before it began
    EXPECT_THAT(world.tools->calls, IsEmpty());
    expectNothingLeft();
}

TEST_F(Builder, worksInAPrivateFolder)
{
    fs::perms mode{};
    fs::perms stageMode{};
    world.tools->before = [&](const std::string& name) {
        if (name == "hdiutil create") {
            mode = fs::status(scratch).permissions();
            stageMode = fs::status(scratch + "/stage").permissions();
        }
    };
    EXPECT_EQ(world.build(project), "");
    EXPECT_EQ(mode, fs::perms{0700});
    EXPECT_EQ(stageMode, fs::perms{0755}); // it becomes the root of the volume
}

TEST_F(Builder, goesThroughTheStepsThatTheProjectNeeds)
{
    const auto expectSteps = [this] {
        world.steps.clear();
        EXPECT_EQ(world.build(project), "");
        ASSERT_FALSE(world.steps.empty());
        EXPECT_EQ(world.steps.front(), (std::pair{BuildStep::check, 0.0}));
        EXPECT_EQ(world.steps.back().second, 1.0);
        EXPECT_TRUE(std::is_sorted(world.steps.begin(), world.steps.end()));
        std::vector<BuildStep> seen;
        for (const auto& [step, fraction] : world.steps) {
            EXPECT_FALSE(displayName(step).empty());
            if (seen.empty() || seen.back() != step)
                seen.push_back(step);
        }
        EXPECT_EQ(seen, neededSteps(project));
    };
    expectSteps();
    project.signingMode = SigningMode::signAndNotarize;
    project.codeSignIdentity = "Zoë";
    project.notaryProfile = "profile";
    project.volumeIconPath = project.overlayImages.at(0).sourcePath;
    expectSteps();
    project.backgroundKind = BackgroundKind::image; // without a picture
    expectSteps();
}

TEST_F(Builder, removesWhatAKilledBuildLeftAndNothingElse)
{
    const auto left = [&](const std::string& name) {
        BuildWorld::write(world.temporary / name / "content", "x");
        return world.temporary / name;
    };
    fs::create_directories(world.temporary);
    const ClaimedPath running = claimFolder(world.temporary, {"velmora-build-", BuildWorld::uuid(91)});
    const fs::path killed = left("velmora-build-" + BuildWorld::uuid(90));
    const fs::path theUsers = left("velmora-build-of-today");
    const fs::path theirIcons = left("icon-applications.iconset");
    const fs::path linked = world.temporary / ("velmora-build-" + BuildWorld::uuid(92));
    fs::create_directory_symlink(theUsers, linked);

    project.volumeIconPath = project.overlayImages.at(0).sourcePath;
    EXPECT_EQ(world.build(project), "");
    EXPECT_FALSE(fs::exists(killed));
    EXPECT_TRUE(fs::exists(theUsers / "content"));
    EXPECT_TRUE(fs::exists(theirIcons / "content"));
    EXPECT_TRUE(fs::exists(running.path));
    EXPECT_TRUE(fs::is_symlink(linked));
}

TEST_F(Builder, looksForRoomBeforeAnythingIsWritten)
{
    BuildWorld::write(world.source / "My App.app/Contents/MacOS/app", std::string(3'000'000, 'x'));
    const std::uint64_t plenty = 1'000'000'000;
    struct Row {
        const char* name;
        std::uint64_t scratch, target;
        bool isOneDevice, sharesBlocks;
        DMGFormat format;
        const char* error;
        const char* warning;
    };
    const Row rows[] = {
        {"plenty", plenty, plenty, false, false, DMGFormat::readOnly, "", ""},
        {"no room for copies and image", 5'000'000, plenty, false, false, DMGFormat::readOnly, "tmp”: putting", ""},
        {"copies take no room", 5'000'000, plenty, false, true, DMGFormat::readOnly, "", ""},
        {"no room for the image", plenty, 2'000'000, false, false, DMGFormat::readOnly, "out”: the image needs 3.0",
         ""},
        {"one room for all", 8'000'000, 8'000'000, true, false, DMGFormat::readWrite, "beside what putting", ""},
        {"one room that has shrunk meanwhile", 8'000'000, 2'000'000, true, false, DMGFormat::readWrite,
         "beside what putting", ""},
        {"nobody knows how small", plenty, 2'000'000, false, false, DMGFormat::compressed, "", "up to 3.0"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        world.freeSpace = [&](const fs::path& path) {
            const bool isTarget = path == world.output.parent_path();
            return DiskSpace{.device = isTarget && !row.isOneDevice ? 2u : 1u,
                             .freeBytes = isTarget ? row.target : row.scratch,
                             .freeEntries = 1000,
                             .sharesBlocks = row.sharesBlocks};
        };
        project.format = row.format;
        const std::string error = world.build(project);
        EXPECT_THAT(error, HasSubstr(row.error));
        EXPECT_EQ(error.empty(), *row.error == '\0');
        EXPECT_EQ(world.warnings.empty(), *row.warning == '\0');
        if (*row.warning != '\0') {
            EXPECT_THAT(world.warnings, Contains(HasSubstr(row.warning)));
        }
        expectNothingLeft();
    }
}

TEST_F(Builder, refusesAScratchFolderThatIsTaken)
{
    fs::create_directories(world.temporary);
    const ClaimedPath theirs = claimFolder(world.temporary, {"velmora-build-", BuildWorld::uuid(1)});
    ASSERT_EQ(theirs.path, scratch);
    EXPECT_THAT(world.build(project), HasSubstr("velmora-build-"));
    EXPECT_TRUE(fs::exists(theirs.path));
}

TEST_F(Builder, replacesALinkAtTheOutputNotWhatItPointsTo)
{
    const fs::path canary = world.source / "canary";
    BuildWorld::write(canary, "alive");
    fs::create_symlink(canary, world.output);
    EXPECT_EQ(world.build(project), "");
    EXPECT_EQ(BuildWorld::read(canary), "alive");
    EXPECT_FALSE(fs::is_symlink(world.output));
}

TEST(BuildEnvironment, ofTheSystemIsComplete)
{
    BuildWorld world;
    StopSource stop;
    const BuildEnvironment environment = BuildEnvironment::system(world.arrows, world.cache, stop.token());
    EXPECT_TRUE(environment.shell && environment.mountPath && environment.sleep && environment.uuid);
    EXPECT_EQ(environment.uuid().size(), 36u);
    EXPECT_NE(environment.uuid(), environment.uuid());
    EXPECT_TRUE(environment.temporaryFolder.is_absolute());
    EXPECT_TRUE(environment.homeFolder.is_absolute());
    stop.requestStop();
    EXPECT_TRUE(environment.stop.stopRequested());
    environment.sleep(std::chrono::hours(1)); // returns at once after a stop
}

} // namespace
} // namespace velmora::testing
