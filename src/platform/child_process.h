#pragma once

#include "platform/stop_token.h"

#include <optional>
#include <string>
#include <vector>

namespace velmora
{

/// A program to run and wait for.
struct ChildRequest {
    std::string program{};                ///< absolute path
    std::vector<std::string> arguments{}; ///< without the program's own name
    std::optional<std::string> input{};   ///< bytes for standard input, which is then closed; absent: inherited
    StopToken stop{};                     ///< ends the child: SIGTERM to its process group, then SIGKILL
};

/// How it went.
struct ChildResult {
    bool started = false;
    std::string launchError{}; ///< the system's reason when it did not start
    int exitCode = -1;         ///< exit status, or the number of the signal that ended it
    std::string output{};      ///< all bytes of standard output
    std::string error{};       ///< all bytes of standard error
};

/// Starts the program in a process group of its own, with no descriptor beyond 0–2, drains both outputs at once, feeds
/// the input, and waits. A child that closes its input early is no error. Never throws for anything the child does.
ChildResult runChild(const ChildRequest& request);

} // namespace velmora
