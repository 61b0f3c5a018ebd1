#pragma once

#include "model/project.h"

#include <filesystem>
#include <functional>
#include <string>

namespace velmora
{

/// Replaces every path of a file that the project reads (entries, pictures, volume icon; empty ones excepted) by what
/// `change` makes of it. Link targets are no such paths: they are meant for the Mac that opens the image.
void changeSourcePaths(DMGProject& project, const std::function<std::string(const std::string&)>& change);

/// `path` if it is absolute, else taken from `folder`, so that a document can lie beside what it is made from.
std::string pathFrom(const std::filesystem::path& folder, const std::string& path);

} // namespace velmora
