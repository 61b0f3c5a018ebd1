#include "app/build/build_progress.h"

#include <gmock/gmock.h>

namespace velmora
{
namespace
{

using namespace std::chrono_literals;
using ::testing::ElementsAre;

/// A build of four steps that together weigh 9: 1, 1, 3 and 4.
struct FourSteps {
    BuildProgress::Time start{};
    BuildProgress progress{{BuildStep::check, BuildStep::staging, BuildStep::create, BuildStep::convert}, start};

    std::vector<BuildProgress::State> states() const
    {
        std::vector<BuildProgress::State> states;
        for (const auto& row : progress.rows(start + 100s))
            states.push_back(row.state);
        return states;
    }
};

TEST(BuildProgress, marksWhatIsDoneAndTimesEachStep)
{
    FourSteps build;
    build.progress.reach(BuildStep::check, build.start);
    build.progress.reach(BuildStep::staging, build.start + 1s);
    build.progress.reach(BuildStep::staging, build.start + 3s); // it only advances
    build.progress.reach(BuildStep::create, build.start + 6s);
    build.progress.reach(BuildStep::sign, build.start + 7s); // not announced
    const auto rows = build.progress.rows(build.start + 10s);
    EXPECT_THAT(rows, ElementsAre(BuildProgress::Row{BuildStep::check, BuildProgress::State::done, 1s},
                                  BuildProgress::Row{BuildStep::staging, BuildProgress::State::done, 5s},
                                  BuildProgress::Row{BuildStep::create, BuildProgress::State::running, 4s},
                                  BuildProgress::Row{BuildStep::convert, BuildProgress::State::waiting, 0s}));
    EXPECT_EQ(build.progress.elapsed(build.start + 10s), 10s);
    ASSERT_TRUE(build.progress.current());
    EXPECT_EQ(*build.progress.current(), BuildStep::create);
}

TEST(BuildProgress, fillsTheBarByWeightAndCreepsWithinTheRunningStep)
{
    FourSteps build;
    EXPECT_EQ(build.progress.filled(build.start), 0);
    build.progress.reach(BuildStep::convert, build.start + 1s);
    EXPECT_DOUBLE_EQ(build.progress.filled(build.start + 1s), 5.0 / 9);
    double last = 5.0 / 9;
    for (const auto later : {2s, 5s, 60s, 86'400s}) {
        const double filled = build.progress.filled(build.start + later);
        EXPECT_GE(filled, last);
        EXPECT_LT(filled, 1);
        last = filled;
    }
    build.progress.finish(true, build.start + 90s);
    EXPECT_EQ(build.progress.filled(build.start + 90s), 1);
}

TEST(BuildProgress, stopsWhereTheBuildFailed)
{
    FourSteps build;
    build.progress.reach(BuildStep::staging, build.start);
    build.progress.finish(false, build.start + 2s);
    build.progress.reach(BuildStep::create, build.start + 3s); // told too late
    build.progress.finish(true, build.start + 4s);
    EXPECT_THAT(build.states(), ElementsAre(BuildProgress::State::done, BuildProgress::State::failed,
                                            BuildProgress::State::waiting, BuildProgress::State::waiting));
    EXPECT_EQ(build.progress.elapsed(build.start + 100s), 2s);
    EXPECT_EQ(*build.progress.current(), BuildStep::staging);
    // A build that never began still ends.
    FourSteps stillborn;
    stillborn.progress.finish(false, stillborn.start);
    EXPECT_EQ(stillborn.progress.current(), nullptr);
    EXPECT_EQ(stillborn.progress.filled(stillborn.start), 0);
    EXPECT_EQ(BuildProgress().filled({}), 0);
}

TEST(BuildProgress, writesTimesAsClocksDo)
{
    EXPECT_EQ(clockText(-1s), "0:00");
    EXPECT_EQ(clockText(7.9s), "0:07");
    EXPECT_EQ(clockText(3599s), "59:59");
    EXPECT_EQ(clockText(3723s), "1:02:03");
}

} // namespace
} // namespace velmora
