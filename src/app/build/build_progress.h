#pragma once

#include "pipeline/build_step.h"

#include <chrono>
#include <string>
#include <vector>

namespace velmora
{

/// A build as its sheet shows it: its steps, their times, how far it is. A plain value, told what happens and when.
class BuildProgress
{
public:
    using Time = std::chrono::steady_clock::time_point;
    using Seconds = std::chrono::duration<double>;
    enum class State { waiting, running, done, failed };

    struct Row {
        BuildStep step{};
        State state = State::waiting;
        Seconds spent{}; ///< 0 while it waits
        bool operator==(const Row&) const = default;
    };

    /// A build of steps that are still to be told.
    BuildProgress() = default;
    /// A build through `steps` that begins now.
    BuildProgress(const std::vector<BuildStep>& steps, Time now);

    /// The build has come to `step`; those before it are done. False when that changes nothing: a step that was reached
    /// before or was not announced.
    bool reach(BuildStep step, Time now);
    /// The build has ended; what comes later changes nothing.
    void finish(bool success, Time now);

    [[nodiscard]] bool isOver() const { return m_over; }
    [[nodiscard]] std::vector<Row> rows(Time now) const;
    /// The part of the bar that is filled (0 to 1): the weights of the finished steps, and within the running one ever
    /// slower towards its end, which it does not reach.
    [[nodiscard]] double filled(Time now) const;
    [[nodiscard]] Seconds elapsed(Time now) const;
    /// The step that runs, or at which the build stopped; null when there is none.
    [[nodiscard]] const BuildStep* current() const;

private:
    struct Entry {
        BuildStep step{};
        State state = State::waiting;
        Time began{};
        Time ended{};
    };

    [[nodiscard]] Time until(Time now) const { return m_over ? m_ended : now; }

    std::vector<Entry> m_entries{};
    Time m_began{};
    Time m_ended{};
    bool m_over = false;
};

/// "0:07", "12:30", "1:02:03".
std::string clockText(BuildProgress::Seconds seconds);

} // namespace velmora
