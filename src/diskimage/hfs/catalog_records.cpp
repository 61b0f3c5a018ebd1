#include "diskimage/hfs/catalog_records.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/names.h"

#include <algorithm>
#include <charconv>

namespace velmora::diskimage::hfs
{
namespace
{

constexpr std::uint32_t unknownOwner = 99; ///< whoever looks at the volume owns what has this owner
constexpr std::uint16_t permissionBits = 07777;
constexpr std::uint8_t ownerFlagCompressed = 0x20;
constexpr std::size_t minimumKeyLength = 6;

void appendName(Bytes& out, std::u16string_view name)
{
    appendBE16(out, static_cast<std::uint16_t>(name.size()));
    for (const auto unit : name) {
        appendBE16(out, unit);
    }
}

std::u16string readUnits(const std::uint8_t* p, std::size_t count)
{
    std::u16string units(count, u'\0');
    for (auto& unit : units) {
        unit = static_cast<char16_t>(getBE16(p));
        p += 2;
    }
    return units;
}

std::uint16_t modeOf(const Entry& entry, CatalogId id)
{
    switch (entry.kind) {
    case EntryKind::folder:
        // Nobody could look into a volume whose root has no permissions.
        return static_cast<std::uint16_t>(
            modeFolder | (id == rootFolderId && entry.mode == 0 ? 0755U : entry.mode & permissionBits));
    case EntryKind::symlink:
        return modeSymlink | 0755;
    case EntryKind::file:
        break;
    }
    return static_cast<std::uint16_t>(modeFile | (entry.mode & permissionBits));
}

/// What files and folders have in common: bytes 0 to 79.
void putCommon(std::uint8_t* p, const Entry& entry, const ItemPlacement& placement)
{
    const bool isFolder = entry.kind == EntryKind::folder;
    putBE16(p, isFolder ? recordFolder : recordFile);
    putBE16(p + recordFlagsOffset, static_cast<std::uint16_t>((isFolder ? 0 : itemThreadExists) |
                                                              (placement.hasAttributes ? itemHasAttributes : 0)));
    putBE32(p + recordIdOffset, placement.id);
    putBE32(p + recordCreateDateOffset, dateFromUnix(entry.created));
    for (const std::size_t offset : {recordModifyDateOffset, recordAttributeDateOffset, std::size_t{24}}) {
        putBE32(p + offset, dateFromUnix(entry.modified));
    }
    putBE32(p + 32, unknownOwner);
    putBE32(p + 36, unknownOwner);
    putBE16(p + 42, modeOf(entry, placement.id));
    putBE32(p + 44, isFolder ? 0 : 1);
    std::copy(entry.finderInfo.begin(), entry.finderInfo.end(), p + recordFinderInfoOffset);
}

} // namespace

Bytes encodeCatalogKey(CatalogId parentId, std::u16string_view name)
{
    Bytes key;
    key.reserve(8 + 2 * name.size());
    appendBE16(key, static_cast<std::uint16_t>(minimumKeyLength + 2 * name.size()));
    appendBE32(key, parentId);
    appendName(key, name);
    return key;
}

CatalogKey readCatalogKey(ByteView key)
{
    if (key.size() < 2 + minimumKeyLength || key.size() < 8 + 2 * std::size_t{getBE16(key.data() + 6)}) {
        throw DiskImageError("A key of the catalog is shorter than its name.");
    }
    return {getBE32(key.data() + 2), readUnits(key.data() + 8, getBE16(key.data() + 6))};
}

Bytes encodeItem(const Entry& entry, const ItemPlacement& placement)
{
    if (entry.kind == EntryKind::folder) {
        Bytes record(folderRecordSize);
        putCommon(record.data(), entry, placement);
        putBE32(record.data() + folderValenceOffset, placement.valence);
        if (placement.id == rootFolderId) {
            // A locked volume name counts as a fault.
            record[recordFinderInfoOffset + finderFlagsOffset] &=
                static_cast<std::uint8_t>(~(finderFlagNameLocked >> 8));
        }
        return record;
    }
    Bytes record(fileRecordSize);
    putCommon(record.data(), entry, placement);
    if (entry.kind == EntryKind::symlink) {
        putBE32(record.data() + recordFinderInfoOffset, typeSymlink);
        putBE32(record.data() + recordFinderInfoOffset + 4, creatorSymlink);
    }
    putForkData(record.data() + 88, placement.data);
    putForkData(record.data() + 168, placement.resource);
    return record;
}

Bytes encodeThread(bool isFolder, CatalogId parentId, std::u16string_view name)
{
    Bytes record;
    record.reserve(threadRecordSize + 2 * name.size());
    appendBE16(record, isFolder ? recordFolderThread : recordFileThread);
    appendBE16(record, 0);
    appendBE32(record, parentId);
    appendName(record, name);
    return record;
}

bool CatalogItem::isSymlink() const
{
    return !isFolder && ((mode & modeTypeMask) == modeSymlink || (getBE32(finderInfo.data()) == typeSymlink &&
                                                                  getBE32(finderInfo.data() + 4) == creatorSymlink));
}

bool CatalogItem::isHardLink() const
{
    return !isFolder && getBE32(finderInfo.data()) == typeHardLink && getBE32(finderInfo.data() + 4) == creatorHardLink;
}

bool CatalogItem::isFolderLink() const
{
    return !isFolder && getBE32(finderInfo.data()) == typeFolderLink &&
           getBE32(finderInfo.data() + 4) == creatorFolderLink;
}

bool CatalogItem::isCompressed() const
{
    return !isFolder && (ownerFlags & ownerFlagCompressed) != 0;
}

RecordKind kindOfRecord(ByteView record)
{
    const auto type = record.size() < 2 ? 0 : getBE16(record.data());
    if (type == recordFolder && record.size() >= folderRecordSize) {
        return RecordKind::folder;
    }
    if (type == recordFile && record.size() >= fileRecordSize) {
        return RecordKind::file;
    }
    if ((type == recordFolderThread || type == recordFileThread) && record.size() >= threadRecordSize) {
        return RecordKind::thread;
    }
    throw DiskImageError("The catalog has a record of type " + std::to_string(type) + " with " +
                         std::to_string(record.size()) + " bytes.");
}

CatalogItem readItem(ByteView record)
{
    CatalogItem item;
    const auto* const p = record.data();
    item.isFolder = kindOfRecord(record) == RecordKind::folder;
    item.flags = getBE16(p + recordFlagsOffset);
    item.id = getBE32(p + recordIdOffset);
    item.createDate = getBE32(p + recordCreateDateOffset);
    item.modifyDate = getBE32(p + recordModifyDateOffset);
    item.ownerFlags = p[41];
    item.mode = getBE16(p + 42);
    item.special = getBE32(p + 44);
    std::copy_n(p + recordFinderInfoOffset, item.finderInfo.size(), item.finderInfo.begin());
    if (!item.isFolder) {
        item.data = readForkData(p + 88);
        item.resource = readForkData(p + 168);
    }
    return item;
}

std::u16string_view hardLinkFolderName()
{
    return {u"\0\0\0\0HFS+ Private Data", 21};
}

std::optional<std::uint32_t> hardLinkNumber(std::u16string_view name)
{
    constexpr std::string_view prefix = "iNode";
    const std::string text = posixName(name);
    std::uint32_t number = 0;
    if (text.compare(0, prefix.size(), prefix) != 0 ||
        std::from_chars(text.data() + prefix.size(), text.data() + text.size(), number).ec != std::errc{} ||
        text != std::string(prefix) + std::to_string(number)) { // no two names stand for one number
        return std::nullopt;
    }
    return number;
}

bool isPrivateName(std::u16string_view name, bool volumeIsJournaled)
{
    return name == hardLinkFolderName() || name == u".HFS+ Private Directory Data\r" ||
           (volumeIsJournaled && (name == u".journal" || name == u".journal_info_block"));
}

Bytes encodeAttributeKey(const AttributeKey& key)
{
    Bytes bytes;
    appendBE16(bytes, static_cast<std::uint16_t>(12 + 2 * key.name.size()));
    appendBE16(bytes, 0);
    appendBE32(bytes, key.fileId);
    appendBE32(bytes, key.startBlock);
    appendName(bytes, key.name);
    return bytes;
}

AttributeKey readAttributeKey(ByteView key)
{
    if (key.size() < 14 || key.size() < 14 + 2 * std::size_t{getBE16(key.data() + 12)}) {
        throw DiskImageError("A key of the attributes tree is shorter than its name.");
    }
    return {getBE32(key.data() + 4), readUnits(key.data() + 14, getBE16(key.data() + 12)), getBE32(key.data() + 8)};
}

Bytes encodeInlineAttribute(ByteView value)
{
    Bytes record;
    appendBE32(record, attributeInline);
    appendBE64(record, 0);
    appendBE32(record, static_cast<std::uint32_t>(value.size()));
    append(record, value);
    return record;
}

Bytes encodeAttributeFork(const ForkData& fork)
{
    Bytes record(8 + forkDataSize);
    putBE32(record.data(), attributeFork);
    putForkData(record.data() + 8, fork);
    return record;
}

Bytes encodeAttributeExtents(const ExtentRecord& extents)
{
    Bytes record(8 + extentRecordSize);
    putBE32(record.data(), attributeExtents);
    putExtentRecord(record.data() + 8, extents);
    return record;
}

std::vector<Extent> attributeBlocks(ByteView record, std::uint32_t totalBlocks)
{
    std::vector<Extent> blocks;
    const auto type = record.size() < 4 ? 0 : getBE32(record.data());
    const std::size_t offset = type == attributeFork ? 24 : 8; // in fork data, size and counts come first
    if ((type != attributeFork && type != attributeExtents) || record.size() < offset + extentRecordSize) {
        return blocks;
    }
    for (const auto& extent : readExtentRecord(record.data() + offset)) {
        if (extent.start > totalBlocks || extent.count > totalBlocks - extent.start) {
            throw DiskImageError("The places of an extended attribute lie outside the volume.");
        }
        blocks.push_back(extent);
    }
    return blocks;
}

std::uint64_t ownForkSize(const StoredAttribute& attribute, std::uint32_t nodeSize)
{
    // As macOS counts: half of what a node holds beside three offsets, less the longest key and the record's head.
    constexpr std::size_t longestKeyAndHead = 284;
    const auto half = (nodeSize - nodeDescriptorSize - 6) / 2;
    const auto longestInside = half - std::min(half, longestKeyAndHead);
    return attribute.value->size() <= longestInside ? 0 : attribute.value->size();
}

std::vector<StoredAttribute> storedAttributes(const Entry& entry)
{
    std::vector<StoredAttribute> stored;
    for (const auto& [name, value] : entry.attributes) {
        if (name == "com.apple.system.Security") {
            continue;
        }
        const auto fail = [&, &shown = name](const std::string& why) {
            return DiskImageError("The extended attribute \"" + shown + "\" of \"" + entry.name + "\" " + why + ".");
        };
        if (name == "com.apple.FinderInfo" || name == "com.apple.ResourceFork") {
            throw fail("is not stored as an attribute");
        }
        auto units = utf16FromUtf8(name);
        if (units.empty() || units.size() > maximumAttributeNameLength || units.find(u'\0') != units.npos) {
            throw fail("has a name that a volume cannot hold (1 to " + std::to_string(maximumAttributeNameLength) +
                       " units)");
        }
        stored.push_back({std::move(units), &value, {}});
    }
    // UTF-8 orders supplementary characters otherwise than UTF-16 does.
    std::sort(stored.begin(), stored.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
    return stored;
}

} // namespace velmora::diskimage::hfs
