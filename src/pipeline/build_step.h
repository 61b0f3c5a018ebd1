#pragma once

#include <functional>
#include <string_view>

namespace velmora
{

/// The stages that a person sees while a build runs, in order.
enum class BuildStep { staging, background, create, layout, detach, convert, sign };

/// Reports that a step has begun or advanced; `fraction` of the whole build is done (0..1, never falling).
using StepCallback = std::function<void(BuildStep step, double fraction)>;

/// The name of a step for a person ("Creating image").
std::string_view displayName(BuildStep step);
/// The name of a step for a program ("create").
std::string_view identifier(BuildStep step);

} // namespace velmora
