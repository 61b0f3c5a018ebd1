#pragma once

#include "pipeline/build_run.h"

#include <optional>
#include <string>
#include <string_view>

namespace velmora
{

/// Where a volume keeps its icon, in its top folder.
inline constexpr std::string_view volumeIconFile = ".VolumeIcon.icns";

/// Why the picture cannot become a volume's icon, a sentence for a person; nothing when it can.
std::optional<std::string> volumeIconFault(const std::string& picturePath);

/// Gives the volume mounted at `mountPoint` the picture at `picturePath` as its icon: an icon file is copied, any other
/// picture converted. Failures are warnings. Throws BuildError only when a stop is requested.
void setVolumeIcon(BuildRun& run, const std::string& picturePath, const std::string& mountPoint);

} // namespace velmora
