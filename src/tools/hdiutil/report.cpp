#include "diskimage/base/error.h"
#include "diskimage/hfs/check.h"
#include "diskimage/hfs/volume.h"
#include "tools/hdiutil/verbs.h"
#include "tools/support/arguments.h"
#include "tools/support/image_volume.h"
#include "tools/support/local_file.h"

#include <iomanip>
#include <iostream>
#include <sstream>

namespace velmora::tools::hdiutil
{

using namespace diskimage;

namespace
{

std::string hex(std::uint32_t value)
{
    std::ostringstream text;
    text << '$' << std::hex << std::uppercase << std::setw(8) << std::setfill('0') << value;
    return text.str();
}

std::string checksumTypeName(std::uint32_t type)
{
    switch (type) {
    case 0:
        return "none";
    case 2:
        return "CRC32";
    default:
        return "type " + std::to_string(type);
    }
}

void printTrailer(const udif::Image& image)
{
    const udif::Trailer& trailer = *image.trailer();
    std::cout << "Checksum Type: " << checksumTypeName(trailer.masterChecksumType) << '\n'
              << "Checksum Value: " << hex(trailer.masterChecksum) << '\n'
              << "Data Checksum Type: " << checksumTypeName(trailer.dataChecksumType) << '\n'
              << "Data Checksum Value: " << hex(trailer.dataChecksum) << '\n'
              << "Internet-Enabled: " << ((trailer.flags & udif::trailerFlagInternetEnabled) != 0 ? "true" : "false")
              << '\n'
              << "Signed: " << (trailer.signatureLength != 0 ? "true" : "false") << '\n';
}

void printPartitions(const Source& disk)
{
    std::cout << "Partitions:\n";
    for (const DiskExtent& extent : readPartitions(disk))
        std::cout << "\t" << std::setw(10) << extent.start << ' ' << std::setw(10) << extent.count << "  "
                  << extent.type << (extent.name.empty() ? "" : "  " + extent.name) << '\n';
}

void printVolume(const Source& disk)
{
    const DiskExtent extent = findHfsVolume(disk).extent;
    const auto source = sliceOf(disk, extent.start * sectorSize, extent.count * sectorSize);
    const hfs::Volume volume(*source);
    const hfs::VolumeInfo& info = volume.info();
    std::cout << "Volume Name: " << info.name << '\n'
              << "Volume Format: HFS+" << (info.caseSensitive ? " (case-sensitive)" : "") << '\n'
              << "Volume Blocks: " << info.totalBlocks << " of " << info.blockSize << " bytes, " << info.freeBlocks
              << " free\n"
              << "Volume Files: " << info.fileCount << ", folders: " << info.folderCount << '\n';
}

/// Prints the checksums that were compared; returns whether all are right.
bool reportChecksums(const Source& file, const udif::Image& image)
{
    if (image.kind() == udif::ImageKind::raw) {
        std::cout << "a raw image (UDRW) has no checksums\n";
        return true;
    }
    bool allRight = true;
    for (const udif::ChecksumResult& result : udif::verifyChecksums(file, image)) {
        allRight = allRight && result.ok();
        if (result.ok())
            std::cout << "verified   CRC32 " << hex(result.stored) << "  " << result.name << '\n';
        else
            std::cout << "WRONG      CRC32 " << hex(result.stored) << " stored, " << hex(result.computed)
                      << " calculated  " << result.name << '\n';
    }
    return allRight;
}

/// Prints every fault of the partition table and the volume; returns whether there is none.
bool reportDisk(const Source& disk)
{
    std::vector<std::string> faults;
    try {
        const DiskExtent extent = findHfsVolume(disk).extent;
        std::cout << "verified   partition table\n";
        faults = hfs::checkVolume(*sliceOf(disk, extent.start * sectorSize, extent.count * sectorSize));
    } catch (const DiskImageError& error) {
        faults.emplace_back(error.what());
    }
    for (const std::string& fault : faults)
        std::cout << "WRONG      " << fault << '\n';
    if (faults.empty())
        std::cout << "verified   HFS+ volume\n";
    return faults.empty();
}

} // namespace

int imageinfo(std::span<const std::string> arguments, const StopToken&)
{
    const Arguments given(arguments, {}, 1, 1);
    const auto file = openLocalFile(given.operands().front(), OpenMode::readOnly);
    const udif::Image image(*file);
    const bool isRaw = image.kind() == udif::ImageKind::raw;
    std::cout << "Format: " << image.formatCode() << '\n'
              << "Class Name: " << (isRaw ? "CRawDiskImage" : "CUDIFDiskImage") << '\n'
              << "File Size: " << file->size() << '\n'
              << "Total Bytes: " << image.disk().size() << '\n'
              << "Sector Count: " << image.disk().size() / sectorSize << '\n';
    if (image.trailer())
        printTrailer(image);
    else
        std::cout << "Checksum Type: none\n";
    printPartitions(image.disk());
    printVolume(image.disk());
    return 0;
}

int verify(std::span<const std::string> arguments, const StopToken&)
{
    const Arguments given(arguments, {}, 1, 1);
    const std::string& path = given.operands().front();
    const auto file = openLocalFile(path, OpenMode::readOnly);
    const udif::Image image(*file);
    const bool checksumsRight = reportChecksums(*file, image);
    const bool diskRight = reportDisk(image.disk());
    if (!checksumsRight || !diskRight)
        throw DiskImageError("\"" + path + "\" is damaged");
    std::cout << "\"" << path << "\" is VALID\n";
    return 0;
}

} // namespace velmora::tools::hdiutil
