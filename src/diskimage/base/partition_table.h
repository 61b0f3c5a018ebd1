#pragma once

#include "diskimage/base/storage.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// GUID partition tables as Apple's image tool lays them out, and reading of Apple partition maps. A sector is 512
/// bytes.
namespace velmora::diskimage
{

inline constexpr std::uint64_t sectorSize = 512;

/// What one stretch of a disk is. The stretches of a disk cover it from sector 0 to its end.
enum class ExtentKind { protectiveMbr, gptHeader, gptTable, free, partition, other };

/// One stretch of a disk.
struct DiskExtent {
    ExtentKind kind = ExtentKind::other;
    std::string name{};      ///< the partition's name ("disk image"), the structure's name, or empty for free space
    std::string type{};      ///< "Apple_HFS", "Apple_APFS", "Apple_Free", "MBR", "Primary GPT Header", …
    std::uint64_t start = 0; ///< first sector
    std::uint64_t count = 0; ///< sectors
    bool operator==(const DiskExtent&) const = default;
};

using Guid = std::array<std::uint8_t, 16>; ///< as written in text, most significant byte first

/// The place of the single partition on a disk of `totalSectors` sectors.
struct PartitionPlace {
    std::uint64_t start = 40;
    std::uint64_t count = 0;
};

/// Where the partition lies on a disk of this size; it starts and ends on a multiple of 4096 bytes. Throws
/// DiskImageError when the disk is too small to hold one.
PartitionPlace partitionPlace(std::uint64_t totalSectors);

/// Which file system a partition is marked as holding.
enum class PartitionType { hfs, apfs };

/// Writes protective MBR, both headers and both tables for one partition named "disk image" that fills the disk.
/// `disk.size()` must be a multiple of 512.
void writeGpt(Storage& disk, PartitionType type, const Guid& diskGuid, const Guid& partitionGuid);

/// All stretches of a disk in order, numbered as in the names of a UDIF image. Reads GPT, Apple partition maps, and
/// disks that are one bare volume (a single `partition` of type "Apple_HFS"). Headers, counts and CRCs are checked.
/// Throws DiskImageError.
std::vector<DiskExtent> readPartitions(const Source& disk);

/// The first stretch that holds an HFS+ or APFS volume. Throws DiskImageError when there is none.
DiskExtent findVolume(const Source& disk);

} // namespace velmora::diskimage
