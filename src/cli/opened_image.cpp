#include "cli/opened_image.h"

#include "diskimage/base/error.h"

namespace velmora::cli
{
using namespace diskimage;

namespace
{

std::unique_ptr<Source> partitionOf(const udif::Image& image, const DiskExtent& extent)
{
    if (extent.type != "Apple_HFS")
        throw DiskImageError("The image holds a volume of the type " + extent.type + ", not HFS+");
    return sliceOf(image.disk(), extent.start * sectorSize, extent.count * sectorSize);
}

constexpr std::uint64_t layoutFileLimit = 64 * 1024 * 1024;

} // namespace

OpenedImage::OpenedImage(const std::filesystem::path& path)
    : file(openFile(path, OpenMode::readOnly)),
      image(*file),
      extent(findVolume(image.disk())),
      partition(partitionOf(image, extent)),
      volume(*partition)
{
}

Bytes OpenedImage::content(const hfs::Entry& entry, std::uint64_t limit) const
{
    if (entry.kind != hfs::EntryKind::file)
        throw DiskImageError("\"" + entry.name + "\" is not a file");
    if (entry.dataSize > limit)
        throw DiskImageError("\"" + entry.name + "\" is larger than " + std::to_string(limit) + " bytes");
    if (entry.dataSize == 0)
        return {};
    return entry.openData()->read(0, static_cast<std::size_t>(entry.dataSize));
}

std::optional<finder::ReadLayout> OpenedImage::layout() const
{
    const hfs::Entry* store = volume.find("/.DS_Store");
    if (store == nullptr)
        return std::nullopt;
    return finder::readLayout(finder::readDsStore(content(*store, layoutFileLimit)));
}

} // namespace velmora::cli
