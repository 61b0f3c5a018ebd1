#include "diskimage/base/error.h"
#include "diskimage/hfs/writer.h"
#include "platform/mounts.h"
#include "tools/hdiutil/verbs.h"
#include "tools/support/arguments.h"
#include "tools/support/fingerprint.h"
#include "tools/support/local_file.h"
#include "tools/support/output_file.h"
#include "tools/support/source_tree.h"
#include "tools/support/times.h"

#include <iostream>
#include <stdexcept>

namespace velmora::tools::hdiutil
{

using namespace diskimage;

namespace
{

constexpr std::uint64_t mebibyte = 1024 * 1024;

struct CreateRequest {
    std::filesystem::path folder{};
    std::string volumeName{};
    hfs::ClumpSizes clumps{};
    std::uint64_t size = 0; ///< bytes of the whole disk
    std::filesystem::path output{};
    Existing existing = Existing::refuse;
};

/// Takes what a tree is made of, but for the bytes of its forks, into the fingerprint.
void describe(const hfs::Entry& entry, Fingerprint& fingerprint)
{
    fingerprint.add(entry.name);
    fingerprint.add(static_cast<std::uint64_t>(entry.kind));
    fingerprint.add(std::uint64_t{entry.mode});
    fingerprint.add(static_cast<std::uint64_t>(entry.modified));
    fingerprint.add(ByteView(entry.finderInfo));
    fingerprint.add(entry.linkTarget);
    fingerprint.add(entry.dataSize);
    fingerprint.add(entry.resourceSize);
    for (const auto& [name, value] : entry.attributes) {
        fingerprint.add(name);
        fingerprint.add(textOf(value));
    }
    fingerprint.add(std::uint64_t{entry.children.size()});
    for (const hfs::Entry& child : entry.children)
        describe(child, fingerprint);
}

void requireRoom(const hfs::Entry& root, const hfs::VolumeOptions& options, std::uint64_t size)
{
    const std::uint64_t needed = hfs::requiredBytes(root, options);
    if (size / sectorSize > 80 && partitionPlace(size / sectorSize).count * sectorSize >= needed)
        return;
    // 40 KiB before the volume, at most as much behind it, whole mebibytes.
    const std::uint64_t megabytes = (needed + 80 * sectorSize + mebibyte - 1) / mebibyte;
    throw std::runtime_error("no space left on device: the contents need a size of at least " +
                             std::to_string(megabytes) + "m, but only " + std::to_string(size / 1024) + "k were given");
}

void createImage(const CreateRequest& request, const StopToken& stop)
{
    hfs::Entry root = scanFolder(request.folder, request.volumeName, {.latestTime = sourceDateEpoch()});
    Fingerprint fingerprint;
    describe(root, fingerprint);
    const hfs::VolumeOptions options{
        .clumps = request.clumps, .created = currentTime(), .stopped = [&stop] { return stop.stopRequested(); }};
    requireRoom(root, options, request.size);
    throwIfStopped(stop);

    OutputFile output(request.output, request.existing);
    const auto disk = openLocalFile(output.temporaryPath(), OpenMode::readWrite);
    disk->resize(request.size);
    const PartitionPlace place = partitionPlace(request.size / sectorSize);
    const auto volume = sliceOf(*disk, place.start * sectorSize, place.count * sectorSize);
    fingerprint.add(std::uint64_t{hfs::writeVolume(*volume, root, options)});
    writeGpt(*disk, PartitionType::hfs, fingerprint.guid("disk"), fingerprint.guid("partition"));
    throwIfStopped(stop);
    output.commit();
}

} // namespace

int create(std::span<const std::string> arguments, const StopToken& stop)
{
    static constexpr OptionSpec specs[] = {{"-srcfolder", 1},  {"-volname", 1},   {"-fs", 1},
                                           {"-fsargs", 1},     {"-format", 1},    {"-size", 1},
                                           {"-encryption", 1}, {"-stdinpass", 0}, {"-ov", 0}};
    const Arguments given(arguments, specs, 1, 1);
    const std::string fileSystem = given.require("-fs");
    const std::string format = given.require("-format");
    CreateRequest request{.folder = Mounts::localPath(given.require("-srcfolder")),
                          .volumeName = given.require("-volname"),
                          .size = parseSize(given.require("-size")),
                          .output = outputPath(given.operands().front()),
                          .existing = given.has("-ov") ? Existing::replace : Existing::refuse};
    if (given.has("-encryption") || given.has("-stdinpass"))
        throw std::runtime_error("encrypted images are not available on this system");
    if (fileSystem == "APFS")
        throw std::runtime_error("APFS is not available on this system; use the file system HFS+");
    if (fileSystem != "HFS+")
        throw std::runtime_error("unknown file system \"" + fileSystem + "\"; use HFS+");
    if (format != "UDRW")
        throw std::runtime_error("images are created in the format UDRW only, not \"" + format +
                                 "\"; use the verb convert afterwards");
    if (const auto clumps = given.value("-fsargs"))
        request.clumps = hfs::parseClumpSizes(*clumps);
    refuseAttached(request.output);
    createImage(request, stop);
    std::cout << "created: " << request.output.string() << "\n";
    return 0;
}

} // namespace velmora::tools::hdiutil
