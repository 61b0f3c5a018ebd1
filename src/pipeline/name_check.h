#pragma once

#include "model/project.h"
#include "pipeline/problem.h"

namespace velmora
{

/// The visible items of which the volume can hold only one, because it takes their names for the same ("Read Me" and
/// "read me"), and those that have the name of something that the build itself puts there.
Problems checkNames(const DMGProject& project);

} // namespace velmora
