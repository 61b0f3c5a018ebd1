#pragma once

#include "model/project.h"
#include "pipeline/build_environment.h"
#include "pipeline/problem.h"

namespace velmora
{

/// What this machine would refuse: the items' names are tried in its file system; the image tool is asked for an empty
/// image as the project wants its own (file system, format, encryption, internet-enable), the signing tools whether
/// they work here at all; a size that the project gives is compared with what its content needs. The project's password
/// and identity are not used. Works in a scratch folder below the environment's temporary one. Throws BuildError when a
/// stop is requested, FileError when there is no place to work.
Problems checkTools(const DMGProject& project, const BuildEnvironment& environment);

} // namespace velmora
