#pragma once

#include "model/project.h"
#include "pipeline/build_environment.h"
#include "pipeline/problem.h"

namespace velmora
{

/// What of the volume's look would be missing or differ from the design: pictures that cannot be read or drawn, fonts
/// for which another stands in, the volume icon, items that the window does not show. Decodes every picture and draws
/// the background once, as far as its numbers can be used.
Problems checkAppearance(const DMGProject& project, const BuildEnvironment& environment);

} // namespace velmora
