#include "app/build/build_progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace velmora
{
namespace
{

/// About how long a step takes beside the others.
double weight(BuildStep step)
{
    switch (step) {
    case BuildStep::create:
        return 3;
    case BuildStep::convert:
        return 4;
    case BuildStep::notarize:
        return 6;
    default:
        return 1;
    }
}

/// How much of its part a running step fills: two thirds after its usual time, and never all of it.
double crept(BuildStep step, BuildProgress::Seconds spent)
{
    const double usualSeconds = 2 * weight(step);
    return 0.95 * (1 - std::exp(-std::max(spent.count(), 0.0) / usualSeconds));
}

} // namespace

BuildProgress::BuildProgress(const std::vector<BuildStep>& steps, Time now) : m_began(now), m_ended(now)
{
    for (const BuildStep step : steps)
        m_entries.push_back({.step = step});
}

bool BuildProgress::reach(BuildStep step, Time now)
{
    const auto reached =
        std::find_if(m_entries.begin(), m_entries.end(), [&](const Entry& entry) { return entry.step == step; });
    if (m_over || reached == m_entries.end() || reached->state != State::waiting)
        return false;
    for (auto entry = m_entries.begin(); entry != reached; ++entry) {
        if (entry->state == State::waiting)
            entry->began = now;
        if (entry->state != State::done)
            entry->ended = now;
        entry->state = State::done;
    }
    reached->state = State::running;
    reached->began = now;
    return true;
}

void BuildProgress::finish(bool success, Time now)
{
    if (m_over)
        return;
    m_over = true;
    m_ended = now;
    for (Entry& entry : m_entries) {
        const bool running = entry.state == State::running;
        if (entry.state == State::waiting && success)
            entry.began = now;
        if (running || (success && entry.state == State::waiting)) {
            entry.ended = now;
            entry.state = success ? State::done : State::failed;
        }
    }
}

std::vector<BuildProgress::Row> BuildProgress::rows(Time now) const
{
    std::vector<Row> rows;
    for (const Entry& entry : m_entries) {
        Seconds spent{};
        if (entry.state == State::running)
            spent = until(now) - entry.began;
        else if (entry.state != State::waiting)
            spent = entry.ended - entry.began;
        rows.push_back({entry.step, entry.state, spent});
    }
    return rows;
}

double BuildProgress::filled(Time now) const
{
    double all = 0;
    double filled = 0;
    for (const Row& row : rows(now)) {
        all += weight(row.step);
        if (row.state == State::done)
            filled += weight(row.step);
        else if (row.state != State::waiting)
            filled += weight(row.step) * crept(row.step, row.spent);
    }
    return all > 0 ? filled / all : 0;
}

BuildProgress::Seconds BuildProgress::elapsed(Time now) const
{
    return until(now) - m_began;
}

const BuildStep* BuildProgress::current() const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [](const Entry& entry) {
        return entry.state == State::running || entry.state == State::failed;
    });
    return found == m_entries.end() ? nullptr : &found->step;
}

std::string clockText(BuildProgress::Seconds seconds)
{
    const auto whole = static_cast<long>(std::max(seconds.count(), 0.0));
    char text[48];
    if (whole < 3600)
        std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    else
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60, whole % 60);
    return text;
}

} // namespace velmora
