#pragma once

#include "model/project.h"

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace velmora::cli
{

/// FROM and TO, both absolute.
using PathMaps = std::vector<std::pair<std::string, std::string>>;

/// Re-roots an absolute path: the longest FROM that is the path or one of its parent folders is replaced by its TO.
/// Relative and empty paths stay as they are.
std::string mappedPath(const std::string& path, const PathMaps& maps);

/// Makes every path of the project one of this machine: relative ones are taken from `documentFolder` (absolute),
/// absolute ones go through the maps. Link targets stay as they are: they are meant for the Mac that opens the image.
void mapProjectPaths(DMGProject& project, const std::filesystem::path& documentFolder, const PathMaps& maps);

} // namespace velmora::cli
