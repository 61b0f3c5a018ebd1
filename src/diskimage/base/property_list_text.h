#pragma once

#include <string>
#include <string_view>

namespace velmora::diskimage
{

/// A property list's text as UTF-16. Throws DiskImageError unless it is valid UTF-8 (overlong forms and surrogates are
/// not).
std::u16string plistUtf16FromUtf8(std::string_view utf8);

} // namespace velmora::diskimage
