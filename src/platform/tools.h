#pragma once

#include <functional>
#include <string>

namespace velmora
{

/// Answers where the program behind a system tool's absolute path really is.
using ToolFinder = std::function<std::string(const std::string& path)>;

/// The path itself on macOS. Elsewhere the stand-in of that name in the installation's libexec/velmora/ folder (found
/// relative to the running program); programs that exist on every system ("/bin/sync") and unknown paths stay as they
/// are.
std::string systemToolPath(const std::string& path);

} // namespace velmora
