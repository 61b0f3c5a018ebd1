#pragma once

#include "cli/build_options.h"
#include "platform/stop_token.h"

namespace velmora::cli
{

/// Builds as the options say: prints the log and the progress, then warnings and errors. Returns the exit status, 0 or
/// 1. A stop request ends the build and counts as a failure.
int runBuild(const BuildOptions& options, const StopToken& stop);

} // namespace velmora::cli
