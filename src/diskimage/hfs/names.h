#pragma once

#include <string>
#include <string_view>

/// HFS+ names: UTF-16 in the canonical decomposition of Unicode 3.2, compared by a fixed folding table (Apple TN1150).
namespace velmora::diskimage::hfs
{

/// Longest name in UTF-16 units, after decomposition.
inline constexpr std::size_t maximumNameLength = 255;

/// The stored form of a POSIX name: decomposed, ":" as "/", U+2400 as U+0000. Throws DiskImageError, quoting the name,
/// when it is empty, ".", "..", too long, holds "/" or is not valid UTF-8.
std::u16string storedName(std::string_view posixName);

/// The POSIX name (UTF-8, units kept as stored, "/" as ":") of a stored name; an unpaired surrogate becomes U+FFFD.
std::string posixName(std::u16string_view stored);

/// Valid UTF-8 as UTF-16, nothing else changed. Throws DiskImageError.
std::u16string utf16FromUtf8(std::string_view utf8);

enum class NameOrder { caseFolding, binary };

/// Negative, zero or positive as `a` sorts before, is the same name as, or sorts after `b`.
int compareNames(std::u16string_view a, std::u16string_view b, NameOrder order = NameOrder::caseFolding);

} // namespace velmora::diskimage::hfs
