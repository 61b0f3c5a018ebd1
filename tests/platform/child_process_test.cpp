#include "platform/child_process.h"

#include "platform/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace velmora
{
namespace
{

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::HasSubstr;

ChildRequest shell(const std::string& script, std::optional<std::string> input = std::string())
{
    return {.program = "/bin/sh", .arguments = {"-c", script}, .input = std::move(input)};
}

std::string pattern(std::size_t size)
{
    std::string text(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        text[i] = static_cast<char>(i * 31 >> 3);
    return text;
}

TEST(RunChild, returnsOutputsAndStatus)
{
    const struct {
        const char* name;
        const char* script;
        std::string input;
        int exitCode;
        std::string output;
        std::string error;
    } cases[] = {
        {"success", "echo out; echo err >&2", "", 0, "out\n", "err\n"},
        {"a status", "exit 7", "", 7, "", ""},
        {"a signal", "echo begun; kill -9 $$", "", SIGKILL, "begun\n", ""},
        {"empty input ends at once", "cat; echo end", "", 0, "end\n", ""},
        {"the outputs closed before the input is read", "exec >&- 2>&-; test $(wc -c) = 400000",
         std::string(400000, 'x'), 0, "", ""},
        {"no line break and a NUL", "cat", std::string("a\0b", 3), 0, std::string("a\0b", 3), ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ChildResult result = runChild(shell(c.script, c.input));
        EXPECT_TRUE(result.started);
        EXPECT_EQ(result.exitCode, c.exitCode);
        EXPECT_EQ(result.output, c.output);
        EXPECT_EQ(result.error, c.error);
    }
}

TEST(RunChild, neverStallsOnAFullPipe)
{
    const ChildResult both = runChild(shell("head -c 4000000 /dev/zero >&2; head -c 4000000 /dev/zero"));
    EXPECT_EQ(both.output.size(), 4000000U);
    EXPECT_EQ(both.error.size(), 4000000U);

    const std::string input = pattern(3000000);
    const ChildResult echoed = runChild({.program = "/bin/cat", .input = input});
    EXPECT_TRUE(echoed.output == input);
}

TEST(RunChild, survivesAChildThatDoesNotReadItsInput)
{
    const ChildResult result = runChild(shell("exit 3", pattern(4000000)));
    EXPECT_EQ(result.exitCode, 3);

    struct sigaction action {
    };
    ASSERT_EQ(::sigaction(SIGPIPE, nullptr, &action), 0);
    EXPECT_TRUE(action.sa_handler == SIG_DFL) << "the process's own treatment stays as it was";
    sigset_t pending{};
    ::sigpending(&pending);
    EXPECT_EQ(sigismember(&pending, SIGPIPE), 0);
}

TEST(RunChild, saysWhyAProgramDoesNotStart)
{
    const struct {
        const char* name;
        ChildRequest request;
        const char* reason;
    } cases[] = {
        {"missing", {.program = "/nonexistent/tool"}, "No such file or directory"},
        {"not executable", {.program = "/etc/passwd"}, "Permission denied"},
        {"a folder", {.program = "/"}, "Permission denied"},
        {"cut by a NUL", {.program = "/bin/echo", .arguments = {std::string("a\0b", 3)}}, "NUL"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const ChildResult result = runChild(c.request);
        EXPECT_FALSE(result.started);
        EXPECT_EQ(result.exitCode, -1);
        EXPECT_THAT(result.launchError, HasSubstr(c.reason));
    }
}

TEST(RunChild, givesTheChildNothingBeyondItsThreeDescriptorsAndDefaultSignals)
{
    constexpr int stray = 50; // without close-on-exec
    ASSERT_EQ(::dup2(STDERR_FILENO, stray), stray);
    sigset_t blocked{};
    sigset_t previous{};
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &blocked, &previous);
    const auto previousHandler = ::signal(SIGPIPE, SIG_IGN);

    const ChildResult descriptor = runChild(shell("test -e /proc/self/fd/1 && test ! -e /proc/self/fd/50"));
    // The upper half is real-time signals, of which the C library keeps two for itself.
    const ChildResult signals =
        runChild({.program = "/bin/grep", .arguments = {"-cE", "Sig(Blk|Ign):.*[08]0000000$", "/proc/self/status"}});

    ::signal(SIGPIPE, previousHandler);
    ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);
    ::close(stray);
    EXPECT_EQ(descriptor.exitCode, 0);
    EXPECT_EQ(signals.output, "2\n");
}

/// Runs a script and requests its stop once it has made the file "ready" in its folder.
struct StoppedRun {
    explicit StoppedRun(const std::string& script)
    {
        TemporaryFolder folder;
        const std::filesystem::path ready = folder / "ready";
        StopSource source;
        ChildRequest request = shell("cd '" + folder.path.string() + "'; " + script);
        request.stop = source.token();
        std::chrono::steady_clock::time_point requested{};
        std::thread stopper([&] {
            while (!std::filesystem::exists(ready))
                std::this_thread::sleep_for(milliseconds(5));
            requested = std::chrono::steady_clock::now();
            source.requestStop();
        });
        result = runChild(request);
        const auto ended = std::chrono::steady_clock::now();
        stopper.join();
        taken = ended - requested;
    }

    ChildResult result{};
    std::chrono::nanoseconds taken{};
};

TEST(RunChild, aStopEndsTheChildAndItsOwnChildren)
{
    const StoppedRun family("(trap 'echo asked to end; exit' TERM; touch ready; sleep 60 & wait) & wait");
    EXPECT_EQ(family.result.exitCode, SIGTERM);
    EXPECT_EQ(family.result.output, "asked to end\n");
    EXPECT_LT(family.taken, seconds(30));

    const StoppedRun silent("exec >&- 2>&-; touch ready; sleep 60");
    EXPECT_EQ(silent.result.exitCode, SIGTERM);
    EXPECT_LT(silent.taken, seconds(30));
}

TEST(RunChild, aStopKillsAChildThatWouldNotListen)
{
    const StoppedRun deaf("trap '' TERM; touch ready; sleep 60 & sleep 60");
    EXPECT_EQ(deaf.result.exitCode, SIGKILL);
    EXPECT_GE(deaf.taken, seconds(2));
    EXPECT_LT(deaf.taken, seconds(30));
}

} // namespace
} // namespace velmora
