#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace velmora
{

/// A request to stop that several threads may see. Copies share one state; a default-made token can never be stopped.
class StopToken
{
public:
    StopToken() = default;

    [[nodiscard]] bool stopRequested() const;
    /// Waits for `duration`, or less when a stop is requested; returns whether the whole time has passed.
    bool sleepFor(std::chrono::milliseconds duration) const;

private:
    friend class StopSource;
    struct State {
        std::atomic<bool> stopped = false;
        std::mutex mutex{};
        std::condition_variable wake{};
    };
    std::shared_ptr<State> m_state{};
};

/// The end of a StopToken that makes the request.
class StopSource
{
public:
    StopSource();
    [[nodiscard]] StopToken token() const { return m_token; }
    void requestStop();

private:
    StopToken m_token{};
};

} // namespace velmora
