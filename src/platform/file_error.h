#pragma once

#include "platform/file_tree.h"

#include <cerrno>
#include <string>

namespace velmora
{

/// Throws the FileError `Could not ACTION "PATH": REASON.`; `action` is a verb ("read").
[[noreturn]] void throwFileError(const char* action, const std::string& path, const std::string& reason);
/// The same with the system's text for an error number as the reason.
[[noreturn]] void throwFileError(const char* action, const std::string& path, int error);

/// Refuses a path that the system would cut at a NUL byte, and so take for another. Throws FileError.
void requireUsable(const char* action, const std::string& path);

} // namespace velmora
