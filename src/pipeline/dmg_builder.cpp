#include "pipeline/dmg_builder.h"

#include "pipeline/attach.h"
#include "pipeline/background_staging.h"
#include "pipeline/build_run.h"
#include "pipeline/credentials.h"
#include "pipeline/finder_layout.h"
#include "pipeline/image_commands.h"
#include "pipeline/image_size.h"
#include "pipeline/scratch_folder.h"
#include "pipeline/signing.h"
#include "pipeline/space_check.h"
#include "pipeline/staging.h"
#include "pipeline/validation.h"
#include "pipeline/volume_icon.h"

#include <system_error>
#include <utility>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// The Finder writes its records a moment after it was told to.
constexpr std::chrono::milliseconds settlingTime{2000};

StageFolder makeStage(const ScratchFolder& scratch)
{
    const fs::path stage = scratch.path() / "stage";
    fs::create_directory(stage);
    fs::permissions(stage, stagedFolderMode);
    return StageFolder(stage);
}

void createImage(BuildRun& run, const DMGProject& project, const fs::path& stage, std::int64_t sizeMB,
                 const fs::path& image)
{
    run.say("Creating read/write image (" + std::to_string(sizeMB) + " MB)…");
    const ShellResult result = run.tool("/usr/bin/hdiutil", createArguments(project, stage, sizeMB, image));
    if (!result.ok())
        throw BuildError("hdiutil create failed:\n" + result.stdErr);
}

std::int64_t sizeOf(const fs::path& file)
{
    std::error_code error;
    const auto size = fs::file_size(file, error);
    return error ? 0 : static_cast<std::int64_t>(size);
}

void settle(const BuildRun& run)
{
    static_cast<void>(run.tool("/bin/sync", {}, Echo::silent));
    run.pause(settlingTime);
    static_cast<void>(run.tool("/bin/sync", {}, Echo::silent));
}

/// Mounts the image, dresses its window and volume, and detaches it again, whatever happens.
void dressImage(BuildRun& run, const DMGProject& project, const fs::path& image,
                const std::optional<std::string>& backgroundName)
{
    run.say("Mounting image…");
    const Mount mount = attachImage(run, image);
    try {
        run.say("Applying Finder layout…");
        applyFinderLayout(run, project, mount.mountPoint, backgroundName);
        if (!project.volumeIconPath.empty()) {
            run.report(BuildStep::volumeIcon, 0.5);
            run.say("Setting volume icon…");
            setVolumeIcon(run, project.volumeIconPath, mount.mountPoint);
        }
        run.report(BuildStep::detach, 0.55);
        settle(run);
        run.say("Detaching image…");
        detachImage(run, mount);
    } catch (...) {
        forceDetach(run, mount.device, Echo::logged);
        throw;
    }
}

/// Only a file or a link: a folder that has appeared meanwhile is for the image tool to complain about.
void removeEarlierImage(const fs::path& output)
{
    std::error_code ignored;
    const fs::file_type type = fs::symlink_status(output, ignored).type();
    if (type == fs::file_type::regular || type == fs::file_type::symlink)
        fs::remove(output, ignored);
}

void convertImage(BuildRun& run, const DMGProject& project, const fs::path& image, const fs::path& output)
{
    run.say("Converting to " + std::string(displayName(project.format)) + "…");
    removeEarlierImage(output);
    throwIf(missingPassword(project));
    std::optional<std::string> password;
    if (project.encryption != ImageEncryption::none)
        password = project.encryptionPassword;
    const ShellResult result =
        run.tool("/usr/bin/hdiutil", convertArguments(project, image, output), Echo::logged, password);
    if (!result.ok())
        throw BuildError("hdiutil convert failed:\n" + result.stdErr);
}

void enableInternet(BuildRun& run, const fs::path& output)
{
    run.say("Enabling internet-enable flag…");
    run.warnUnlessOk(run.tool("/usr/bin/hdiutil", internetEnableArguments(output)),
                     "The image could not be marked as internet-enabled");
}

void buildImage(BuildRun& run, const DMGProject& project, const fs::path& output, BuildFigures& figures)
{
    const BuildEnvironment& environment = run.environment();
    run.report(BuildStep::check, 0);
    validate(project, output, environment.temporaryFolder);
    checkSpace(run, project, output);
    const ScratchFolder scratch(environment.temporaryFolder, "velmora-build-", environment.uuid());
    StageFolder stage = makeStage(scratch);
    run.report(BuildStep::staging, 0);
    run.say("Staging " + std::to_string(project.items.size()) + " item(s)…");
    stageItems(run, project, stage);
    stageLicense(run, project, stage);
    if (drawsBackground(project))
        run.report(BuildStep::background, 0.15);
    const std::optional<std::string> backgroundName = stageBackground(run, project, stage);
    run.report(BuildStep::create, 0.2);
    const fs::path image = scratch.path() / "temp.dmg";
    const ImageSize size = chooseImageSize(run, project, stage.path());
    figures.contentBytes = size.contentKilobytes * 1024;
    createImage(run, project, stage.path(), size.megabytes, image);
    figures.imageBytes = sizeOf(image);
    run.report(BuildStep::layout, 0.4);
    dressImage(run, project, image, backgroundName);
    run.report(BuildStep::convert, 0.6);
    convertImage(run, project, image, output);
    if (project.internetEnabled)
        enableInternet(run, output);
    signAndNotarize(run, project, output);
    run.report(neededSteps(project).back(), 1);
    run.say("✅ Done: " + output.string());
}

} // namespace

DMGBuilder::DMGBuilder(LogCallback log, BuildEnvironment environment, StepCallback step)
    : m_log(std::move(log)), m_environment(std::move(environment)), m_step(std::move(step))
{
}

void DMGBuilder::build(const DMGProject& project, const fs::path& output)
{
    m_warnings.clear();
    m_figures = {};
    BuildRun run(m_log, m_environment, m_step, m_warnings);
    try {
        buildImage(run, project, fs::absolute(output), m_figures);
    } catch (...) {
        run.checkStop(); // a tool or a copy that was ended by the stop failed in its own words
        throw;
    }
}

} // namespace velmora
