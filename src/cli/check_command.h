#pragma once

#include "cli/build_options.h"
#include "platform/stop_token.h"

namespace velmora::cli
{

/// Checks a project without building it and prints every problem, a line each, to standard error. Returns the exit
/// status: 1 when there is an error, or with --strict any problem, else 0. Throws UsageError as
/// loadRequestedProject does, BuildError on a stop, and FileError when there is no place to work.
int runCheck(const BuildOptions& options, const StopToken& stop);

} // namespace velmora::cli
