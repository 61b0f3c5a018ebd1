#pragma once

#include "pipeline/dmg_builder.h"

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <string>
#include <thread>

namespace velmora::cli
{

/// One line of progress, at most `columns` wide: step, bar, percentage, time. `seconds` have passed.
std::string progressText(BuildStep step, double fraction, long seconds, int columns);

/// Prints the build log to standard output and, on a terminal, keeps a progress line below it. The time goes on while a
/// step takes long. Safe to call from any thread.
class ProgressLine
{
public:
    /// `showLog` prints the log's lines, `showProgress` keeps the progress line.
    ProgressLine(bool showLog, bool showProgress);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void log(const std::string& line);
    void step(BuildStep step, double fraction);
    /// Removes the progress line for good.
    void finish();

private:
    void redraw();
    void erase() const;

    bool m_showLog;
    bool m_showProgress;
    std::chrono::steady_clock::time_point m_begin = std::chrono::steady_clock::now();
    BuildStep m_step = BuildStep::staging;
    double m_fraction = 0;
    bool m_finished = false;
    std::mutex m_mutex{};
    std::condition_variable m_wake{};
    std::thread m_clock{};
};

} // namespace velmora::cli
