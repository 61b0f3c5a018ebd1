#pragma once

#include <optional>
#include <string>

namespace velmora
{

/// What the system says of a process.
struct ProcessStatus {
    char state = 0;          ///< 'Z' for one that has ended and that nobody has asked about
    std::string parent{};    ///< number of the process that started it
    long long startTime = 0; ///< clock ticks after the machine's start
};

/// Reads /proc/PID/stat (proc(5)); `pid` is a number or "self". Nothing when there is no such process, or no /proc.
std::optional<ProcessStatus> processStatus(const std::string& pid);

} // namespace velmora
