#pragma once

#include "tools/pictures/decoded_png.h"

#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace velmora::tools
{

/// Why the second picture is not the first at twice the resolution: other pixels than 1:2, another size in points.
/// Empty when it is.
std::vector<std::string> checkResolutions(const DecodedPng& first, const DecodedPng& second);

/// Writes the pictures as the directories of one TIFF file: LZW, RGB, with associated alpha unless all pixels are
/// opaque, each with its resolution. The file exists and is overwritten. Throws std::runtime_error.
void writeTiff(const std::filesystem::path& path, std::span<const DecodedPng> pictures);

} // namespace velmora::tools
