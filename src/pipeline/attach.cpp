#include "pipeline/attach.h"

#include "pipeline/build_error.h"
#include "pipeline/text.h"

namespace velmora
{
namespace
{

const std::string hdiutil = "/usr/bin/hdiutil";
constexpr int detachAttempts = 5;
constexpr std::chrono::milliseconds detachPause{1500};

void readMountedLine(std::string_view line, AttachOutput& result)
{
    std::vector<std::string_view> pieces = split(line, '\t');
    for (std::string_view& piece : pieces)
        piece = trimmedBlanks(piece);
    if (pieces.front().starts_with("/dev/"))
        result.device = pieces.front();
    for (auto piece = pieces.rbegin(); piece != pieces.rend(); ++piece) {
        if (piece->starts_with("/Volumes/")) {
            result.mountPoint = *piece;
            return;
        }
    }
}

} // namespace

AttachOutput parseAttachOutput(std::string_view output)
{
    AttachOutput result;
    for (const std::string_view line : split(output, '\n')) {
        if (line.find("/Volumes/") != std::string_view::npos)
            readMountedLine(line, result);
        else if (!result.device && line.starts_with("/dev/"))
            result.device = line.substr(0, line.find('\t'));
    }
    return result;
}

Mount attachImage(BuildRun& run, const std::filesystem::path& image)
{
    run.checkStop();
    // Without the stop token: an attach that is ended half-way leaves a device that nobody knows of.
    const ShellResult result = run.environment().shell->run(
        hdiutil, {"attach", image.string(), "-readwrite", "-noverify", "-noautoopen", "-nobrowse"}, std::nullopt,
        run.log(), StopToken{});
    const AttachOutput output = parseAttachOutput(result.stdOut);
    if (result.ok() && output.device && output.mountPoint)
        return {*output.device, *output.mountPoint};
    if (output.device)
        forceDetach(run, std::string(trimmedBlanks(*output.device)), Echo::silent);
    if (!result.ok())
        throw BuildError("hdiutil attach failed:\n" + result.stdErr);
    throw BuildError("Could not determine mount point.\n" + result.stdOut);
}

void detachImage(BuildRun& run, const Mount& mount)
{
    for (int attempt = 1; attempt <= detachAttempts; ++attempt) {
        run.checkStop();
        const ShellResult result = run.environment().shell->run(hdiutil, {"detach", mount.device, "-force"},
                                                                std::nullopt, run.log(), run.environment().stop);
        if (result.ok()) // even when a stop came meanwhile: the device may be somebody else's by now
            return;
        run.checkStop();
        run.say("Detach busy, retrying (" + std::to_string(attempt) + "/" + std::to_string(detachAttempts) + ")…");
        run.pause(detachPause);
    }
    throw BuildError("Could not detach volume (resource busy).");
}

void forceDetach(const BuildRun& run, const std::string& device, Echo echo)
{
    // A second Ctrl-C in the terminal can reach the tool before it has a process group of its own; it dies without a
    // word, and is started once more.
    for (int attempt = 0; attempt < 2; ++attempt) {
        const ShellResult result =
            run.environment().shell->run(hdiutil, {"detach", device, "-force"}, std::nullopt,
                                         echo == Echo::logged ? run.log() : LogCallback{}, StopToken{});
        if (result.ok() || !result.stdErr.empty() || !result.stdOut.empty())
            return;
    }
}

} // namespace velmora
