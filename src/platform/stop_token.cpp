#include "platform/stop_token.h"

#include <thread>

namespace velmora
{

bool StopToken::stopRequested() const
{
    return m_state && m_state->stopped;
}

bool StopToken::sleepFor(std::chrono::milliseconds duration) const
{
    if (!m_state) {
        std::this_thread::sleep_for(duration);
        return true;
    }
    std::unique_lock lock(m_state->mutex);
    return !m_state->wake.wait_for(lock, duration, [this] { return m_state->stopped.load(); });
}

StopSource::StopSource()
{
    m_token.m_state = std::make_shared<StopToken::State>();
}

void StopSource::requestStop()
{
    {
        const std::lock_guard lock(m_token.m_state->mutex);
        m_token.m_state->stopped = true;
    }
    m_token.m_state->wake.notify_all();
}

} // namespace velmora
