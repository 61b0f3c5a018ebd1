#pragma once

#include "model/project.h"
#include "pipeline/build_run.h"

#include <filesystem>

namespace velmora
{

/// Signs the finished image, submits it to the notary service and staples the ticket, as far as the project's signing
/// mode says. Throws BuildError; the image stays in the state that was reached.
void signAndNotarize(BuildRun& run, const DMGProject& project, const std::filesystem::path& output);

} // namespace velmora
