#pragma once

#include <cstddef>
#include <string_view>

namespace velmora
{

/// The length in bytes of the well-formed UTF-8 sequence at `at` (1 to 4), or 0 when there is none: cut short,
/// over-long, a surrogate, beyond U+10FFFF.
std::size_t utf8SequenceLength(std::string_view text, std::size_t at);

} // namespace velmora
