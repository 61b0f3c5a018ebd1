#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/fork.h"
#include "diskimage/hfs/format.h"

#include <array>
#include <cstdint>

namespace velmora::diskimage::hfs
{

inline constexpr std::uint16_t signatureHfsPlus = 0x482B; ///< "H+", version 4
inline constexpr std::uint16_t signatureHfsx = 0x4858;    ///< "HX", version 5

/// The volume header (TN1150, "Volume Header", 512 bytes, 1024 bytes from the volume's start; a copy lies 1024 bytes
/// before its end). The fields are in the order on disk.
struct VolumeHeader {
    std::uint16_t signature = signatureHfsPlus;
    std::uint16_t version = 4;
    std::uint32_t attributes = 0;
    std::uint32_t lastMountedVersion = 0;
    std::uint32_t journalInfoBlock = 0;
    std::uint32_t createDate = 0;
    std::uint32_t modifyDate = 0;
    std::uint32_t backupDate = 0;
    std::uint32_t checkedDate = 0;
    std::uint32_t fileCount = 0;
    std::uint32_t folderCount = 0; ///< without the root
    std::uint32_t blockSize = 0;
    std::uint32_t totalBlocks = 0;
    std::uint32_t freeBlocks = 0;
    std::uint32_t nextAllocation = 0;
    std::uint32_t resourceClumpSize = 0;
    std::uint32_t dataClumpSize = 0;
    std::uint32_t nextCatalogId = 0;
    std::uint32_t writeCount = 0;
    std::uint64_t encodingsBitmap = 0;
    std::array<std::uint32_t, 8> finderInfo{}; ///< words 6 and 7 hold the volume's identifier
    ForkData allocationFile{};
    ForkData extentsFile{};
    ForkData catalogFile{};
    ForkData attributesFile{};
    ForkData startupFile{};
};

VolumeHeader readVolumeHeader(const std::uint8_t* p);
std::array<std::uint8_t, volumeHeaderSize> encodeVolumeHeader(const VolumeHeader& header);

/// A part of a disk.
struct VolumePlace {
    std::uint64_t offset = 0;
    std::uint64_t length = 0;
};

/// Where the HFS+ volume lies in what fills `source`: all of it, or the part that an old HFS wrapper gives. Throws
/// DiskImageError when a wrapper places it outside.
VolumePlace locateVolume(const Source& source);

/// The header of a volume that fills `volume`, or its copy when the header itself is unusable. Signature, version,
/// block size and the number of blocks have been checked. Throws DiskImageError saying what is wrong.
VolumeHeader findVolumeHeader(const Source& volume);

} // namespace velmora::diskimage::hfs
