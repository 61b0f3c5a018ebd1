#pragma once

#include "diskimage/hfs/record_list.h"

#include <cstdint>
#include <functional>
#include <vector>

namespace velmora::diskimage::hfs
{

/// What the header node says of a tree beside its shape (TN1150, "B-Trees").
struct TreeFormat {
    std::uint32_t nodeSize = 4096;
    std::uint16_t maxKeyLength = 0;
    std::uint8_t keyCompareType = 0;
    std::uint32_t attributes = 0;
    std::uint32_t clumpSize = 0; ///< bytes
};

/// How sorted records fill nodes. A level is the list of its nodes, each given by the first leaf record below it; the
/// leaves come first, the root is the only node of the last level. No levels: an empty tree.
struct TreeShape {
    std::vector<std::vector<std::uint32_t>> levels{};

    /// Nodes in use, the header node among them, map nodes not.
    [[nodiscard]] std::uint64_t nodes() const;
};

/// Packs records, sorted by key, into as few nodes as they need. Throws DiskImageError when one exceeds a node.
TreeShape shapeTree(const RecordList& records, std::uint32_t nodeSize);

/// Map nodes that a tree of `totalNodes` nodes needs beside its header node.
std::uint64_t mapNodesFor(std::uint64_t totalNodes, std::uint32_t nodeSize);

/// Hands every node in use to `writeNode(number, bytes)`, in ascending order; all others are to be zeros. `totalNodes`
/// is the size of the tree's file in nodes and suffices for shape and map nodes.
void writeTree(const RecordList& records, const TreeShape& shape, const TreeFormat& format, std::uint32_t totalNodes,
               const std::function<void(std::uint32_t, ByteView)>& writeNode);

} // namespace velmora::diskimage::hfs
