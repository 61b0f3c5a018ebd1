#include "cli/build_options.h"
#include "cli/inspect_options.h"
#include "cli/progress_line.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::cli
{
namespace
{

using testing::HasSubstr;
using testing::StartsWith;

TEST(BuildOptions, refusesWhatItDoesNotUnderstand)
{
    const struct {
        const char* name;
        QStringList arguments;
        const char* complaint;
    } cases[] = {
        {"nothing", {}, "expected PROJECT.velmora or an application and OUTPUT.dmg"},
        {"one name", {"a.velmora"}, "got 1"},
        {"three names", {"a", "b", "c.dmg"}, "got 3"},
        {"an unknown option", {"--fast", "a", "b.dmg"}, "fast"},
        {"an output that the image tool would rename", {"a", "b.img"}, ".dmg"},
        {"a map without a target", {"--map", "/a", "a", "b.dmg"}, "FROM=TO"},
        {"a relative map", {"--map", "a=/b", "a", "b.dmg"}, "FROM=TO"},
        {"checking and writing", {"--check", "--init", "a.velmora", "a.app"}, "--check writes nothing"},
        {"checking with a log", {"--check", "--log", "l", "a"}, "--check builds nothing"},
        {"checking with a report", {"--check", "--report", "-", "a"}, "--check builds nothing"},
        {"a log of no build", {"--init", "a.velmora", "--log", "l", "a.app"}, "nothing is built"},
        {"checking too much", {"--check", "a", "b.dmg", "c"}, "got 3"},
        {"a document of another kind", {"--init", "a.dmg", "a.app"}, ".velmora"},
        {"the report over the project", {"--report", "./x/../a", "a", "b.dmg"}, "the project and --report"},
        {"the log over the report", {"--report", "r", "--log", "r", "a", "b.dmg"}, "--log and --report"},
        {"a project without a name", {"", "b.dmg"}, "the project needs a file name"},
        {"checking a project without a name", {"--check", ""}, "the project needs a file name"},
        {"a log without a name", {"--log", "", "a", "b.dmg"}, "--log needs a file name"},
        {"a report without a name", {"--report", "", "a", "b.dmg"}, "--report needs a file name"},
        {"a map to a relative path", {"--map", "/a=b", "a", "b.dmg"}, "FROM=TO"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const auto parsed = parseBuildOptions(QStringList{"velmora-build"} + c.arguments);
        EXPECT_FALSE(parsed.options);
        EXPECT_EQ(parsed.exitStatus, 2);
        EXPECT_THAT(parsed.text, HasSubstr(c.complaint));
    }
}

TEST(BuildOptions, readsEveryOption)
{
    const auto parsed =
        parseBuildOptions({"velmora-build", "--map", "/a=/b", "a b.velmora", "--map=/c=/d=e", "Out.DMG", "--strict",
                           "--quiet", "--volume-name", "Ünï", "--log", "l.txt", "--password-stdin"});
    ASSERT_TRUE(parsed.options);
    const BuildOptions& options = *parsed.options;
    EXPECT_EQ(options.project, "a b.velmora");
    EXPECT_EQ(options.output, "Out.DMG");
    EXPECT_EQ(options.maps, (std::vector<std::pair<std::string, std::string>>{{"/a", "/b"}, {"/c", "/d=e"}}));
    EXPECT_EQ(options.volumeName, "Ünï");
    EXPECT_EQ(options.logFile, "l.txt");
    EXPECT_TRUE(options.strict && options.quiet && options.passwordFromInput);

    const auto first = parseBuildOptions({"velmora-build", "--report", "-", "--init", "a.velmora", "a.app", "b.dmg"});
    ASSERT_TRUE(first.options) << first.text;
    EXPECT_EQ(first.options->report, "-");
    EXPECT_EQ(first.options->initDocument, "a.velmora");
    EXPECT_TRUE(first.options->quiet) << "standard output is the report's";
    EXPECT_EQ(parseBuildOptions({"velmora-build", "--report", "/dev/stdout", "a", "b.dmg"}).options->report, "-");
    EXPECT_EQ(parseBuildOptions({"velmora-build", "--check", "a"}).options->output, "");
}

TEST(InspectOptions, takesOneImageAndOneRequest)
{
    EXPECT_EQ(parseInspectOptions({"velmora-inspect"}).exitStatus, 2);
    EXPECT_EQ(parseInspectOptions({"velmora-inspect", "a", "b"}).exitStatus, 2);
    EXPECT_EQ(parseInspectOptions({"velmora-inspect", "--list", "--cat", "/x", "a"}).exitStatus, 2);
    const auto parsed = parseInspectOptions({"velmora-inspect", "--cat", "/x", "a.dmg"});
    ASSERT_TRUE(parsed.options);
    EXPECT_EQ(parsed.options->mode, InspectMode::cat);
    EXPECT_EQ(parsed.options->argument, "/x");
}

TEST(ProgressLine, fitsTheTerminal)
{
    const auto columnsOf = [](const std::string& text) {
        std::size_t columns = 0;
        for (const char c : text)
            columns += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
        return columns;
    };
    EXPECT_THAT(progressText(BuildStep::convert, 0.5, 65, 80), HasSubstr(" 50 %  1:05"));
    EXPECT_THAT(progressText(BuildStep::staging, 7.0, 0, 80), HasSubstr("100 %"));
    EXPECT_THAT(progressText(BuildStep::staging, 0, 0, 80), StartsWith(std::string(displayName(BuildStep::staging))));
    EXPECT_LT(columnsOf(progressText(BuildStep::create, 0.3, 12, 50)), 50U);
    EXPECT_LE(columnsOf(progressText(BuildStep::create, 0.3, 12, 300)), 80U);
}

} // namespace
} // namespace velmora::cli
