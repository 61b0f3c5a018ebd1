#pragma once

#include "model/project.h"
#include "pipeline/problem.h"

#include <filesystem>
#include <optional>

namespace velmora
{

/// Everything because of which a build would refuse the project before it creates anything, all of it errors, in the
/// order in which the build speaks of it. `output` is the absolute path of the image, when it is known,
/// `temporaryFolder` where it will be put together.
Problems buildObstacles(const DMGProject& project, const std::optional<std::filesystem::path>& output,
                        const std::filesystem::path& temporaryFolder);

/// Those of them that are about numbers of the window, the background and the overlays: without any the window can be
/// drawn.
Problems numberObstacles(const DMGProject& project);

/// Throws BuildError with the first obstacle's field and message, if there is one.
void validate(const DMGProject& project, const std::filesystem::path& output,
              const std::filesystem::path& temporaryFolder);

} // namespace velmora
