#pragma once

#include "model/project.h"

#include <optional>
#include <string>

namespace velmora
{

/// The AppleScript that has the Finder open a volume's window, lay it out as the project says and store that in the
/// volume. `diskName` is the mounted volume's name, `backgroundName` the picture's file name inside ".background".
/// Numbers are truncated toward zero. Throws BuildError naming the field whose value does not fit.
std::string layoutScript(const DMGProject& project, const std::string& diskName,
                         const std::optional<std::string>& backgroundName);

} // namespace velmora
