#include "platform/signals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

namespace velmora
{
namespace
{

TEST(StopToken, wakesAWaiterOnlyByARequest)
{
    StopSource source;
    const StopToken copy = source.token();
    EXPECT_TRUE(copy.sleepFor(std::chrono::milliseconds(1)));
    EXPECT_FALSE(copy.stopRequested());
    source.requestStop();
    EXPECT_TRUE(copy.stopRequested());
    EXPECT_FALSE(copy.sleepFor(std::chrono::hours(1)));
    EXPECT_FALSE(StopToken().stopRequested());
}

[[noreturn]] void endBySignal(int number)
{
    StopSource source;
    stopOnSignals(source);
    std::raise(number);
    std::_Exit(source.token().sleepFor(std::chrono::seconds(10)) ? 1 : 128 + lastStopSignal());
}

[[noreturn]] void ignoreSignal()
{
    std::signal(SIGHUP, SIG_IGN);
    StopSource source;
    stopOnSignals(source);
    std::raise(SIGHUP);
    std::_Exit(source.token().sleepFor(std::chrono::milliseconds(50)) && lastStopSignal() == 0 ? 0 : 1);
}

TEST(StopOnSignals, turnsASignalIntoAStopRequest)
{
    EXPECT_EXIT(endBySignal(SIGINT), testing::ExitedWithCode(130), "");
    EXPECT_EXIT(endBySignal(SIGTERM), testing::ExitedWithCode(143), "");
    EXPECT_EXIT(ignoreSignal(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace velmora
