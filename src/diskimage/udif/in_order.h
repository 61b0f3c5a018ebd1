#pragma once

#include <condition_variable>
#include <cstddef>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace velmora::diskimage::udif
{

/// Makes results on several threads and hands them out in order on one.
template <typename Result>
class InOrder
{
public:
    using Producer = std::function<Result(std::size_t index)>;
    using Consumer = std::function<void(std::size_t index, Result result)>;

    /// Calls `consume` for 0 … count-1, in this order, on the calling thread, with what the producers make on threads
    /// of their own, one each. At most `window` results are being made or waiting at a time. An exception of a producer
    /// appears here when its turn comes; that, and one of `consume`, ends everything. All threads have ended on return.
    static void run(std::size_t count, std::vector<Producer> producers, std::size_t window, const Consumer& consume)
    {
        InOrder(count, std::move(producers), window).consumeAll(consume);
    }

private:
    struct Slot {
        std::optional<Result> result{};
        std::exception_ptr error{};
        [[nodiscard]] bool isReady() const { return result || error; }
    };

    InOrder(std::size_t count, std::vector<Producer> producers, std::size_t window)
        : m_count(count), m_producers(std::move(producers)), m_slots(window)
    {
        try {
            for (const Producer& producer : m_producers)
                m_threads.emplace_back([this, &producer] { produce(producer); });
        } catch (const std::system_error&) { // the system grants no more threads: fewer do as well
            if (m_threads.empty())
                throw;
        }
    }

    ~InOrder()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_ended = true;
        }
        m_changed.notify_all();
        for (std::thread& thread : m_threads)
            thread.join();
    }

    void produce(const Producer& producer)
    {
        for (;;) {
            std::size_t index = 0;
            {
                std::unique_lock lock(m_mutex);
                m_changed.wait(lock,
                               [&] { return m_ended || m_next == m_count || m_next - m_consumed < m_slots.size(); });
                if (m_ended || m_next == m_count)
                    return;
                index = m_next++;
            }
            Slot slot;
            try {
                slot.result = producer(index);
            } catch (...) {
                slot.error = std::current_exception();
            }
            {
                const std::lock_guard lock(m_mutex);
                m_slots[index % m_slots.size()] = std::move(slot);
            }
            m_changed.notify_all();
        }
    }

    void consumeAll(const Consumer& consume)
    {
        for (std::size_t index = 0; index < m_count; ++index) {
            Slot slot;
            {
                std::unique_lock lock(m_mutex);
                Slot& waiting = m_slots[index % m_slots.size()];
                m_changed.wait(lock, [&] { return waiting.isReady(); });
                std::swap(slot, waiting);
                ++m_consumed;
            }
            m_changed.notify_all();
            if (slot.error)
                std::rethrow_exception(slot.error);
            consume(index, std::move(*slot.result));
        }
    }

    const std::size_t m_count;
    const std::vector<Producer> m_producers;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<Slot> m_slots; ///< result i waits in slot i modulo their number
    std::size_t m_next = 0;    ///< to be made
    std::size_t m_consumed = 0;
    bool m_ended = false;
    std::vector<std::thread> m_threads;
};

} // namespace velmora::diskimage::udif
