#include "platform/signals.h"

#include "platform/file_descriptor.h"

#include <array>
#include <atomic>
#include <csignal>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace velmora
{
namespace
{

constexpr std::array<int, 3> stopSignals{SIGINT, SIGTERM, SIGHUP};

std::atomic<int> lastSignal = 0;
std::atomic<int> wakeEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler may use lock-free values only");

/// A handler may not take the lock that a stop request needs, so it wakes a thread which does.
void onSignal(int number)
{
    const int savedError = errno;
    lastSignal = number;
    const char byte = 0;
    static_cast<void>(::write(wakeEnd, &byte, 1) == 1);
    errno = savedError;
}

/// Requests the stop each time a signal has come; runs until the program ends.
void waitForSignals(int readEnd, StopSource source)
{
    char byte = 0;
    while (retryInterrupted([&] { return ::read(readEnd, &byte, 1); }) == 1)
        source.requestStop();
}

} // namespace

void stopOnSignals(const StopSource& source)
{
    std::array<int, 2> ends{};
    if (::pipe(ends.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    for (const int end : ends)
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
    // A full pipe says all there is to say; the handler must not wait in it.
    ::fcntl(ends[1], F_SETFL, O_NONBLOCK);
    wakeEnd = ends[1];

    // Signals are for the other threads.
    sigset_t all{};
    sigset_t previous{};
    ::sigfillset(&all);
    ::pthread_sigmask(SIG_SETMASK, &all, &previous);
    std::thread(waitForSignals, ends[0], source).detach();
    ::pthread_sigmask(SIG_SETMASK, &previous, nullptr);

    for (const int number : stopSignals) {
        struct sigaction action {
        };
        ::sigaction(number, nullptr, &action);
        if (action.sa_handler == SIG_IGN)
            continue;
        action = {};
        action.sa_handler = onSignal;
        action.sa_flags = SA_RESTART;
        ::sigfillset(&action.sa_mask);
        ::sigaction(number, &action, nullptr);
    }
}

int lastStopSignal()
{
    return lastSignal;
}

} // namespace velmora
