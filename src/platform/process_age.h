#pragma once

#include <chrono>
#include <optional>

namespace velmora
{

/// How long ago the running process was started, its loading included; exact to a hundredth of a second. Nothing when
/// the system does not tell.
std::optional<std::chrono::milliseconds> processAge();

} // namespace velmora
