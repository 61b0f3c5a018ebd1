#include "diskimage/hfs/tree_builder.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"

#include <algorithm>
#include <limits>

// The nodes of a tree are numbered: header node, leaves, each index level upward, root, map nodes. Every node is filled
// as far as its records go; whoever mounts the volume for writing splits nodes as needed.
namespace velmora::diskimage::hfs
{
namespace
{

constexpr std::size_t offsetSize = 2;
constexpr std::size_t childNumberSize = 4;

std::size_t evenSize(std::size_t size)
{
    return size + size % 2;
}

/// Splits `count` records into nodes; `sizeOf(i)` is what one takes, padding included. Calls `openNode(i)` for the
/// first of each node.
template <typename SizeOf, typename OpenNode>
void packNodes(std::size_t count, std::uint32_t nodeSize, SizeOf sizeOf, OpenNode openNode)
{
    const auto empty = nodeDescriptorSize + offsetSize; // the offset of the free space is always there
    std::size_t used = nodeSize;
    for (std::size_t i = 0; i < count; ++i) {
        const auto size = sizeOf(i) + offsetSize;
        if (size > nodeSize - empty) {
            throw DiskImageError("A record of " + std::to_string(size) + " bytes exceeds the tree's nodes of " +
                                 std::to_string(nodeSize) + " bytes.");
        }
        if (used + size > nodeSize) {
            openNode(i);
            used = empty;
        }
        used += size;
    }
}

/// One node while it is filled.
class NodeBuffer
{
public:
    NodeBuffer(std::uint32_t nodeSize, std::uint8_t kind, std::uint8_t height) : m_bytes(nodeSize)
    {
        m_bytes[8] = kind;
        m_bytes[9] = height;
        putOffset();
    }

    void addRecord(ByteView key, ByteView data)
    {
        const auto end = std::copy(key.begin(), key.end(), m_bytes.begin() + static_cast<std::ptrdiff_t>(m_end));
        std::copy(data.begin(), data.end(), end);
        m_end += evenSize(key.size() + data.size());
        ++m_count;
        putBE16(m_bytes.data() + 10, m_count);
        putOffset();
    }

    Bytes& finish(std::uint32_t next, std::uint32_t previous)
    {
        putBE32(m_bytes.data(), next);
        putBE32(m_bytes.data() + 4, previous);
        return m_bytes;
    }

private:
    void putOffset()
    {
        putBE16(m_bytes.data() + m_bytes.size() - offsetSize * (m_count + std::size_t{1}),
                static_cast<std::uint16_t>(m_end));
    }

    Bytes m_bytes;
    std::size_t m_end = nodeDescriptorSize;
    std::uint16_t m_count = 0;
};

/// Sets the first `count` bits of the node map in `area`, which stands for the nodes from `first` on.
void markUsed(MutableByteView area, std::uint64_t first, std::uint64_t count)
{
    for (std::uint64_t i = 0; i < area.size() * 8 && first + i < count; ++i) {
        area[i / 8] = static_cast<std::uint8_t>(area[i / 8] | 0x80 >> i % 8);
    }
}

Bytes headerNode(const TreeShape& shape, const TreeFormat& format, std::uint64_t records, std::uint32_t totalNodes,
                 std::uint32_t mapNodes)
{
    Bytes node(format.nodeSize);
    auto* const p = node.data();
    const auto used = static_cast<std::uint32_t>(shape.nodes());
    putBE32(p, mapNodes > 0 ? used : 0);
    p[8] = nodeKindHeader;
    putBE16(p + 10, 3);
    if (!shape.levels.empty()) {
        putBE16(p + 14, static_cast<std::uint16_t>(shape.levels.size()));
        putBE32(p + 16, used - 1);
        putBE32(p + 20, static_cast<std::uint32_t>(records));
        putBE32(p + 24, 1);
        putBE32(p + 28, static_cast<std::uint32_t>(shape.levels.front().size()));
    }
    putBE16(p + 32, static_cast<std::uint16_t>(format.nodeSize));
    putBE16(p + 34, format.maxKeyLength);
    putBE32(p + 36, totalNodes);
    putBE32(p + 40, totalNodes - used - mapNodes);
    putBE32(p + 46, format.clumpSize);
    p[51] = format.keyCompareType;
    putBE32(p + 52, format.attributes);
    constexpr std::uint16_t recordOffsets[] = {14, 120, headerMapOffset};
    for (std::size_t i = 0; i < std::size(recordOffsets); ++i) {
        putBE16(p + format.nodeSize - offsetSize * (i + 1), recordOffsets[i]);
    }
    const auto mapEnd = format.nodeSize - 4 * offsetSize;
    putBE16(p + mapEnd, static_cast<std::uint16_t>(mapEnd));
    markUsed(MutableByteView(node).subspan(headerMapOffset, mapEnd - headerMapOffset), 0,
             std::uint64_t{used} + mapNodes);
    return node;
}

} // namespace

std::uint64_t TreeShape::nodes() const
{
    std::uint64_t count = 1;
    for (const auto& level : levels) {
        count += level.size();
    }
    return count;
}

TreeShape shapeTree(const RecordList& records, std::uint32_t nodeSize)
{
    if (records.size() > std::numeric_limits<std::uint32_t>::max()) {
        throw DiskImageError("The volume would hold too many files.");
    }
    TreeShape shape;
    if (records.size() == 0) {
        return shape;
    }
    auto& leaves = shape.levels.emplace_back();
    packNodes(
        records.size(), nodeSize,
        [&](std::size_t i) { return evenSize(records.key(i).size() + records.data(i).size()); },
        [&](std::size_t i) { leaves.push_back(static_cast<std::uint32_t>(i)); });
    while (shape.levels.back().size() > 1) {
        const auto& below = shape.levels.back();
        std::vector<std::uint32_t> level;
        packNodes(
            below.size(), nodeSize,
            [&](std::size_t i) { return evenSize(records.key(below[i]).size() + childNumberSize); },
            [&](std::size_t i) { level.push_back(below[i]); });
        shape.levels.push_back(std::move(level));
        if (shape.levels.size() > maximumTreeDepth) {
            throw DiskImageError("The volume would need a B-tree of more than " + std::to_string(maximumTreeDepth) +
                                 " levels.");
        }
    }
    return shape;
}

std::uint64_t mapNodesFor(std::uint64_t totalNodes, std::uint32_t nodeSize)
{
    const std::uint64_t inHeader = (nodeSize - headerMapOffset - 4 * offsetSize) * 8;
    return totalNodes <= inHeader ? 0 : ceilDivide(totalNodes - inHeader, (nodeSize - mapNodeOverhead) * 8);
}

void writeTree(const RecordList& records, const TreeShape& shape, const TreeFormat& format, std::uint32_t totalNodes,
               const std::function<void(std::uint32_t, ByteView)>& writeNode)
{
    const auto mapNodes = static_cast<std::uint32_t>(mapNodesFor(totalNodes, format.nodeSize));
    writeNode(0, headerNode(shape, format, records.size(), totalNodes, mapNodes));

    std::uint32_t number = 1;
    std::uint32_t numberBelow = 0; // of the first node one level down
    for (std::size_t level = 0; level < shape.levels.size(); ++level) {
        const auto& nodes = shape.levels[level];
        const auto first = number;
        std::size_t child = 0; // next record of a leaf level, next node of the level below otherwise
        const auto children = level == 0 ? records.size() : shape.levels[level - 1].size();
        for (std::size_t i = 0; i < nodes.size(); ++i, ++number) {
            NodeBuffer node(format.nodeSize, level == 0 ? nodeKindLeaf : nodeKindIndex,
                            static_cast<std::uint8_t>(level + 1));
            const auto isOurs = [&](std::size_t record) { return i + 1 == nodes.size() || record < nodes[i + 1]; };
            for (; child < children; ++child) {
                const auto record = level == 0 ? child : shape.levels[level - 1][child];
                if (!isOurs(record)) {
                    break;
                }
                if (level == 0) {
                    node.addRecord(records.key(record), records.data(record));
                } else {
                    std::uint8_t childNumber[childNumberSize];
                    putBE32(childNumber, numberBelow + static_cast<std::uint32_t>(child));
                    node.addRecord(records.key(record), childNumber);
                }
            }
            writeNode(number, node.finish(i + 1 < nodes.size() ? number + 1 : 0, i > 0 ? number - 1 : 0));
        }
        numberBelow = first;
    }

    const auto used = std::uint64_t{number} + mapNodes;
    std::uint64_t mapped = (format.nodeSize - headerMapOffset - 4 * offsetSize) * 8;
    for (std::uint32_t i = 0; i < mapNodes; ++i, ++number) {
        Bytes area(format.nodeSize - mapNodeOverhead);
        markUsed(area, mapped, used);
        mapped += area.size() * 8;
        NodeBuffer node(format.nodeSize, nodeKindMap, 0);
        node.addRecord(area, {});
        writeNode(number, node.finish(i + 1 < mapNodes ? number + 1 : 0, i > 0 ? number - 1 : 0));
    }
}

} // namespace velmora::diskimage::hfs
