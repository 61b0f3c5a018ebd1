#pragma once

#include "cli/build_options.h"
#include "platform/stop_token.h"

namespace velmora::cli
{

/// Does what the options say: builds (printing the log and the progress, then warnings and errors), checks, writes a
/// new document. Returns the exit status: 0, 1 when it failed, 2 when the options do not go with what is there, 128 + n
/// when signal n ended it.
int runBuild(const BuildOptions& options, const StopToken& stop);

} // namespace velmora::cli
