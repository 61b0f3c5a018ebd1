#include "tools/support/image_volume.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/volume.h"
#include "tools/support/local_file.h"

#include <algorithm>

namespace velmora::tools
{

using namespace diskimage;

VolumePlace findHfsVolume(const Source& disk)
{
    const std::vector<DiskExtent> extents = readPartitions(disk);
    VolumePlace place{.extent = findVolume(disk)};
    if (place.extent.type == "Apple_APFS")
        throw DiskImageError("the image holds an APFS volume; APFS is not available on this system");
    if (!hfs::isHfsPlus(*sliceOf(disk, place.extent.start * sectorSize, place.extent.count * sectorSize)))
        throw DiskImageError("the image holds no HFS+ volume");
    if (extents.size() == 1)
        return place;
    const auto has = [&](ExtentKind kind) {
        return std::any_of(extents.begin(), extents.end(), [&](const DiskExtent& e) { return e.kind == kind; });
    };
    place.scheme = has(ExtentKind::gptHeader) ? "GUID_partition_scheme" : "Apple_partition_scheme";
    for (const DiskExtent& extent : extents) {
        // An Apple partition map counts as a partition of its own.
        if (extent.start <= place.extent.start &&
            (extent.kind == ExtentKind::partition || extent.type == "Apple_partition_map"))
            ++place.slice;
    }
    return place;
}

ImageVolume openImageVolume(const std::filesystem::path& path)
{
    ImageVolume result;
    result.file = openLocalFile(path, OpenMode::readOnly);
    result.image = std::make_unique<udif::Image>(*result.file);
    result.place = findHfsVolume(result.image->disk());
    result.volume =
        sliceOf(result.image->disk(), result.place.extent.start * sectorSize, result.place.extent.count * sectorSize);
    return result;
}

} // namespace velmora::tools
