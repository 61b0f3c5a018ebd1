#pragma once

#include "model/project.h"

#include <filesystem>
#include <string>
#include <vector>

namespace velmora::cli
{

/// Reads a finished image back and compares it with what the project asked for: checksums, the volume's name and
/// structures, every visible entry and its position, the background picture, the volume icon. Returns one sentence for
/// each difference, none when all is there. What cannot be read is a sentence too; never throws.
std::vector<std::string> checkBuiltImage(const std::filesystem::path& image, const DMGProject& project);

} // namespace velmora::cli
