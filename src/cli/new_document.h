#pragma once

#include "model/project.h"

#include <filesystem>

namespace velmora::cli
{

/// Throws FileError when there is anything at the path: a document that somebody made is not replaced.
void requireNewDocument(const std::filesystem::path& path);

/// Writes the project as a document that did not exist. Throws FileError, leaving nothing behind, also when something
/// has appeared there meanwhile.
void writeNewDocument(const std::filesystem::path& path, const DMGProject& project);

} // namespace velmora::cli
