#pragma once

#include <functional>
#include <string_view>
#include <vector>

namespace velmora
{

struct DMGProject;

/// The stages that a person sees while a build runs, in order.
enum class BuildStep { check, staging, background, create, layout, volumeIcon, detach, convert, sign, notarize };

/// Reports that a step has begun or advanced; `fraction` of the whole build is done (0..1, never falling).
using StepCallback = std::function<void(BuildStep step, double fraction)>;

/// The name of a step for a person ("Creating image").
std::string_view displayName(BuildStep step);
/// The name of a step for a program ("create").
std::string_view identifier(BuildStep step);

/// The steps that a build of this project goes through, in order. Looks whether its background picture exists.
std::vector<BuildStep> neededSteps(const DMGProject& project);

} // namespace velmora
