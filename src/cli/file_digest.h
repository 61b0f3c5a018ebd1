#pragma once

#include <filesystem>
#include <string>

namespace velmora::cli
{

/// The SHA-256 of a file's content in lower-case hexadecimal digits. Throws FileError.
std::string sha256(const std::filesystem::path& file);

} // namespace velmora::cli
