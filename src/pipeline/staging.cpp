#include "pipeline/staging.h"

#include "pipeline/text.h"
#include "platform/file_tree.h"

#include <system_error>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

/// Staging takes the first part of the bar, which grows with every entry.
constexpr double stagingFraction = 0.15;

void stageItem(BuildRun& run, const DMGItem& item, const fs::path& target)
{
    if (item.isSymlink()) {
        std::error_code error;
        fs::create_symlink(item.symlinkTarget, target, error);
        if (error)
            throw FileError("The link “" + item.displayName + "” could not be made: " + error.message() + ".");
        return;
    }
    const auto stopped = [&run] { return run.environment().stop.stopRequested(); };
    for (const std::string& warning : copyTree(item.sourcePath, target, stopped).warnings)
        run.warn(warning);
}

} // namespace

void stageItems(BuildRun& run, const DMGProject& project, StageFolder& stage)
{
    const std::size_t count = project.items.size();
    for (std::size_t i = 0; i < count; ++i) {
        const DMGItem& item = project.items[i];
        run.report(BuildStep::staging, stagingFraction * static_cast<double>(i) / static_cast<double>(count));
        run.checkStop();
        if (item.hidden)
            continue;
        if (const auto earlier = stage.find(item.displayName))
            run.warnAloud("The entry “" + *earlier + "” is replaced by a later one of the same name, “" +
                          item.displayName + "”.");
        stageItem(run, item, stage.place(item.displayName));
    }
}

bool hasLicense(const DMGProject& project)
{
    return project.licenseEnabled && !trimmed(project.licenseText).empty();
}

void stageLicense(BuildRun& run, const DMGProject& project, StageFolder& stage)
{
    if (!hasLicense(project))
        return;
    run.say("Adding LICENSE.txt…");
    if (const auto entry = stage.find(licenseFileName))
        run.warnAloud("The entry “" + *entry + "” is replaced by the licence agreement.");
    stage.write(licenseFileName, project.licenseText);
}

} // namespace velmora
