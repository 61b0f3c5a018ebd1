#pragma once

#include "model/project.h"
#include "pipeline/build_run.h"

#include <optional>
#include <string>

namespace velmora
{

/// Has the Finder lay out the window of the volume mounted at `mountPoint`. A Finder that refuses is a warning; the
/// build goes on. `backgroundName`: the picture's file name inside ".background", if there is one.
void applyFinderLayout(BuildRun& run, const DMGProject& project, const std::string& mountPoint,
                       const std::optional<std::string>& backgroundName);

} // namespace velmora
