#include "support/image_reading.h"

#include "diskimage/udif/image.h"
#include "support/repair.h"
#include "support/target.h"

#include <algorithm>
#include <array>

namespace velmora::fuzz
{

using namespace diskimage;
using namespace diskimage::udif;

namespace
{

constexpr std::uint64_t mostExpanded = std::uint64_t{32} << 20;
constexpr std::uint64_t mostConverted = std::uint64_t{1} << 20;

bool takesWork(ChunkType type)
{
    return type != ChunkType::zero && type != ChunkType::ignored;
}

/// Bytes that reading the whole disk has to move or expand; zeros cost nothing.
std::uint64_t workIn(const Image& image)
{
    std::uint64_t sectors = 0;
    for (const BlockTable& table : image.tables()) {
        for (const Chunk& chunk : table.chunks)
            sectors += takesWork(chunk.type) ? std::min(chunk.sectorCount, mostExpanded) : 0;
    }
    return sectors * sectorSize;
}

/// Reads over each border between chunks, until enough has been expanded.
void readBorders(const Image& image)
{
    std::array<std::uint8_t, 1024> buffer{};
    std::uint64_t expanded = 0;
    for (const BlockTable& table : image.tables()) {
        for (const Chunk& chunk : table.chunks) {
            expanded += takesWork(chunk.type) ? chunk.sectorCount * sectorSize : 0;
            if (expanded > mostExpanded)
                return;
            const std::uint64_t end = (table.firstSector + chunk.firstSector + chunk.sectorCount) * sectorSize;
            const std::uint64_t start = end - std::min<std::uint64_t>(end, buffer.size() / 2);
            const std::uint64_t count = std::min<std::uint64_t>(image.disk().size() - start, buffer.size());
            attempt([&] { return image.disk().read(start, static_cast<std::size_t>(count)); });
        }
    }
}

void checkExtents(const std::vector<DiskExtent>& extents, std::uint64_t sectors)
{
    std::uint64_t next = 0;
    for (const DiskExtent& extent : extents) {
        expect(extent.start == next && extent.count <= sectors - next, "the stretches of a disk follow one another");
        next += extent.count;
    }
    expect(next == sectors, "the stretches cover the disk");
}

void convertTo(Format format, const Source& disk, const std::vector<DiskExtent>& extents)
{
    const auto out = memoryStorage();
    ConvertOptions options;
    options.format = format;
    options.zlibLevel = 1;
    options.threads = 1;
    convert(disk, *out, options);
    const Image image(*out);
    expect(image.disk().size() == disk.size(), "an image is as large as its disk");
    for (const DiskExtent& extent : extents) {
        const std::uint64_t start = extent.start * sectorSize;
        const auto length = static_cast<std::size_t>(extent.count * sectorSize);
        const Bytes wanted = extent.kind == ExtentKind::free ? Bytes(length) : disk.read(start, length);
        expect(image.disk().read(start, length) == wanted, "an image holds what its disk holds");
    }
    for (const ChecksumResult& result : verifyChecksums(*out, image))
        expect(result.ok(), "an image that was just written verifies");
}

} // namespace

void convertDisk(const Source& disk)
{
    const auto extents = attempt([&] { return readPartitions(disk); });
    if (!extents)
        return;
    checkExtents(*extents, disk.size() / sectorSize);
    attempt([&] { return findVolume(disk); });
    if (disk.size() > mostConverted || disk.size() % sectorSize != 0)
        return;
    convertTo(Format::udzo, disk, *extents);
    convertTo(Format::udro, disk, *extents);
}

void readImage(const Source& file)
{
    std::optional<Image> image;
    if (!attempt([&] { return &image.emplace(file); }))
        return;
    expect(image->kind() == ImageKind::raw || image->disk().size() == image->trailer()->sectorCount * sectorSize,
           "the expanded disk has the sectors that the trailer promises");
    expect(!image->formatCode().empty(), "an image has a format");
    readBorders(*image);
    if (workIn(*image) <= mostExpanded)
        attempt([&] { return verifyChecksums(file, *image); });
    attempt([&] { return findVolume(image->disk()); });
    if (image->disk().size() > mostConverted)
        return;
    const auto size = static_cast<std::size_t>(image->disk().size());
    if (auto bytes = attempt([&] { return image->disk().read(0, size); })) {
        repairGpt(*bytes);
        convertDisk(*memoryStorage(std::move(*bytes)));
    }
}

} // namespace velmora::fuzz
