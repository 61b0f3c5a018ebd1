#pragma once

#include "model/project.h"
#include "pipeline/build_environment.h"
#include "pipeline/problem.h"

#include <filesystem>
#include <optional>

namespace velmora
{

/// All that can be said about a project without running a tool, each once: what a build would refuse first, then names,
/// files, look, and what the last steps need. Reads pictures and walks through the files; changes nothing. `output` is
/// the absolute path of the image, when it is known. Throws BuildError when a stop is requested.
Problems checkProject(const DMGProject& project, const std::optional<std::filesystem::path>& output,
                      const BuildEnvironment& environment);

} // namespace velmora
