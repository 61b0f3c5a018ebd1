#pragma once

#include "model/project.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

/// The command lines of /usr/bin/hdiutil, as the build and the check before it give them.
namespace velmora
{

/// Makes the writable image of `sizeMB` megabytes from the folder `stage`.
std::vector<std::string> createArguments(const DMGProject& project, const std::filesystem::path& stage,
                                         std::int64_t sizeMB, const std::filesystem::path& image);

/// Makes the finished image in the project's format and encryption. An encrypted one takes its password from standard
/// input.
std::vector<std::string> convertArguments(const DMGProject& project, const std::filesystem::path& image,
                                          const std::filesystem::path& output);

/// Marks the finished image as internet-enabled.
std::vector<std::string> internetEnableArguments(const std::filesystem::path& output);

} // namespace velmora
