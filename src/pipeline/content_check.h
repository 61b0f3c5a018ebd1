#pragma once

#include "model/project.h"
#include "pipeline/problem.h"
#include "platform/stop_token.h"

namespace velmora
{

/// What in the files and folders of the project cannot be copied into an image: what may not be read, what is neither
/// file nor folder nor link, names that no volume holds, two names of one folder that a volume takes for the same.
/// Reads no content. Throws BuildError when a stop is requested.
Problems checkContent(const DMGProject& project, const StopToken& stop);

} // namespace velmora
