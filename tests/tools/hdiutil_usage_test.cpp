#include "platform/file_tree.h"
#include "platform/mounts.h"
#include "tools/tool_fixture.h"

namespace fs = std::filesystem;
using namespace velmora;
using namespace velmora::test;

namespace
{

class ToolUsage : public ToolTest
{
};

} // namespace

TEST_F(ToolUsage, isShownForCommandLinesThatCannotBeUnderstood)
{
    const std::vector<std::string> create = {"create", "-srcfolder", "s",    "-volname", "V",    "-fs",
                                             "HFS+",   "-format",    "UDRW", "x.dmg",    "-size"};
    const auto withSize = [&](const char* size) {
        auto all = create;
        all.emplace_back(size);
        return all;
    };
    const struct {
        const char* tool;
        std::vector<std::string> arguments;
        const char* says;
    } cases[] = {
        {"hdiutil", {}, "no verb"},
        {"hdiutil", {"burn"}, "\"burn\""},
        {"hdiutil", {"-verbose", "create"}, "-verbose"},
        {"hdiutil", {"create", "x.dmg"}, "-fs"},
        {"hdiutil", create, "-size"},
        {"hdiutil", withSize(""), "-size"},
        {"hdiutil", withSize("57"), "suffix"},
        {"hdiutil", withSize("m"), "size"},
        {"hdiutil", withSize("0m"), "size"},
        {"hdiutil", withSize("-5m"), "size"},
        {"hdiutil", withSize("5.5m"), "size"},
        {"hdiutil", withSize("5mm"), "size"},
        {"hdiutil", withSize("99999999999999999999m"), "size"},
        {"hdiutil", withSize("4398046511104m"), "size"},
        {"hdiutil", {"attach"}, "missing"},
        {"hdiutil", {"attach", ""}, "empty"},
        {"hdiutil", {"attach", "a", "b"}, "\"b\""},
        {"hdiutil", {"attach", "a", "-readonly", "-readwrite"}, "exclude"},
        {"hdiutil", {"attach", "a", "-readonly", "-readonly"}, "twice"},
        {"hdiutil", {"detach", "-force"}, "missing"},
        {"hdiutil", {"convert", "a", "-o", "b"}, "-format"},
        {"hdiutil", {"convert", "a", "-format", "UDZO", "-o", "b", "-imagekey", "zlib-level=10"}, "zlib-level"},
        {"hdiutil", {"convert", "a", "-format", "UDZO", "-o", "b", "-imagekey", "zlib-level=0"}, "zlib-level"},
        {"hdiutil", {"convert", "a", "-format", "UDZO", "-o", "b", "-imagekey", "bogus=1"}, "bogus"},
        {"hdiutil", {"convert", "a", "-format"}, "needs a value"},
        {"hdiutil", {"internet-enable", "a"}, "-yes or -no"},
        {"hdiutil", {"info", "a"}, "\"a\""},
        {"osascript", {}, "missing"},
        {"osascript", {"-e", "beep"}, "-e"},
        {"du", {"x"}, "-sk"},
        {"du", {"-sh", "x"}, "-sh"},
        {"SetFile", {"/Volumes/V"}, "-a"},
        {"SetFile", {"-a", "X", "/Volumes/V"}, "\"X\""},
        {"SetFile", {"-a", "Cc", "/Volumes/V"}, "both"},
        {"sips", {"a.png"}, "nothing"},
        {"sips", {"-s", "format", "jpeg", "a.png"}, "format"},
        {"sips", {"-s", "dpiWidth", "0", "a.png"}, "dpiWidth"},
        {"sips", {"-s", "dpiWidth", "1e9", "a.png"}, "dpiWidth"},
        {"sips", {"-s", "dpiWidth"}, "needs a value"},
        {"tiffutil", {"a", "b", "-out", "c"}, "-cathidpicheck"},
        {"tiffutil", {"-cathidpicheck", "a", "-out", "c"}, "missing"},
        {"iconutil", {"-c", "png", "a.iconset", "-o", "a.icns"}, "\"png\""},
        {"iconutil", {"-c", "icns", "a", "-o", "a.icns"}, ".iconset"},
        {"iconutil", {"-c", "iconset", "a.icns", "-o", "folder"}, ".iconset"},
        {"codesign", {}, "no arguments"},
        {"xcrun", {"clang"}, "\"clang\""},
    };
    for (const auto& c : cases) {
        std::string line = c.tool;
        for (const std::string& argument : c.arguments)
            line += " [" + argument + "]";
        SCOPED_TRACE(line);
        const ChildResult result = run(c.tool, c.arguments);
        EXPECT_EQ(result.exitCode, 2) << result.launchError;
        EXPECT_EQ(result.output, "");
        EXPECT_NE(result.error.find("usage: " + std::string(c.tool)), std::string::npos);
        EXPECT_NE(result.error.substr(0, result.error.find('\n')).find(c.says), std::string::npos) << result.error;
    }
}

TEST_F(ToolUsage, isOfferedOnRequest)
{
    for (const char* const tool :
         {"hdiutil", "osascript", "du", "SetFile", "iconutil", "sips", "tiffutil", "codesign", "xcrun"})
        EXPECT_EQ(succeed(tool, {"--help"}).find("usage: " + std::string(tool)), 0U);
}

TEST_F(ToolUsage, namesWhatIsNotAvailable)
{
    write("folder/file", "x");
    const fs::path image = createImage("a.dmg", path("folder"), "V");
    const std::vector<std::string> convert = {"convert", image, "-o", path("b.dmg"), "-format"};
    const auto with = [](std::vector<std::string> arguments, std::initializer_list<const char*> more) {
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    };
    const std::vector<std::string> create = {"create", "-srcfolder", path("folder"), "-volname",
                                             "V",      "-size",      "32m",          path("b.dmg")};
    const struct {
        const char* tool;
        std::vector<std::string> arguments;
        const char* says;
    } cases[] = {
        {"hdiutil", with(convert, {"ULFO"}), "convert failed - the format \"ULFO\""},
        {"hdiutil", with(convert, {"UDZO", "-encryption", "AES-256", "-stdinpass"}),
         "convert failed - encrypted images"},
        {"hdiutil", with(create, {"-fs", "APFS", "-format", "UDRW"}), "create failed - APFS"},
        {"hdiutil", with(create, {"-fs", "FAT32", "-format", "UDRW"}), "\"FAT32\""},
        {"hdiutil", with(create, {"-fs", "HFS+", "-format", "UDZO"}), "\"UDZO\""},
        {"hdiutil", with(create, {"-fs", "HFS+", "-format", "UDRW", "-encryption", "AES-128"}), "encrypted images"},
        {"hdiutil", with(create, {"-fs", "HFS+", "-format", "UDRW", "-fsargs", "-c c=0x"}), "create failed - "},
        {"codesign", {"--force", "--sign", "Developer ID", "b.dmg"}, "signed"},
        {"xcrun", {"notarytool", "submit", "b.dmg"}, "notarized"},
        {"xcrun", {"stapler", "staple", "b.dmg"}, "notarized"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.says);
        const std::string error = fail(c.tool, c.arguments);
        EXPECT_NE(error.find(c.says), std::string::npos) << error;
        EXPECT_FALSE(fs::exists(path("b.dmg")));
    }
}

TEST_F(ToolUsage, protectsFilesThatExist)
{
    write("folder/file", "x");
    const fs::path image = createImage("a.dmg", path("folder"), "V");
    write("b.dmg", "precious");
    fs::create_directory(path("d.dmg"));
    fs::create_symlink(path("b.dmg"), path("link.dmg"));
    const auto convertTo = [&](const char* name, std::vector<std::string> more = {}) {
        std::vector<std::string> arguments = {"convert", image, "-format", "UDRO", "-o", path(name)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    };
    EXPECT_NE(fail("hdiutil", convertTo("b.dmg")).find("exists"), std::string::npos);
    EXPECT_NE(fail("hdiutil", convertTo("b")).find("exists"), std::string::npos) << "with the extension it gets";
    fail("hdiutil", convertTo("link.dmg"));
    fail("hdiutil", convertTo("d.dmg", {"-ov"}));
    fail("hdiutil", convertTo("a.dmg", {"-ov"}));
    fail("hdiutil", convertTo("no such folder/b.dmg"));
    succeed("hdiutil", convertTo("link.dmg", {"-ov"}));
    EXPECT_EQ(readAll(path("b.dmg")), "precious") << "a link is replaced, not followed";
    EXPECT_FALSE(fs::is_symlink(path("link.dmg")));
    succeed("hdiutil", convertTo("b.dmg", {"-ov"}));
    succeed("hdiutil", {"verify", path("b.dmg")});
    const auto all = fs::perms::owner_exec | fs::perms::group_all | fs::perms::others_all;
    EXPECT_EQ(fs::status(path("b.dmg")).permissions() & all & ~(fs::perms::group_read | fs::perms::others_read),
              fs::perms::none);
}

TEST_F(ToolUsage, doesNotTakeOtherFilesForImages)
{
    write("empty", "");
    write("text", std::string(100'000, 'x'));
    for (const char* const name : {"empty", "text", "missing"}) {
        SCOPED_TRACE(name);
        for (const char* const verb : {"attach", "verify", "imageinfo"}) {
            const ChildResult result = run("hdiutil", {verb, path(name)});
            EXPECT_EQ(result.exitCode, 1) << verb << result.error;
        }
        fail("hdiutil", {"convert", path(name), "-format", "UDZO", "-o", path("out.dmg")});
        fail("hdiutil", {"internet-enable", "-yes", path(name)});
        EXPECT_FALSE(fs::exists(path("out.dmg")));
    }
}

TEST_F(ToolUsage, findsDamage)
{
    const fs::path raw = createImage("a.dmg", makeStage(), "V");
    succeed("hdiutil", {"convert", raw, "-format", "UDRO", "-o", path("u.dmg")});
    const std::string sound = readAll(path("u.dmg"));
    const auto flip = [](const fs::path& file, std::string bytes, std::size_t offset) {
        bytes[offset] = static_cast<char>(bytes[offset] ^ 1);
        writeFile(file, bytes);
    };
    const struct {
        const char* name;
        std::size_t offset;
    } cases[] = {{"data", sound.find(std::string(1000, 'x')) + 500},
                 {"data checksum", sound.size() - 512 + 88},
                 {"master checksum", sound.size() - 512 + 360}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        flip(path("u.dmg"), sound, c.offset);
        const ChildResult result = run("hdiutil", {"verify", path("u.dmg")});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_NE(result.output.find("WRONG"), std::string::npos) << result.output;
    }
    const std::string disk = readAll(raw);
    for (const std::size_t offset : {std::size_t{512 + 30}, std::size_t{40 * 512 + 1024 + 44}}) {
        flip(raw, disk, offset);
        EXPECT_EQ(run("hdiutil", {"verify", raw}).exitCode, 1) << offset;
    }
}
