#pragma once

#include "diskimage/base/partition_table.h"
#include "diskimage/base/storage.h"
#include "diskimage/udif/image.h"

#include <filesystem>
#include <memory>
#include <string>

namespace velmora::tools
{

/// Where the HFS+ volume lies on a disk, in the system's terms.
struct VolumePlace {
    diskimage::DiskExtent extent{};
    std::string scheme{}; ///< "GUID_partition_scheme", "Apple_partition_scheme"; empty when it fills the disk
    unsigned slice = 0;   ///< its number in the partition table, 0 when it fills the disk
};

/// Finds the volume. Throws DiskImageError when there is none or it is not HFS+.
VolumePlace findHfsVolume(const diskimage::Source& disk);

/// An image file opened for reading, down to its HFS+ volume.
struct ImageVolume {
    std::unique_ptr<diskimage::Storage> file{};
    std::unique_ptr<diskimage::udif::Image> image{};
    VolumePlace place{};
    std::unique_ptr<diskimage::Source> volume{};
};

/// Opens an image of any readable form. Throws DiskImageError.
ImageVolume openImageVolume(const std::filesystem::path& path);

} // namespace velmora::tools
