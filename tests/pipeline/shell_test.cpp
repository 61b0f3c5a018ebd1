#include "pipeline/shell.h"

#include "platform/file_tree.h"
#include "worlds/build_world.h"

#include <gtest/gtest.h>

namespace velmora::testing
{
namespace
{

class RealShell : public ::testing::Test
{
protected:
    ShellResult run(const std::string& executable, const std::vector<std::string>& arguments,
                    const std::optional<std::string>& input = {})
    {
        return shell(executable).run(executable, arguments, input, logger(), {});
    }
    /// A shell that finds `osascript` instead of the script runner.
    Shell shell(const std::string& osascript)
    {
        return Shell(
            {.findTool =
                 [osascript](const std::string& path) { return path == "/usr/bin/osascript" ? osascript : path; },
             .temporaryFolder = [this] { return folder.path(); },
             .uuid = [] { return BuildWorld::uuid(7); }});
    }
    LogCallback logger()
    {
        return [this](const std::string& line) { log.push_back(line); };
    }

    TemporaryFolder folder{};
    std::vector<std::string> log{};
};

TEST_F(RealShell, reportsStatusAndBothOutputs)
{
    const std::string binary = std::string("a") + '\xff' + "b";
    const struct {
        const char* name;
        std::string script;
        int exitCode;
        std::string stdOut;
        std::string stdErr;
        std::vector<std::string> logged; ///< after the command line
    } cases[] = {
        {"silent success", "exit 0", 0, "", "", {}},
        {"own status", "exit 3", 3, "", "", {}},
        {"untrimmed result, trimmed log", "printf ' two\\nlines \\n'", 0, " two\nlines \n", "", {"two\nlines"}},
        {"output before error output", "echo late >&2; echo first", 0, "first\n", "late\n", {"first", "late"}},
        {"white space only", "printf ' \\n'", 0, " \n", "", {""}},
        {"broken UTF-8", "printf 'a\\377b'; printf 'cut\\303' >&2; exit 4", 4, "", "", {}},
        {"UTF-8", "printf 'h\\303\\251'", 0, "h\xC3\xA9", "", {"h\xC3\xA9"}},
        {"Unicode blanks around", "printf '\\302\\240x\\342\\200\\250'", 0, "\u00A0x\u2028", "", {"x"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        log.clear();
        const ShellResult result = run("/bin/sh", {"-c", c.script});
        EXPECT_EQ(result.exitCode, c.exitCode);
        EXPECT_EQ(result.ok(), c.exitCode == 0);
        EXPECT_EQ(result.stdOut, c.stdOut);
        EXPECT_EQ(result.stdErr, c.stdErr);
        std::vector<std::string> expected = c.logged;
        expected.insert(expected.begin(), "$ sh -c " + c.script);
        EXPECT_EQ(log, expected);
    }
}

TEST_F(RealShell, passesArgumentsVerbatimAndKeepsTheInputOutOfTheLog)
{
    EXPECT_EQ(run("/bin/sh", {"-c", "printf '<%s>' \"$@\"", "sh", "a b", "", "$HOME", "*", "\"'"}).stdOut,
              "<a b><><$HOME><*><\"'>");
    log.clear();
    EXPECT_EQ(run("/bin/sh", {"-c", "cat >&2; echo done"}, "s3cret\nno newline added").stdErr,
              "s3cret\nno newline added");
    EXPECT_EQ(log.front(), "$ sh -c cat >&2; echo done");
    EXPECT_EQ(run("/bin/cat", {}, "").stdOut, "");
    EXPECT_EQ(log.back(), "$ cat "); // the separating space is always there
}

TEST_F(RealShell, saysWhyAToolDidNotStart)
{
    const ShellResult result = run("/nowhere/hdiutil", {"attach", "x"});
    EXPECT_EQ(result.exitCode, -1);
    EXPECT_EQ(result.stdOut, "");
    EXPECT_EQ(result.stdErr, "Failed to launch /nowhere/hdiutil: No such file or directory");
    EXPECT_EQ(log, std::vector<std::string>{"$ hdiutil attach x"});
}

TEST_F(RealShell, endsAToolWhenAStopIsRequested)
{
    StopSource stop;
    stop.requestStop();
    const ShellResult result = shell("").run("/bin/sh", {"-c", "sleep 100"}, {}, {}, stop.token());
    EXPECT_FALSE(result.ok());
}

TEST_F(RealShell, runsAScriptByWayOfAFileThatGoesAway)
{
    const std::string file = (folder.path() / ("velmora-" + BuildWorld::uuid(7) + ".applescript")).string();
    const ShellResult result = shell("/bin/cat").runAppleScript("tell “Finder”\n", logger(), {});
    EXPECT_EQ(result.stdOut, "tell “Finder”\n");
    EXPECT_EQ(log.front(), "$ osascript " + file);
    EXPECT_TRUE(listFolder(folder.path()).empty());

    EXPECT_EQ(shell("/bin/false").runAppleScript("x", {}, {}).exitCode, 1);
    EXPECT_TRUE(listFolder(folder.path()).empty());

    log.clear();
    std::filesystem::remove(folder.path());
    const ShellResult unwritten = shell("/bin/cat").runAppleScript("x", logger(), {});
    EXPECT_EQ(unwritten.exitCode, -1);
    EXPECT_TRUE(unwritten.stdErr.starts_with("Could not write AppleScript: ")) << unwritten.stdErr;
    EXPECT_TRUE(log.empty());
}

} // namespace
} // namespace velmora::testing
