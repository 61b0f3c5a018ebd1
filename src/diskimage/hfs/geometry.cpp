#include "diskimage/hfs/geometry.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/tree_builder.h"

#include <algorithm>
#include <limits>

// Block size, node sizes and the stock sizes of the trees depend on the volume's size, and the volume's size on them.
// Within one size class (below) all of them grow with the volume or stay, so the smallest volume of a class is found by
// enlarging a guess until it suffices; the first class in which that succeeds has the smallest volume of all.
namespace velmora::diskimage::hfs
{
namespace
{

constexpr std::uint64_t KiB = 1024;
constexpr std::uint64_t MiB = 1024 * KiB;
constexpr std::uint64_t GiB = 1024 * MiB;
constexpr std::uint64_t TiB = 1024 * GiB;

constexpr std::uint32_t sizeUnit = 4096;            ///< what volume sizes are multiples of
constexpr std::uint64_t minimumVolume = 512 * KiB;  ///< as macOS formats
constexpr std::uint64_t maximumVolume = 1024 * TiB; ///< where the block size would exceed a megabyte
constexpr std::uint32_t extentsNodeSize = 4096;

/// What is the same for all volumes from `from` up to the next class. Stock sizes in MiB; 0: a share of the volume.
struct SizeClass {
    std::uint64_t from;
    std::uint32_t blockSize;
    std::uint32_t attributes;
    std::uint32_t catalog;
    std::uint32_t extents;
};

constexpr SizeClass sizeClasses[] = {
    {0, 4096, 0, 0, 0},
    {1 * GiB, 4096, 4, 4, 4},
    {2 * GiB, 4096, 6, 6, 4},
    {4 * GiB, 4096, 8, 8, 4},
    {8 * GiB, 4096, 11, 11, 5},
    {16 * GiB, 4096, 64, 32, 5},
    {32 * GiB, 4096, 84, 49, 6},
    {64 * GiB, 4096, 111, 74, 7},
    {128 * GiB, 4096, 147, 111, 8},
    {256 * GiB, 4096, 194, 169, 9},
    {512 * GiB, 4096, 256, 256, 11},
    {1 * TiB, 4096, 294, 294, 14},
    {2 * TiB, 8192, 338, 338, 16},
    {4 * TiB, 8192, 388, 388, 20},
    {8 * TiB, 16384, 446, 446, 25},
    {16 * TiB, 32768, 512, 512, 32},
    // Only the block size grows beyond.
    {32 * TiB, 65536, 512, 512, 32},
    {64 * TiB, 131072, 512, 512, 32},
    {128 * TiB, 262144, 512, 512, 32},
    {256 * TiB, 524288, 512, 512, 32},
    {512 * TiB, 1048576, 512, 512, 32},
};

/// One of the three trees, as the arithmetic sees it.
struct TreeNeed {
    const char* name;
    std::uint64_t nodes;
    std::uint32_t nodeSize;
    std::uint32_t clumpBlocks; ///< 0: stock
    std::uint32_t stockMiB;
};

std::uint64_t stockSize(const TreeNeed& tree, std::uint32_t blockSize, std::uint64_t volumeBytes)
{
    const std::uint64_t unit = std::max(tree.nodeSize, blockSize);
    const auto size = tree.stockMiB > 0
                          ? tree.stockMiB * MiB
                          : std::max<std::uint64_t>(volumeBytes / 512 * 4, std::uint64_t{8} * tree.nodeSize);
    return std::max(size / unit * unit, unit);
}

/// A tree's file, still without its place.
SpecialFile sizeTree(const TreeNeed& tree, std::uint32_t blockSize, std::uint64_t volumeBytes)
{
    const bool isStock = tree.clumpBlocks == 0;
    const auto clump = isStock ? stockSize(tree, blockSize, volumeBytes) : std::uint64_t{tree.clumpBlocks} * blockSize;
    if (clump % tree.nodeSize != 0 || clump > std::numeric_limits<std::uint32_t>::max()) {
        throw DiskImageError("The size of " + std::to_string(tree.clumpBlocks) + " blocks for the " + tree.name +
                             " is not a multiple of its nodes of " + std::to_string(tree.nodeSize) +
                             " bytes, or too large.");
    }
    const std::uint64_t unit = isStock ? std::max(tree.nodeSize, blockSize) : clump;
    auto size = clump;
    for (auto needed = tree.nodes; needed * tree.nodeSize > size;) {
        size = ceilDivide(needed * tree.nodeSize, unit) * unit;
        needed = tree.nodes + mapNodesFor(size / tree.nodeSize, tree.nodeSize);
    }
    const auto blocks = size / blockSize;
    if (blocks > std::numeric_limits<std::uint32_t>::max() ||
        size / tree.nodeSize > std::numeric_limits<std::uint32_t>::max()) {
        throw DiskImageError("The content needs a larger " + std::string(tree.name) + " than any HFS+ volume has.");
    }
    // A growth unit above a quarter of the volume counts as a fault, unless the file has just this size.
    const auto recorded = clump > volumeBytes / 4 && size <= std::numeric_limits<std::uint32_t>::max() ? size : clump;
    return {{0, static_cast<std::uint32_t>(blocks)}, tree.nodeSize, static_cast<std::uint32_t>(recorded)};
}

/// The arithmetic of one size class for given content.
class Layouter
{
public:
    Layouter(const Needs& needs, const ClumpSizes& clumps, const SizeClass& sizeClass)
        : m_class(sizeClass),
          m_catalogNodeSize(sizeClass.from < GiB ? 4096 : 8192),
          m_trees{{"extents tree", 1, extentsNodeSize, clumps.extentsBlocks, sizeClass.extents},
                  {"attributes tree", shapeTree(needs.attributes, newAttributesNodeSize).nodes(), newAttributesNodeSize,
                   clumps.attributesBlocks, sizeClass.attributes},
                  {"catalog", shapeTree(needs.catalog, m_catalogNodeSize).nodes(), m_catalogNodeSize,
                   clumps.catalogBlocks, sizeClass.catalog}},
          m_dataBlocks(countForkBlocks(needs.content, sizeClass.blockSize, newAttributesNodeSize))
    {
    }

    /// Blocks that suffice if the trees have the sizes that they have in a volume of `volumeBytes`.
    [[nodiscard]] std::uint64_t neededBlocks(std::uint64_t volumeBytes) const
    {
        std::uint64_t rest = 2 + m_dataBlocks;
        for (const auto& tree : m_trees) {
            rest += sizeTree(tree, m_class.blockSize, volumeBytes).extent.count;
        }
        auto total = rest;
        while (rest + bitmapBlocks(total) > total) {
            total = rest + bitmapBlocks(total);
        }
        return total;
    }

    /// The places in a volume with at least the needed blocks.
    [[nodiscard]] Geometry place(std::uint64_t volumeBytes) const
    {
        Geometry geometry;
        geometry.blockSize = m_class.blockSize;
        geometry.totalBlocks = static_cast<std::uint32_t>(volumeBytes / m_class.blockSize);
        geometry.bitmap.extent = {1, static_cast<std::uint32_t>(bitmapBlocks(geometry.totalBlocks))};
        geometry.bitmap.clumpSize = geometry.bitmap.extent.count * m_class.blockSize;
        auto next = geometry.bitmap.extent.start + geometry.bitmap.extent.count;
        SpecialFile* const files[] = {&geometry.extents, &geometry.attributes, &geometry.catalog};
        for (std::size_t i = 0; i < std::size(files); ++i) {
            *files[i] = sizeTree(m_trees[i], m_class.blockSize, volumeBytes);
            files[i]->extent.start = next;
            next += files[i]->extent.count;
        }
        geometry.firstDataBlock = next;
        geometry.dataBlocks = static_cast<std::uint32_t>(m_dataBlocks);
        geometry.usedBlocks = next + geometry.dataBlocks + 1;
        return geometry;
    }

private:
    [[nodiscard]] std::uint64_t bitmapBlocks(std::uint64_t totalBlocks) const
    {
        return ceilDivide(ceilDivide(totalBlocks, 8), m_class.blockSize);
    }

    const SizeClass& m_class;
    std::uint32_t m_catalogNodeSize;
    TreeNeed m_trees[3];
    std::uint64_t m_dataBlocks;
};

} // namespace

std::uint64_t smallestVolume(const Needs& needs, const ClumpSizes& clumps)
{
    for (const auto& sizeClass : sizeClasses) {
        const bool isLast = &sizeClass == std::end(sizeClasses) - 1;
        const auto end = isLast ? maximumVolume : (&sizeClass + 1)->from;
        const Layouter layouter(needs, clumps, sizeClass);
        for (auto size = std::max(sizeClass.from, minimumVolume); size < end;) {
            const auto needed = layouter.neededBlocks(size);
            if (needed <= size / sizeClass.blockSize) {
                return size;
            }
            if (needed >= end / sizeClass.blockSize) {
                break;
            }
            size = needed * sizeClass.blockSize;
        }
    }
    throw DiskImageError("The content is larger than any HFS+ volume.");
}

Geometry layOut(const Needs& needs, const ClumpSizes& clumps, std::uint64_t volumeBytes)
{
    if (volumeBytes % sizeUnit != 0 || volumeBytes >= maximumVolume) {
        throw DiskImageError("A volume of " + std::to_string(volumeBytes) +
                             " bytes cannot be made: its size is not a multiple of " + std::to_string(sizeUnit) +
                             ", or too large.");
    }
    const auto* sizeClass = std::end(sizeClasses) - 1;
    while (volumeBytes < sizeClass->from) {
        --sizeClass;
    }
    const Layouter layouter(needs, clumps, *sizeClass);
    if (volumeBytes < minimumVolume || layouter.neededBlocks(volumeBytes) > volumeBytes / sizeClass->blockSize) {
        throw DiskImageError("The volume is too small for its content: it has " + std::to_string(volumeBytes) +
                             " bytes, and " + std::to_string(smallestVolume(needs, clumps)) + " are needed.");
    }
    return layouter.place(volumeBytes);
}

} // namespace velmora::diskimage::hfs
