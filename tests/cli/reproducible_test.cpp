// The same project gives the same bytes wherever and whenever it is built, by the real program and the real tools.

#include "model/document.h"
#include "platform/child_process.h"
#include "platform/file_tree.h"
#include "platform/folders.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <random>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// A folder with sources of their own and a temporary folder; `command` comes before the program.
std::string builtImage(const fs::path& folder, std::vector<std::string> command, const char* buildDate)
{
    fs::create_directories(folder / "Test.app/Contents/MacOS");
    std::mt19937 random(1); // the same content each time
    std::string content(3 << 20, '\0');
    for (char& byte : content)
        byte = static_cast<char>(random() % 16);
    writeFile(folder / "Test.app/Contents/MacOS/Test", content);
    writeFile(folder / "Test.app/Contents/Info.plist", "<plist/>");
    fs::create_symlink("MacOS/Test", folder / "Test.app/Contents/link");
    DMGProject project;
    project.volumeName = "Test";
    project.items = {{.sourcePath = (folder / "Test.app").string(), .displayName = "Test.app", .x = 150, .y = 180},
                     DMGItem::applicationsLink({450, 180})};
    project.textOverlays.emplace_back().text = "Drag it over";
    writeFile(folder / "project.velmora", Document::encode(project));

    const fs::path image = folder / "Image.dmg";
    const char* const sanitizer = std::getenv("ASAN_OPTIONS");
    std::vector<std::string> arguments{"-i", "PATH=/usr/bin:/bin", "TMPDIR=" + (folder / "tmp").string(),
                                       std::string("SOURCE_DATE_EPOCH=") + buildDate,
                                       std::string("ASAN_OPTIONS=") + (sanitizer ? sanitizer : "")};
    arguments.insert(arguments.end(), command.begin(), command.end());
    arguments.insert(arguments.end(), {std::string(VELMORA_TEST_BIN_DIR) + "/velmora-build", "--quiet",
                                       (folder / "project.velmora").string(), image.string()});
    const ChildResult result = runChild({.program = "/usr/bin/env", .arguments = arguments});
    EXPECT_EQ(result.exitCode, 0) << result.error;
    return readFile(image, 1 << 28);
}

TEST(Reproducible, buildsDifferOnlyWhereTimeDoes)
{
    const fs::path root = Folders::temporary() / ("velmora-reproducible-" + Uuid::random().toString());
    const std::string first = builtImage(root / "one", {}, "1700000000");
    const std::string second = builtImage(root / "two/deeper", {"taskset", "-c", "0"}, "1700000000");
    const std::string later = builtImage(root / "three", {}, "1700000001");
    EXPECT_TRUE(first == second);
    EXPECT_FALSE(first == later);
    EXPECT_NEAR(static_cast<double>(first.size()), static_cast<double>(later.size()), 200.0);
    removeTree(root);
}

} // namespace
} // namespace velmora
