#pragma once

#include "diskimage/hfs/catalog_records.h"
#include "diskimage/hfs/entry.h"
#include "diskimage/hfs/record_list.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::diskimage::hfs
{

/// Node size of the attributes trees that are written.
inline constexpr std::uint32_t newAttributesNodeSize = 8192;

/// One entry of a tree that is to be written, with what its records are made from.
struct ContentItem {
    const Entry* entry = nullptr;
    std::u16string name{};        ///< as stored
    std::uint32_t parent = 0;     ///< index of the folder; of the root itself 0
    std::uint32_t place = 0;      ///< index among the folder's Entry::children
    std::uint32_t firstChild = 0; ///< index; the children follow one another in the volume's order
    std::uint32_t childCount = 0;
    std::uint32_t depth = 0; ///< folders above
    std::vector<StoredAttribute> attributes{};
    Extent data{}; ///< of the data fork, or of a link's target
    Extent resource{};
};

/// A tree level by level: the root first, then its children in the volume's order, then theirs. Records of the catalog,
/// which are ordered by parent id, so come out sorted.
using Content = std::vector<ContentItem>;

/// Lists a tree, or a single file, which must outlive the result and lies `depth` folders deep; 0 is the root of a
/// volume. Throws DiskImageError, naming the entry, for what a volume cannot hold.
Content listContent(const Entry& top, NameOrder order = NameOrder::caseFolding, std::uint32_t depth = 0);

/// The id of the item with this index.
CatalogId idOfItem(std::size_t index);
/// "/folder/name" from the top of the content on, for messages.
std::string pathOfItem(const Content& content, std::size_t index);
/// Bytes of an item's data fork: the file's, or the link's target.
std::uint64_t dataSizeOf(const Entry& entry);
/// Bytes of an item's resource fork.
std::uint64_t resourceSizeOf(const Entry& entry);

/// Blocks that all forks take together, those of attributes too long for the nodes of their tree included.
std::uint64_t countForkBlocks(const Content& content, std::uint32_t blockSize, std::uint32_t attributesNodeSize);
/// Gives every fork one run of blocks, in order, from `firstBlock` on. The volume has that many blocks.
void placeForks(Content& content, std::uint32_t blockSize, std::uint32_t firstBlock);

/// All records of the catalog, in order; the root folder counts as made at `rootCreated` (Unix seconds). Before
/// placeForks they lack the places, but have their sizes.
RecordList encodeCatalog(const Content& content, std::int64_t rootCreated);
/// All records of the attributes tree, in order.
RecordList encodeAttributes(const Content& content);

} // namespace velmora::diskimage::hfs
