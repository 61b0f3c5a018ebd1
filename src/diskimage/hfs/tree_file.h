#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/block_map.h"
#include "diskimage/hfs/fork.h"
#include "diskimage/hfs/tree_builder.h"
#include "diskimage/hfs/tree_reader.h"

#include <string>
#include <vector>

namespace velmora::diskimage::hfs
{

/// The file that a B-tree of an existing volume lies in.
struct TreeFile {
    ForkData fork{};
    TreeHeader header{}; ///< of which new nodes take their size, longest key, key order and growth unit
    std::vector<Extent> extents{};
};

/// Makes the file large enough for `nodes` nodes beside the map nodes; by whole growth units while there is room for
/// them. Fork data and header are not yet adapted to the new extents. Throws DiskImageError when there is no room.
void growTreeFile(TreeFile& file, std::uint64_t nodes, std::uint32_t blockSize, BlockMap& blocks);

/// Writes the whole file: the nodes of the tree, and zeros for all others.
void writeTreeFile(Storage& volume, std::uint32_t blockSize, const TreeFile& file, const RecordList& records,
                   const TreeShape& shape);

} // namespace velmora::diskimage::hfs
