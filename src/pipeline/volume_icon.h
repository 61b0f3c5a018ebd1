#pragma once

#include "pipeline/build_run.h"

#include <string>

namespace velmora
{

/// Gives the volume mounted at `mountPoint` the picture at `picturePath` as its icon: an icon file is copied, any other
/// picture converted. Failures are warnings. Throws BuildError only when a stop is requested.
void setVolumeIcon(BuildRun& run, const std::string& picturePath, const std::string& mountPoint);

} // namespace velmora
