#include "cli/progress_line.h"

#include "pipeline/text.h"
#include "platform/terminal.h"

#include <algorithm>
#include <cmath>

namespace velmora::cli
{

std::string progressText(BuildStep step, double fraction, long seconds, int columns)
{
    const int percent = static_cast<int>(std::lround(std::clamp(fraction, 0.0, 1.0) * 100));
    char numbers[32];
    std::snprintf(numbers, sizeof numbers, " %3d %%  %ld:%02ld", percent, seconds / 60, seconds % 60);
    std::string name(displayName(step));
    name.resize(std::max<std::size_t>(name.size(), 20), ' ');

    // All texts are ASCII, so bytes are columns here; the bar's blocks are counted before they become UTF-8.
    const int room = columns - static_cast<int>(name.size() + std::string_view(numbers).size()) - 2;
    const int width = std::clamp(room, 0, 40);
    const int done = width * percent / 100;
    std::string bar;
    for (int i = 0; i < width; ++i)
        bar += i < done ? "█" : "░";
    return name + " " + bar + numbers;
}

ProgressLine::ProgressLine(bool showLog, bool showProgress) : m_showLog(showLog), m_showProgress(showProgress)
{
    if (!m_showProgress)
        return;
    m_clock = std::thread([this] {
        std::unique_lock lock(m_mutex);
        while (!m_finished) {
            redraw();
            m_wake.wait_for(lock, std::chrono::seconds(1), [this] { return m_finished; });
        }
    });
}

ProgressLine::~ProgressLine()
{
    finish();
}

void ProgressLine::log(const std::string& line)
{
    if (!m_showLog)
        return;
    const std::lock_guard lock(m_mutex);
    erase();
    const std::string text = withoutControls(line, ' ', "\n\t"); // names from strangers are in it
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    redraw();
    std::fflush(stdout);
}

void ProgressLine::step(BuildStep step, double fraction)
{
    const std::lock_guard lock(m_mutex);
    m_step = step;
    m_fraction = fraction;
    redraw();
}

void ProgressLine::finish()
{
    {
        const std::lock_guard lock(m_mutex);
        if (!m_finished)
            erase();
        m_finished = true;
        std::fflush(stdout);
    }
    m_wake.notify_all();
    if (m_clock.joinable())
        m_clock.join();
}

void ProgressLine::redraw()
{
    if (!m_showProgress || m_finished)
        return;
    const auto passed = std::chrono::steady_clock::now() - m_begin;
    const long seconds = static_cast<long>(std::chrono::duration_cast<std::chrono::seconds>(passed).count());
    const std::string text = progressText(m_step, m_fraction, seconds, Terminal::columns());
    erase();
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

void ProgressLine::erase() const
{
    if (m_showProgress)
        std::fputs("\r\x1b[K", stdout);
}

} // namespace velmora::cli
