#pragma once

#include <filesystem>

namespace velmora
{

/// Has the file manager show and select a file; where there is no such call, the file's folder opens. One source of
/// several is compiled: what a system offers here is a matter of libraries.
void showInFileManager(const std::filesystem::path& file);

} // namespace velmora
