#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/check_report.h"
#include "diskimage/hfs/names.h"
#include "diskimage/hfs/record_list.h"
#include "diskimage/hfs/tree_reader.h"

#include <optional>
#include <string>

namespace velmora::diskimage::hfs
{

enum class TreeKind { extents, catalog, attributes };

/// What a tree must agree with beside itself.
struct TreeExpectation {
    TreeKind kind = TreeKind::catalog;
    NameOrder order = NameOrder::caseFolding;
    std::uint8_t keyCompareType = 0;
    std::uint32_t clumpSize = 0; ///< of the volume header
    bool unusedNodesAreZero = false;
};

/// "catalog", "extents tree", "attributes tree".
std::string nameOfTree(TreeKind kind);

/// Checks the structure of a tree from its root downward: nodes, links, keys, node map. Returns the leaf records when
/// all of them could be read.
std::optional<RecordList> checkTree(const Source& file, const TreeExpectation& expectation, CheckReport& report);

} // namespace velmora::diskimage::hfs
