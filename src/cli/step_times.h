#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace velmora::cli
{

/// How long the steps of something took, one after the other.
class StepTimes
{
public:
    struct Step {
        std::string name{};
        double seconds = 0;
    };

    /// Ends the step at hand and begins another; no effect when it is this one.
    void begin(const std::string& name);
    /// Ends the step at hand.
    void end();

    /// The steps that have ended, in order.
    [[nodiscard]] const std::vector<Step>& steps() const { return m_steps; }
    /// Seconds since this object was made.
    [[nodiscard]] double total() const;

private:
    using Clock = std::chrono::steady_clock;
    Clock::time_point m_begin = Clock::now();
    Clock::time_point m_stepBegin = m_begin;
    std::string m_name{}; ///< of the step at hand; empty when there is none
    std::vector<Step> m_steps{};
};

} // namespace velmora::cli
