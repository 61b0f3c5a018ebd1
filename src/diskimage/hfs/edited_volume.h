#pragma once

#include "diskimage/hfs/block_map.h"
#include "diskimage/hfs/content.h"
#include "diskimage/hfs/entry.h"
#include "diskimage/hfs/tree_file.h"
#include "diskimage/hfs/tree_maps.h"
#include "diskimage/hfs/volume_records.h"

#include <memory>
#include <set>

namespace velmora::diskimage::hfs
{

/// The state of a volume that is being changed: trees as maps, the bitmap, counts. Contents are written at once, into
/// blocks that were free when the volume was opened; everything else by commit(). So a volume whose editor dies before
/// is what it was.
class EditedVolume
{
public:
    /// Throws DiskImageError when the volume must not be changed. Keeps a reference.
    explicit EditedVolume(Storage& storage);

    CatalogMap& catalog() { return m_catalog; }
    [[nodiscard]] bool isJournaled() const { return m_records.isJournaled(); }
    [[nodiscard]] NameOrder nameOrder() const { return m_records.order; }
    /// The content as it is by now.
    Entry entries();

    /// Throws DiskImageError when there is no room for all forks of the content.
    void requireRoom(const Content& content) const;
    /// Writes an item's forks and attributes and returns its record. Throws DiskImageError; what was stored by then
    /// stays allocated.
    Bytes storeItem(const Content& content, std::size_t index, CatalogId id);
    /// Gives back the blocks of a file and forgets its attributes.
    void releaseItem(const CatalogItem& item);

    CatalogId newId();
    /// Changes the numbers of files and folders.
    void countItem(bool isFolder, std::uint32_t difference);
    /// The folder's modification date becomes that of the next commit.
    void touchFolder(CatalogId id) { m_touched.insert(id); }
    void forgetFolder(CatalogId id) { m_touched.erase(id); }

    /// Writes everything; `date` as in the volume header. Throws DiskImageError, before anything is written when there
    /// is no room for the trees.
    void commit(std::uint32_t date);

private:
    void forgetRecords();
    void checkState() const;
    [[nodiscard]] std::vector<Extent> reservedBlocks() const;
    void protectBlocks();
    ForkData storeFork(const Source& source, std::uint64_t size, const std::string& path, CatalogId id, ForkType type);
    void storeAttributes(const ContentItem& item, const std::string& path, CatalogId id);
    void eraseAttributes(CatalogId id);
    void prepareAttributesTree();
    void settleTree(TreeFile& file, ForkData& fork, CatalogId id);
    void writeHeader(Storage& volume, std::uint64_t offset) const;

    std::unique_ptr<Storage> m_volume;
    std::shared_ptr<const Source> m_view; ///< the same, for reading
    VolumeRecords m_records;              ///< catalog and attributes are only there while they are being read
    CatalogMap m_catalog;
    AttributeMap m_attributes;
    std::vector<Extent> m_bitmapExtents;
    BlockMap m_blocks;
    TreeFile m_extentsTree;
    TreeFile m_catalogTree;
    TreeFile m_attributesTree;
    std::set<CatalogId> m_touched{};
};

} // namespace velmora::diskimage::hfs
