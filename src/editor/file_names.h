#pragma once

#include <string>
#include <string_view>

namespace velmora
{

/// A file name to propose for something called `name` (UTF-8): without what file systems or people trip over
/// (separators, control characters, dots and blanks in front, blanks at the end), not too long, followed by "." and
/// `extension`. "Untitled" when nothing is left of the name.
std::string proposedFileName(std::string_view name, std::string_view extension);

} // namespace velmora
