#include "platform/process_age.h"

#ifdef __APPLE__
#include <array>
#include <sys/sysctl.h>
#include <sys/time.h>
#include <unistd.h>
#else
#include "platform/process_status.h"

#include <ctime>
#include <unistd.h>
#endif

namespace velmora
{

#ifdef __APPLE__

std::optional<std::chrono::milliseconds> processAge()
{
    std::array<int, 4> query{CTL_KERN, KERN_PROC, KERN_PROC_PID, ::getpid()};
    kinfo_proc process{};
    std::size_t size = sizeof process;
    timeval now{};
    if (::sysctl(query.data(), query.size(), &process, &size, nullptr, 0) != 0 || ::gettimeofday(&now, nullptr) != 0)
        return std::nullopt;
    const timeval& began = process.kp_proc.p_starttime;
    return std::chrono::milliseconds((now.tv_sec - began.tv_sec) * 1000 + (now.tv_usec - began.tv_usec) / 1000);
}

#else

std::optional<std::chrono::milliseconds> processAge()
{
    const auto status = processStatus("self");
    timespec sinceBoot{};
    const long ticksPerSecond = ::sysconf(_SC_CLK_TCK);
    if (!status || ticksPerSecond <= 0 || ::clock_gettime(CLOCK_BOOTTIME, &sinceBoot) != 0)
        return std::nullopt;
    const long long now = static_cast<long long>(sinceBoot.tv_sec) * 1000 + sinceBoot.tv_nsec / 1'000'000;
    return std::chrono::milliseconds(now - status->startTime * 1000 / ticksPerSecond);
}

#endif

} // namespace velmora
