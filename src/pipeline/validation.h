#pragma once

#include "model/project.h"

#include <filesystem>

namespace velmora
{

/// Refuses a project that cannot be built, before anything is created. `output` is the absolute path of the image,
/// `temporaryFolder` where it will be put together. Throws BuildError that names what is wrong and where.
void validate(const DMGProject& project, const std::filesystem::path& output,
              const std::filesystem::path& temporaryFolder);

} // namespace velmora
