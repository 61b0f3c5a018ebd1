#include "diskimage/hfs/tree_file.h"

#include "diskimage/hfs/format.h"

#include <algorithm>

namespace velmora::diskimage::hfs
{
namespace
{

std::uint64_t blocksOf(const std::vector<Extent>& extents)
{
    std::uint64_t blocks = 0;
    for (const auto& extent : extents) {
        blocks += extent.count;
    }
    return blocks;
}

/// Adds extents, the first to the last one there if they touch.
void appendExtents(std::vector<Extent>& extents, const std::vector<Extent>& more)
{
    for (const auto& extent : more) {
        if (!extents.empty() && extents.back().start + extents.back().count == extent.start) {
            extents.back().count += extent.count;
        } else {
            extents.push_back(extent);
        }
    }
}

} // namespace

void growTreeFile(TreeFile& file, std::uint64_t nodes, std::uint32_t blockSize, BlockMap& blocks)
{
    const auto nodeSize = file.header.nodeSize;
    const std::uint64_t unit = std::max(nodeSize, blockSize);
    const auto now = blocksOf(file.extents) * blockSize / unit * unit;
    const auto rounded = [&](std::uint64_t step) {
        auto size = now;
        for (auto needed = nodes; needed * nodeSize > size;) {
            size = now + ceilDivide(needed * nodeSize - now, step) * step;
            needed = nodes + mapNodesFor(size / nodeSize, nodeSize);
        }
        return ceilDivide(size, blockSize) - blocksOf(file.extents);
    };
    if (now / nodeSize >= nodes + mapNodesFor(now / nodeSize, nodeSize)) {
        return;
    }
    const auto clump = std::max(unit, file.fork.clumpSize / unit * unit);
    const auto wanted = rounded(clump);
    appendExtents(file.extents, blocks.allocate(wanted <= blocks.available() ? wanted : rounded(unit)));
}

void writeTreeFile(Storage& volume, std::uint32_t blockSize, const TreeFile& file, const RecordList& records,
                   const TreeShape& shape)
{
    constexpr std::uint64_t pieceSize = 1 << 20;
    const auto nodeSize = file.header.nodeSize;
    const auto size = blocksOf(file.extents) * blockSize;
    std::uint64_t written = 0;
    writeTree(
        records, shape,
        {nodeSize, file.header.maxKeyLength, file.header.keyCompareType, file.header.attributes, file.header.clumpSize},
        static_cast<std::uint32_t>(size / nodeSize), [&](std::uint32_t number, ByteView node) {
            writeFork(volume, blockSize, file.extents, std::uint64_t{number} * nodeSize, node);
            written = std::uint64_t{number + 1} * nodeSize;
        });
    const Bytes zeros(std::min(pieceSize, size - written));
    while (written < size) {
        const auto piece = std::min<std::uint64_t>(zeros.size(), size - written);
        writeFork(volume, blockSize, file.extents, written, ByteView(zeros).first(piece));
        written += piece;
    }
}

} // namespace velmora::diskimage::hfs
