#pragma once

#include <filesystem>
#include <optional>
#include <string>

/// Standard folders of the user and of the installation.
namespace velmora::Folders
{

/// The per-user temporary folder (TMPDIR is honoured even when it does not exist yet: it is created).
std::filesystem::path temporary();
/// The user's home folder.
std::filesystem::path home();
/// The user's Application Support folder (Linux: the generic data folder, ~/.local/share or XDG_DATA_HOME).
std::filesystem::path applicationSupport();
/// The installation's resource folder, found relative to the running program (share/velmora beside bin/), or nothing.
std::optional<std::filesystem::path> resources();

} // namespace velmora::Folders
