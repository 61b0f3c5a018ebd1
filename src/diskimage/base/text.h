#pragma once

#include <string>
#include <string_view>

namespace velmora::diskimage
{

/// UTF-16 as UTF-8; an unpaired surrogate becomes U+FFFD.
std::string utf8FromUtf16(std::u16string_view utf16);

} // namespace velmora::diskimage
