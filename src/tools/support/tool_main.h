#pragma once

#include "platform/stop_token.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::tools
{

/// What a tool does with the arguments after its name; returns the exit status. Signals that ask the program to end
/// only request a stop, so that no half-written file stays behind: a body that can take long looks at the token.
using ToolBody = std::function<int(const std::vector<std::string>& arguments, const StopToken& stop)>;

/// Runs the body of a command-line tool. A UsageError ends with status 2 and the usage on standard error, any other
/// exception with status 1 and "NAME: reason", or with 128 + the number of the signal that caused it. "--help" as the
/// only argument shows the usage.
int runTool(int argc, char** argv, std::string_view name, std::string_view usage, const ToolBody& body);

} // namespace velmora::tools
