#pragma once

#include "diskimage/finder/ds_store.h"

#include <cstdint>
#include <vector>

/// The B-tree of a .DS_Store file. All numbers are big-endian. A node holds the block number of its rightmost child (0
/// in a leaf), its number of records, and the records, each behind the block number of a child in internal nodes.
namespace velmora::diskimage::finder
{

inline constexpr std::size_t dsNodeSize = 0x1000;
inline constexpr std::uint32_t dsRootBlock = 2;

/// A tree as written: node i lies in block dsRootBlock + i, the root first.
struct DsTree {
    std::vector<Bytes> nodes{};
    std::uint32_t levels = 0; ///< of internal nodes
    std::uint32_t recordCount = 0;
};

/// Sorts the records and packs them into nodes. Throws DiskImageError for two of one name and code and for one that
/// does not fit a node.
DsTree buildDsTree(std::vector<DsRecord> records);

/// Reads the record at `offset` of a node and moves `offset` behind it. Throws DiskImageError.
DsRecord readDsRecord(ByteView node, std::size_t& offset);

} // namespace velmora::diskimage::finder
