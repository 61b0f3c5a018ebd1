#pragma once

#include <compare>
#include <string_view>

namespace velmora
{

/// How two version texts are ordered: runs of the digits 0 to 9, of any length, by their value, everything else by
/// UTF-16 code unit; when one text ends, it comes first. "1.0.100" comes after "1.0.27", "1.0.27.1" after "1.0.27", and
/// "1.01" is equivalent to "1.1".
std::weak_ordering compareVersions(std::u16string_view one, std::u16string_view other);

} // namespace velmora
