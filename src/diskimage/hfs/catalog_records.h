#pragma once

#include "diskimage/hfs/entry.h"
#include "diskimage/hfs/fork.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Keys and records of the catalog and attributes trees (TN1150, "Catalog File" and "Attributes File").
namespace velmora::diskimage::hfs
{

// ---- catalog

struct CatalogKey {
    CatalogId parentId = 0; ///< of a thread record the item's own id
    std::u16string name{};  ///< of a thread record empty
};

/// Bytes of a key with a name of that many UTF-16 units, its length field included.
constexpr std::size_t catalogKeySize(std::size_t nameLength)
{
    return 8 + 2 * nameLength;
}
Bytes encodeCatalogKey(CatalogId parentId, std::u16string_view name);
/// Throws DiskImageError when lengths contradict each other.
CatalogKey readCatalogKey(ByteView key);

/// What a new folder or file record needs beside its entry.
struct ItemPlacement {
    CatalogId id = 0;
    std::uint32_t valence = 0; ///< of a folder
    bool hasAttributes = false;
    ForkData data{};
    ForkData resource{};
};

/// The record of a folder (88 bytes), file or link (248 bytes).
Bytes encodeItem(const Entry& entry, const ItemPlacement& placement);
/// The thread record (10 bytes and the name) that leads from an item's id to its place.
Bytes encodeThread(bool isFolder, CatalogId parentId, std::u16string_view name);

/// A folder or file record, decoded.
struct CatalogItem {
    bool isFolder = false;
    std::uint16_t flags = 0;
    CatalogId id = 0;
    std::uint32_t createDate = 0;
    std::uint32_t modifyDate = 0;
    std::uint8_t ownerFlags = 0;
    std::uint16_t mode = 0;
    std::uint32_t special = 0;
    std::array<std::uint8_t, 32> finderInfo{};
    ForkData data{};
    ForkData resource{};

    [[nodiscard]] bool isSymlink() const;
    [[nodiscard]] bool isHardLink() const;
    [[nodiscard]] bool isFolderLink() const;
    [[nodiscard]] bool isCompressed() const;
};

enum class RecordKind { folder, file, thread };

/// The kind of a catalog record whose length suits it. Throws DiskImageError.
RecordKind kindOfRecord(ByteView record);
/// Decodes a folder or file record.
CatalogItem readItem(ByteView record);

/// Whether the name in the root folder is one of the file system's own: a store of hard links, the journal.
bool isPrivateName(std::u16string_view name, bool volumeIsJournaled);
/// The folder in the root that holds what hard links refer to.
std::u16string_view hardLinkFolderName();
/// The number by which hard links refer to a file of this name in that folder ("iNode30"), or nothing.
std::optional<std::uint32_t> hardLinkNumber(std::u16string_view name);

// Places in folder and file records that are changed without decoding.
inline constexpr std::size_t recordFlagsOffset = 2;
inline constexpr std::size_t folderValenceOffset = 4;
inline constexpr std::size_t recordIdOffset = 8;
inline constexpr std::size_t recordCreateDateOffset = 12;
inline constexpr std::size_t recordModifyDateOffset = 16;
inline constexpr std::size_t recordAttributeDateOffset = 20;
inline constexpr std::size_t recordFinderInfoOffset = 48;
inline constexpr std::size_t finderFlagsOffset = 8; ///< in the Finder information
inline constexpr std::size_t folderCountOffset = 84;

// ---- attributes

struct AttributeKey {
    CatalogId fileId = 0;
    std::u16string name{};
    std::uint32_t startBlock = 0;
};

Bytes encodeAttributeKey(const AttributeKey& key);
/// Throws DiskImageError when lengths contradict each other.
AttributeKey readAttributeKey(ByteView key);

Bytes encodeInlineAttribute(ByteView value);
Bytes encodeAttributeFork(const ForkData& fork);
Bytes encodeAttributeExtents(const ExtentRecord& extents);
/// The blocks that a record of either kind names, those of an inline one being none. Throws DiskImageError when they
/// lie outside a volume of `totalBlocks`.
std::vector<Extent> attributeBlocks(ByteView record, std::uint32_t totalBlocks);

/// An attribute on its way to a volume.
struct StoredAttribute {
    std::u16string name{};
    const Bytes* value = nullptr; ///< in the entry
    Extent fork{};                ///< when it is too long for the tree
};

/// Bytes that an attribute takes in blocks of its own; 0 when it is kept in a tree with nodes of this size.
std::uint64_t ownForkSize(const StoredAttribute& attribute, std::uint32_t nodeSize);

/// An entry's attributes in the order of the tree. Access-control lists are left out: their identities mean nothing on
/// another machine. Throws DiskImageError for names that the format cannot hold.
std::vector<StoredAttribute> storedAttributes(const Entry& entry);

} // namespace velmora::diskimage::hfs
