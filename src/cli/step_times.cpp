#include "cli/step_times.h"

namespace velmora::cli
{
namespace
{

double secondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

void StepTimes::begin(const std::string& name)
{
    if (name == m_name)
        return;
    end();
    m_name = name;
    m_stepBegin = Clock::now();
}

void StepTimes::end()
{
    if (!m_name.empty())
        m_steps.push_back({m_name, secondsSince(m_stepBegin)});
    m_name.clear();
}

double StepTimes::total() const
{
    return secondsSince(m_begin);
}

} // namespace velmora::cli
