#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/record_list.h"

#include <cstdint>
#include <string>

namespace velmora::diskimage::hfs
{

/// The header record of a B-tree (TN1150, "Header Record").
struct TreeHeader {
    std::uint16_t depth = 0;
    std::uint32_t rootNode = 0;
    std::uint32_t leafRecords = 0;
    std::uint32_t firstLeaf = 0;
    std::uint32_t lastLeaf = 0;
    std::uint32_t nodeSize = 0;
    std::uint16_t maxKeyLength = 0;
    std::uint32_t totalNodes = 0;
    std::uint32_t freeNodes = 0;
    std::uint32_t clumpSize = 0;
    std::uint8_t type = 0;
    std::uint8_t keyCompareType = 0;
    std::uint32_t attributes = 0;
};

/// The header of the tree in a file; node size and number of nodes have been checked against the file. `name` is for
/// messages. Throws DiskImageError.
TreeHeader readTreeHeader(const Source& tree, const std::string& name);

/// All records of the leaves in the order of their chain; every place and length is checked. Reads no more than the
/// chain, each node once, whatever the links say. Throws DiskImageError.
RecordList readLeaves(const Source& tree, const TreeHeader& header, const std::string& name);

} // namespace velmora::diskimage::hfs
