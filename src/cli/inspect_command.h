#pragma once

#include "cli/inspect_options.h"

namespace velmora::cli
{

/// Carries the request out: the answer on standard output, errors on standard error. Returns the exit status, 0 or 1.
int runInspect(const InspectOptions& options);

} // namespace velmora::cli
