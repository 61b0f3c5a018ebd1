#pragma once

#include "diskimage/base/storage.h"

#include <filesystem>
#include <memory>

namespace velmora::tools
{

/// An existing file of this machine as storage that knows its holes and lets the system copy from other such files.
/// Opened `create`, it is emptied first. Throws DiskImageError, naming the path and the reason.
std::unique_ptr<diskimage::Storage> openLocalFile(const std::filesystem::path& path, diskimage::OpenMode mode);

} // namespace velmora::tools
