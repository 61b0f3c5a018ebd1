#include "diskimage/hfs/volume_header.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/volume.h"

#include <bit>
#include <optional>

namespace velmora::diskimage::hfs
{
namespace
{

constexpr std::uint16_t signatureOldHfs = 0x4244; ///< "BD"

/// Why a header cannot be used, or nothing.
std::optional<std::string> faultOf(const VolumeHeader& header, std::uint64_t volumeSize)
{
    const bool plain = header.signature == signatureHfsPlus && header.version == 4;
    const bool extended = header.signature == signatureHfsx && header.version == 5;
    if (!plain && !extended) {
        return "it has no HFS+ signature";
    }
    if (header.blockSize < 512 || !std::has_single_bit(header.blockSize)) {
        return "its block size of " + std::to_string(header.blockSize) + " bytes is impossible";
    }
    if (header.totalBlocks == 0 || header.totalBlocks > volumeSize / header.blockSize) {
        return "its " + std::to_string(header.totalBlocks) + " blocks of " + std::to_string(header.blockSize) +
               " bytes do not fit the disk (" + std::to_string(volumeSize) + " bytes)";
    }
    return std::nullopt;
}

} // namespace

VolumeHeader readVolumeHeader(const std::uint8_t* p)
{
    VolumeHeader header;
    header.signature = getBE16(p);
    header.version = getBE16(p + 2);
    header.attributes = getBE32(p + 4);
    header.lastMountedVersion = getBE32(p + 8);
    header.journalInfoBlock = getBE32(p + 12);
    header.createDate = getBE32(p + 16);
    header.modifyDate = getBE32(p + 20);
    header.backupDate = getBE32(p + 24);
    header.checkedDate = getBE32(p + 28);
    header.fileCount = getBE32(p + 32);
    header.folderCount = getBE32(p + 36);
    header.blockSize = getBE32(p + 40);
    header.totalBlocks = getBE32(p + 44);
    header.freeBlocks = getBE32(p + 48);
    header.nextAllocation = getBE32(p + 52);
    header.resourceClumpSize = getBE32(p + 56);
    header.dataClumpSize = getBE32(p + 60);
    header.nextCatalogId = getBE32(p + 64);
    header.writeCount = getBE32(p + 68);
    header.encodingsBitmap = getBE64(p + 72);
    for (std::size_t i = 0; i < header.finderInfo.size(); ++i) {
        header.finderInfo[i] = getBE32(p + 80 + 4 * i);
    }
    header.allocationFile = readForkData(p + 112);
    header.extentsFile = readForkData(p + 192);
    header.catalogFile = readForkData(p + 272);
    header.attributesFile = readForkData(p + 352);
    header.startupFile = readForkData(p + 432);
    return header;
}

std::array<std::uint8_t, volumeHeaderSize> encodeVolumeHeader(const VolumeHeader& header)
{
    std::array<std::uint8_t, volumeHeaderSize> bytes{};
    auto* const p = bytes.data();
    putBE16(p, header.signature);
    putBE16(p + 2, header.version);
    putBE32(p + 4, header.attributes);
    putBE32(p + 8, header.lastMountedVersion);
    putBE32(p + 12, header.journalInfoBlock);
    putBE32(p + 16, header.createDate);
    putBE32(p + 20, header.modifyDate);
    putBE32(p + 24, header.backupDate);
    putBE32(p + 28, header.checkedDate);
    putBE32(p + 32, header.fileCount);
    putBE32(p + 36, header.folderCount);
    putBE32(p + 40, header.blockSize);
    putBE32(p + 44, header.totalBlocks);
    putBE32(p + 48, header.freeBlocks);
    putBE32(p + 52, header.nextAllocation);
    putBE32(p + 56, header.resourceClumpSize);
    putBE32(p + 60, header.dataClumpSize);
    putBE32(p + 64, header.nextCatalogId);
    putBE32(p + 68, header.writeCount);
    putBE64(p + 72, header.encodingsBitmap);
    for (std::size_t i = 0; i < header.finderInfo.size(); ++i) {
        putBE32(p + 80 + 4 * i, header.finderInfo[i]);
    }
    putForkData(p + 112, header.allocationFile);
    putForkData(p + 192, header.extentsFile);
    putForkData(p + 272, header.catalogFile);
    putForkData(p + 352, header.attributesFile);
    putForkData(p + 432, header.startupFile);
    return bytes;
}

VolumePlace locateVolume(const Source& source)
{
    if (source.size() < volumeHeaderOffset + volumeHeaderSize) {
        return {0, source.size()};
    }
    // Master directory block of old HFS (Inside Macintosh: Files); its drEmbedSigWord is that of HFS+.
    const auto block = source.read(volumeHeaderOffset, volumeHeaderSize);
    if (getBE16(block.data()) != signatureOldHfs || getBE16(block.data() + 124) != signatureHfsPlus) {
        return {0, source.size()};
    }
    const std::uint64_t blockSize = getBE32(block.data() + 20);
    const auto offset = std::uint64_t{getBE16(block.data() + 28)} * 512 + getBE16(block.data() + 126) * blockSize;
    const auto length = getBE16(block.data() + 128) * blockSize;
    if (offset > source.size() || length > source.size() - offset) {
        throw DiskImageError("The HFS wrapper places the HFS+ volume outside the disk.");
    }
    return {offset, length};
}

VolumeHeader findVolumeHeader(const Source& volume)
{
    const auto size = volume.size();
    if (size < volumeHeaderOffset + volumeHeaderSize + alternateHeaderFromEnd) {
        throw DiskImageError("A disk of " + std::to_string(size) + " bytes is too small for an HFS+ volume.");
    }
    const auto header = readVolumeHeader(volume.read(volumeHeaderOffset, volumeHeaderSize).data());
    const auto fault = faultOf(header, size);
    if (!fault) {
        return header;
    }
    const auto copy = readVolumeHeader(volume.read(size - alternateHeaderFromEnd, volumeHeaderSize).data());
    if (!faultOf(copy, size)) {
        return copy;
    }
    throw DiskImageError("The HFS+ volume header cannot be used: " + *fault + ".");
}

bool isHfsPlus(const Source& source)
{
    if (source.size() < volumeHeaderOffset + volumeHeaderSize) {
        return false;
    }
    const auto block = source.read(volumeHeaderOffset, volumeHeaderSize);
    const auto signature = getBE16(block.data());
    return signature == signatureHfsPlus || signature == signatureHfsx ||
           (signature == signatureOldHfs && getBE16(block.data() + 124) == signatureHfsPlus);
}

} // namespace velmora::diskimage::hfs
