#pragma once

#include <string>
#include <string_view>

namespace velmora::cli
{

inline constexpr const char* standardOutput = "/dev/stdout";

/// Writes what a program was asked to put into the file `path`: atomically, or plainly when it leads to a pipe or a
/// device. `standardOutput` is the program's own, wherever that is redirected to. Throws FileError.
void writeResult(const std::string& path, std::string_view bytes);

} // namespace velmora::cli
