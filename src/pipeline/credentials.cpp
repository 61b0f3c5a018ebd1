#include "pipeline/credentials.h"

namespace velmora
{

std::optional<Problem> missingPassword(const DMGProject& project)
{
    if (project.encryption == ImageEncryption::none || !project.encryptionPassword.empty())
        return {};
    return Problem{Severity::error, "encryptionPassword",
                   "Encryption is enabled but no password was set (Volume tab)."};
}

std::optional<Problem> missingIdentity(const DMGProject& project)
{
    if (!signs(project.signingMode) || !project.codeSignIdentity.empty())
        return {};
    return Problem{Severity::error, "codeSignIdentity",
                   "Code signing is enabled but no signing identity was provided (Volume tab)."};
}

std::optional<Problem> missingNotaryProfile(const DMGProject& project)
{
    if (!notarizes(project.signingMode) || !project.notaryProfile.empty())
        return {};
    return Problem{Severity::error, "notaryProfile",
                   "Notarization requires a keychain profile name (Output tab).\n"
                   "Create one with:\n"
                   "  xcrun notarytool store-credentials"};
}

} // namespace velmora
