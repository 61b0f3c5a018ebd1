#pragma once

#include "model/project.h"
#include "pipeline/build_run.h"

#include <filesystem>

namespace velmora
{

/// Compares what the build of `output` will need with what the scratch folder and the output's folder have, before
/// anything is written. Too little room for what is certain to be written is a BuildError that names the folder and the
/// need; a compressed image, whose size nobody can know, is a warning.
void checkSpace(BuildRun& run, const DMGProject& project, const std::filesystem::path& output);

} // namespace velmora
