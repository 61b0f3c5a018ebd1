#pragma once

#include "model/project.h"
#include "pipeline/problem.h"

#include <optional>

/// What the last steps of a build need beside the content. A build asks for each when it comes to that step.
namespace velmora
{

/// Encryption without a password, or nothing.
std::optional<Problem> missingPassword(const DMGProject& project);
/// Signing without an identity, or nothing.
std::optional<Problem> missingIdentity(const DMGProject& project);
/// Notarization without a keychain profile, or nothing.
std::optional<Problem> missingNotaryProfile(const DMGProject& project);

} // namespace velmora
