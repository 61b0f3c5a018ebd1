#pragma once

#include "diskimage/hfs/catalog_records.h"
#include "diskimage/hfs/names.h"
#include "diskimage/hfs/record_list.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

/// The catalog and the attributes tree as maps, for volumes that are changed.
namespace velmora::diskimage::hfs
{

/// The order of a catalog.
struct CatalogOrder {
    NameOrder names = NameOrder::caseFolding;
    bool operator()(const CatalogKey& a, const CatalogKey& b) const
    {
        return a.parentId != b.parentId ? a.parentId < b.parentId : compareNames(a.name, b.name, names) < 0;
    }
};

/// The order of an attributes tree.
struct AttributeOrder {
    bool operator()(const AttributeKey& a, const AttributeKey& b) const
    {
        return a.fileId != b.fileId ? a.fileId < b.fileId
               : a.name != b.name   ? a.name < b.name
                                    : a.startBlock < b.startBlock;
    }
};

using AttributeMap = std::map<AttributeKey, Bytes, AttributeOrder>;
AttributeMap readAttributeMap(const RecordList& records);
RecordList encodeAttributeMap(const AttributeMap& map);

/// A catalog whose records can be found, added and removed. Parents are kept consistent: number of children, of
/// folders where the volume counts them, thread records.
class CatalogMap
{
public:
    using Map = std::map<CatalogKey, Bytes, CatalogOrder>;
    using Item = Map::iterator; ///< a folder or file record with its key

    CatalogMap(const RecordList& records, NameOrder order, bool countsFolders);

    /// The root folder.
    Item root();
    /// The item of this name in a folder, or nothing.
    std::optional<Item> find(CatalogId folder, std::string_view posixName);
    /// The item at a path ("/" is the root), or nothing. Names that a volume cannot hold throw DiskImageError.
    std::optional<Item> findPath(std::string_view path);
    /// The folder with this id. Throws DiskImageError when the catalog contradicts itself.
    Item folder(CatalogId id);
    /// All items in a folder, in order.
    std::vector<Item> children(CatalogId folder);

    /// Adds an item that is not there yet, with its thread, to a folder.
    void add(CatalogId folder, std::u16string_view name, Bytes record);
    /// Removes an item with its thread. Of a folder that is empty.
    void remove(Item item);

    [[nodiscard]] RecordList encode() const;

private:
    void changeValence(CatalogId id, bool isFolder, std::uint32_t difference);

    Map m_map;
    bool m_countsFolders;
};

} // namespace velmora::diskimage::hfs
