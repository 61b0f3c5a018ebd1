#pragma once

#include <filesystem>
#include <string>

/// Mounted volumes are named /Volumes/NAME everywhere. Where the system does not mount images, such a name stands for a
/// folder of the user's own; every file operation on a mount point goes through this mapping.
namespace velmora::Mounts
{

/// The folder that holds the mount folders and the sessions of attached images. Off macOS: "velmora" in the user's
/// runtime directory, or, where there is none, a folder of the user's own in the temporary directory; created with mode
/// 0700, and refused (std::runtime_error) when somebody else owns it or it is a link.
std::filesystem::path stateFolder();

/// The local path for `path`: off macOS "/Volumes/NAME/rest" becomes stateFolder()/"Volumes"/NAME/rest; every other
/// path, and all paths on macOS, are returned unchanged. NAME is one path component; ".." never leaves the folder.
std::filesystem::path localPath(const std::string& path);

} // namespace velmora::Mounts
