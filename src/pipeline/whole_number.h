#pragma once

#include <cstdint>
#include <string>

namespace velmora
{

/// `value` truncated toward zero. Throws BuildError naming `field` when it is not finite or does not fit 32 bits, which
/// is what the Finder's files hold.
std::int32_t wholeNumber(double value, const std::string& field);

/// Throws BuildError naming `field` when the value is not a number or infinite.
void requireFinite(double value, const std::string& field);

} // namespace velmora
