#include "worlds/build_world.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>

namespace velmora::testing
{
namespace
{

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

struct Row {
    const char* name;
    std::function<void(DMGProject&)> spoil;
    std::string message; ///< what the error begins with
};

class Validation : public ::testing::Test
{
protected:
    void expectRefused(const std::vector<Row>& rows)
    {
        for (const Row& row : rows) {
            SCOPED_TRACE(row.name);
            DMGProject project = world.typicalProject();
            row.spoil(project);
            const std::string message = world.build(project);
            EXPECT_THAT(message, StartsWith(row.message));
            EXPECT_THAT(world.tools->calls, IsEmpty());
            EXPECT_THAT(world.log, IsEmpty());
            EXPECT_THAT(world.scratchFiles(), IsEmpty());
        }
    }

    BuildWorld world{};
};

const double nan = std::nan("");

TEST_F(Validation, refusesIncompleteProjects)
{
    const std::string missing = (world.source / "gone").string();
    expectRefused({
        {"blank volume name", [](DMGProject& p) { p.volumeName = " \t "; }, "Volume name cannot be empty."},
        {"only a link", [](DMGProject& p) { p.items = {DMGItem::applicationsLink({})}; },
         "Add at least one file or folder before building."},
        {"only hidden files", [](DMGProject& p) { p.items[0].hidden = true; },
         "Add at least one file or folder before building."},
        {"missing source", [&](DMGProject& p) { p.items[0].sourcePath = missing; }, "Missing source file:\n" + missing},
        {"the volume name comes first",
         [&](DMGProject& p) {
             p.volumeName = "";
             p.items.clear();
         },
         "Volume name cannot be empty."},
    });
}

TEST_F(Validation, refusesNamesThatAVolumeCannotHold)
{
    const std::string longName(256, 'x');
    const std::string decomposesLonger = [] {
        std::string name;
        for (int i = 0; i < 128; ++i)
            name += "é"; // two units each
        return name;
    }();
    std::vector<Row> rows;
    const std::vector<std::pair<const char*, std::string>> badNames = {
        {"dot", "."},
        {"two dots", ".."},
        {"slash", "a/b"},
        {"climbing", "../x"},
        {"NUL", std::string("a\0b", 3)},
        {"broken UTF-8", "a\xC3"},
        {"too long", longName},
        {"too long once decomposed", decomposesLonger},
    };
    for (const auto& [name, value] : badNames) {
        rows.push_back(
            {name, [value = value](DMGProject& p) { p.items[0].displayName = value; }, "items[0].displayName: "});
        rows.push_back(
            {name, [value = value](DMGProject& p) { p.items[1].displayName = value; }, "items[1].displayName: "});
        rows.push_back({name, [value = value](DMGProject& p) { p.volumeName = value; }, "volumeName: "});
    }
    rows.push_back({"empty", [](DMGProject& p) { p.items[1].displayName = ""; }, "items[1].displayName: "});
    for (const char* value : {"a:b", "a\nb", "a\x7F", "a\u0085"})
        rows.push_back({value, [value](DMGProject& p) { p.volumeName = value; }, "volumeName: "});
    rows.push_back({"NUL in a target", [](DMGProject& p) { p.items[1].symlinkTarget = std::string("/A\0", 3); },
                    "items[1].symlinkTarget: "});
    rows.push_back({"NUL in a path", [](DMGProject& p) { p.items[0].sourcePath += std::string("\0x", 2); },
                    "items[0].sourcePath: "});
    rows.push_back(
        {"NUL in an identity", [](DMGProject& p) { p.codeSignIdentity = std::string("\0", 1); }, "codeSignIdentity: "});
    expectRefused(rows);
}

TEST_F(Validation, refusesNumbersThatDoNotFit)
{
    expectRefused({
        {"window", [](DMGProject& p) { p.windowWidth = nan; }, "windowWidth: "},
        {"position", [](DMGProject& p) { p.items[1].x = 1e10; }, "items[1].x: "},
        {"angle", [](DMGProject& p) { p.gradientAngle = nan; }, "gradientAngle: "},
        {"scale", [](DMGProject& p) { p.backgroundImageScale = HUGE_VAL; }, "backgroundImageScale: "},
        {"colour", [](DMGProject& p) { p.gradientEnd.g = nan; }, "gradientEnd: "},
        {"overlay", [](DMGProject& p) { p.overlayImages[0].height = nan; }, "overlayImages[0].height: "},
        {"caption",
         [](DMGProject& p) {
             p.textOverlays.resize(2);
             p.textOverlays[1].fontSize = nan;
         },
         "textOverlays[1].fontSize: "},
        {"no content height", [](DMGProject& p) { p.windowHeight = 28.9; }, "windowHeight: "},
        {"no content width", [](DMGProject& p) { p.windowWidth = 0.5; }, "windowWidth: "},
        {"twice the width overflows", [](DMGProject& p) { p.windowWidth = 1.5e9; }, "windowWidth: "},
        {"no size", [](DMGProject& p) { p.imageSizeAutomatic = false, p.manualSizeMB = 0; }, "manualSizeMB: "},
        {"absurd size", [](DMGProject& p) { p.imageSizeAutomatic = false, p.manualSizeMB = INT64_MAX; },
         "manualSizeMB: "},
    });
}

TEST_F(Validation, refusesOutputsThatAreNotItsToReplace)
{
    const auto refuse = [&](const char* what) {
        EXPECT_THAT(world.build(world.typicalProject()), HasSubstr(what));
        EXPECT_THAT(world.tools->calls, IsEmpty());
        EXPECT_TRUE(fs::exists(world.output));
        fs::remove_all(world.output);
    };
    BuildWorld::write(world.output / "precious", "x");
    refuse("that is a folder");
    fs::create_directories(world.output); // an empty one would be easy to remove
    refuse("that is a folder");
    ASSERT_EQ(std::system(("mkfifo '" + world.output.string() + "'").c_str()), 0);
    refuse("that is not a file");

    BuildWorld::write(world.output, "own content");
    DMGProject project = world.typicalProject();
    project.items.push_back({.sourcePath = world.output.string(), .displayName = "old.dmg"});
    EXPECT_THAT(world.build(project), HasSubstr("which is to be put into it"));
    EXPECT_EQ(BuildWorld::read(world.output), "own content");
}

TEST_F(Validation, refusesAFolderThatHoldsTheWorkplace)
{
    for (const fs::path& folder : {world.temporary, world.temporary.parent_path(), fs::path("/")})
        expectRefused({{folder.c_str(), [&](DMGProject& p) { p.items[0].sourcePath = folder.string(); },
                        "items[0].sourcePath: "}});
}

TEST_F(Validation, acceptsWhatOnlyLooksDangerous)
{
    const struct {
        const char* name;
        std::function<void(DMGProject&)> change;
    } cases[] = {
        {"colon in a name", [](DMGProject& p) { p.items[0].displayName = "a:b"; }},
        {"line break in a name", [](DMGProject& p) { p.items[0].displayName = "a\nb"; }},
        {"three dots", [](DMGProject& p) { p.items[0].displayName = "..."; }},
        {"255 units", [](DMGProject& p) { p.volumeName = std::string(255, 'v'); }},
        {"a hidden entry of any kind",
         [](DMGProject& p) {
             p.items.push_back({.sourcePath = "/nowhere", .displayName = "..", .x = nan, .hidden = true});
         }},
        {"an unused size", [](DMGProject& p) { p.manualSizeMB = -5; }},
        {"a small window without a background",
         [](DMGProject& p) {
             p.backgroundKind = BackgroundKind::image;
             p.windowHeight = 10;
         }},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        DMGProject project = world.typicalProject();
        c.change(project);
        EXPECT_EQ(world.build(project), "");
    }
}

} // namespace
} // namespace velmora::testing
