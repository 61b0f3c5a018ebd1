#include "pipeline/signing.h"

#include "pipeline/credentials.h"

namespace velmora
{
namespace
{

void sign(BuildRun& run, const DMGProject& project, const std::string& output)
{
    throwIf(missingIdentity(project));
    const std::string& identity = project.codeSignIdentity;
    run.say("Code signing with “" + identity + "”…");
    const ShellResult result = run.tool("/usr/bin/codesign", {"--sign", identity, "--force", "--timestamp", output});
    if (!result.ok())
        throw BuildError("codesign failed:\n" + result.stdErr);
}

void notarize(BuildRun& run, const DMGProject& project, const std::string& output)
{
    throwIf(missingNotaryProfile(project));
    run.say("Submitting to Apple notary service (this can take a few minutes)…");
    const ShellResult submitted = run.tool(
        "/usr/bin/xcrun", {"notarytool", "submit", output, "--keychain-profile", project.notaryProfile, "--wait"});
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
    if (signs(project.signingMode)) {
        run.report(BuildStep::sign, 0.9);
        sign(run, project, output.string());
    }
    if (notarizes(project.signingMode)) {
        run.report(BuildStep::notarize, 0.92);
        notarize(run, project, output.string());
    }
}

} // namespace velmora
