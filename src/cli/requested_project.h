#pragma once

#include "cli/build_options.h"
#include "model/project.h"

#include <string>
#include <vector>

namespace velmora::cli
{

/// The project that the command line speaks of.
struct RequestedProject {
    DMGProject project{};
    std::vector<std::string> warnings{}; ///< what an application names and lacks, in sentences
};

/// Reads the document, or makes the project for the application, and applies what the options say: maps, the volume's
/// name, the password from standard input. Throws DocumentError, FileError, BuildError; UsageError when an option does
/// not go with what is given.
RequestedProject loadRequestedProject(const BuildOptions& options, const ArrowFileFinder& arrowFile);

} // namespace velmora::cli
