#pragma once

#include <cstdint>
#include <optional>

namespace velmora::tools
{

/// The moment (Unix seconds) that SOURCE_DATE_EPOCH sets for reproducible output, or nothing when it is not set. Throws
/// std::runtime_error when it is set to anything but a number.
std::optional<std::int64_t> sourceDateEpoch();

/// That moment, or the clock's.
std::int64_t currentTime();

} // namespace velmora::tools
