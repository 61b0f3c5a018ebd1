#include "pipeline/signing.h"

#include "pipeline/build_error.h"

namespace velmora
{
namespace
{

void sign(BuildRun& run, const std::string& identity, const std::string& output)
{
    if (identity.empty())
        throw BuildError("Code signing is enabled but no signing identity was provided (Volume tab).");
    run.say("Code signing with “" + identity + "”…");
    const ShellResult result = run.tool("/usr/bin/codesign", {"--sign", identity, "--force", "--timestamp", output});
    if (!result.ok())
        throw BuildError("codesign failed:\n" + result.stdErr);
}

void notarize(BuildRun& run, const std::string& profile, const std::string& output)
{
    if (profile.empty())
        throw BuildError("Notarization requires a keychain profile name (Output tab).\n"
                         "Create one with:\n"
                         "  xcrun notarytool store-credentials");
    run.say("Submitting to Apple notary service (this can take a few minutes)…");
    const ShellResult submitted =
        run.tool("/usr/bin/xcrun", {"notarytool", "submit", output, "--keychain-profile", profile, "--wait"});
    if (!submitted.ok())
        throw BuildError("notarytool submit failed:\n" + submitted.stdErr);
    run.say("Stapling notarization ticket…");
    const ShellResult stapled = run.tool("/usr/bin/xcrun", {"stapler", "staple", output});
    if (!stapled.ok())
        throw BuildError("stapler failed:\n" + stapled.stdErr);
}

} // namespace

void signAndNotarize(BuildRun& run, const DMGProject& project, const std::filesystem::path& output)
{
    if (signs(project.signingMode))
        sign(run, project.codeSignIdentity, output.string());
    if (notarizes(project.signingMode))
        notarize(run, project.notaryProfile, output.string());
}

} // namespace velmora
