#include "pipeline/space_check.h"

#include "pipeline/build_error.h"
#include "pipeline/text.h"

#include <cstdio>
#include <map>

namespace velmora
{
namespace
{

namespace fs = std::filesystem;

std::string inUnits(std::uint64_t bytes)
{
    constexpr double megabyte = 1'000'000;
    const double amount = static_cast<double>(bytes) / megabyte;
    char text[32];
    if (amount < 1000)
        std::snprintf(text, sizeof text, "%.1f MB", amount);
    else
        std::snprintf(text, sizeof text, "%.2f GB", amount / 1000);
    return text;
}

struct Content {
    std::uint64_t bytes = 0;
    std::uint64_t entries = 0;
    std::uint64_t stagedBytes = 0; ///< what their copies take in the scratch folder
};

Content measure(const BuildRun& run, const DMGProject& project, const DiskSpace& scratch)
{
    const BuildEnvironment& environment = run.environment();
    std::map<std::string, const DMGItem*> staged; // of entries with one name the last one stays
    for (const DMGItem& item : project.items) {
        if (isReal(item))
            staged[item.displayName] = &item;
    }
    Content content;
    for (const auto& [name, item] : staged) {
        const DiskUsage usage = diskUsage(item->sourcePath, [&run] { run.checkStop(); });
        content.bytes += usage.bytes;
        content.entries += usage.entries;
        const bool isShared = scratch.sharesBlocks && environment.diskSpace(item->sourcePath).device == scratch.device;
        content.stagedBytes += isShared ? 0 : usage.bytes;
    }
    return content;
}

} // namespace

void checkSpace(BuildRun& run, const DMGProject& project, const fs::path& output)
{
    const BuildEnvironment& environment = run.environment();
    const fs::path& scratchFolder = environment.temporaryFolder;
    const fs::path outputFolder = output.parent_path();
    const DiskSpace scratch = environment.diskSpace(scratchFolder);
    const DiskSpace target = environment.diskSpace(outputFolder);
    const Content content = measure(run, project, scratch);

    const std::uint64_t inScratch = content.stagedBytes + content.bytes; // the copies, and the image made from them
    if (inScratch > scratch.freeBytes)
        throw BuildError("There is not enough room in the folder " + inQuotes(scratchFolder.string()) +
                         ": putting the image together needs " + inUnits(inScratch) + ", but only " +
                         inUnits(scratch.freeBytes) + " are free.");
    if (content.entries > scratch.freeEntries)
        throw BuildError("There is not enough room in the folder " + inQuotes(scratchFolder.string()) +
                         ": it takes only " + std::to_string(scratch.freeEntries) +
                         " more files, and the content has " + std::to_string(content.entries) + ".");

    const bool isOneRoom = scratch.device == target.device;
    const std::uint64_t left = isOneRoom ? scratch.freeBytes - inScratch : target.freeBytes;
    if (content.bytes <= left)
        return;
    const std::string need = inUnits(content.bytes) + ", but only " + inUnits(left) + " are free" +
                             (isOneRoom ? " beside what putting it together needs." : ".");
    if (project.format == DMGFormat::readOnly || project.format == DMGFormat::readWrite)
        throw BuildError("There is not enough room in the folder " + inQuotes(outputFolder.string()) +
                         ": the image needs " + need);
    run.warnAloud("There may not be enough room in the folder " + inQuotes(outputFolder.string()) +
                  ": the image may need up to " + need);
}

} // namespace velmora
