#pragma once

#include <string>
#include <string_view>

namespace velmora
{

/// `name` (UTF-8) without what file systems or people trip over: separators become "-"; control characters, dots and
/// blanks in front and blanks at the end are left out; no longer than a file with an extension or a volume may be
/// named. Empty when nothing is left.
std::string cleanName(std::string_view name);

} // namespace velmora
