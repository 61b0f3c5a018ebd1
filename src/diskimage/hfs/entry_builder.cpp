#include "diskimage/base/error.h"
#include "diskimage/base/text.h"
#include "diskimage/hfs/catalog_records.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/volume_records.h"

#include <optional>
#include <unordered_map>
#include <unordered_set>

namespace velmora::diskimage::hfs
{
namespace
{

/// More than any real volume needs, and little enough for memory: forks of attributes may overlap in a hostile image.
constexpr std::uint64_t attributeBytesLimit = 256 << 20;
/// The same for attributes and extents in all entries: hard links repeat what they refer to, and a small volume can
/// have many links to one file.
constexpr std::uint64_t unfoldedBytesLimit = 512 << 20;
constexpr std::uint64_t longestLinkRead = 4096;

using Attributes = std::map<std::string, Bytes>;

/// Reads the values of all attributes.
class AttributeReader
{
public:
    AttributeReader(const VolumeRecords& records, const std::shared_ptr<const Source>& volume)
        : m_records(records), m_volume(volume)
    {
    }

    std::unordered_map<CatalogId, Attributes> readAll()
    {
        std::unordered_map<CatalogId, Attributes> all;
        const auto& list = m_records.attributes;
        for (std::size_t i = 0; i < list.size();) {
            const auto key = readAttributeKey(list.key(i));
            const auto name = utf8FromUtf16(key.name);
            const auto data = list.data(i);
            const auto type = data.size() < 8 ? 0 : getBE32(data.data());
            ++i;
            Bytes value;
            if (type == attributeInline) {
                value = inlineValue(data, name);
            } else if (type == attributeFork && data.size() >= 8 + forkDataSize) {
                value = forkValue(readForkData(data.data() + 8), key, name, i);
            } else {
                throw DiskImageError("The record of the extended attribute \"" + name + "\" is damaged.");
            }
            if (name != "com.apple.system.Security") {
                all[key.fileId][name] = std::move(value);
            }
        }
        return all;
    }

private:
    static Bytes inlineValue(ByteView data, const std::string& name)
    {
        constexpr std::size_t head = 16;
        if (data.size() < head || getBE32(data.data() + 12) > data.size() - head) {
            throw DiskImageError("The value of the extended attribute \"" + name + "\" exceeds its record.");
        }
        const auto value = data.subspan(head, getBE32(data.data() + 12));
        return {value.begin(), value.end()};
    }

    /// `next` is the record behind that of the fork; those that continue it are passed over.
    Bytes forkValue(const ForkData& fork, const AttributeKey& key, const std::string& name, std::size_t& next)
    {
        OverflowExtents more;
        for (; next < m_records.attributes.size(); ++next) {
            const auto nextKey = readAttributeKey(m_records.attributes.key(next));
            const auto data = m_records.attributes.data(next);
            if (nextKey.fileId != key.fileId || nextKey.name != key.name || data.size() < 8 + extentRecordSize ||
                getBE32(data.data()) != attributeExtents) {
                break;
            }
            more[{key.fileId, ForkType::data, nextKey.startBlock}] = readExtentRecord(data.data() + 8);
        }
        const auto extents = resolveFork(fork, key.fileId, ForkType::data, more, m_records.header,
                                         "the extended attribute \"" + name + "\"");
        if (fork.logicalSize > attributeBytesLimit - m_total) {
            throw DiskImageError("The extended attributes take more memory than they may.");
        }
        m_total += fork.logicalSize;
        return openFork(m_volume, m_records.header.blockSize, extents, fork.logicalSize)
            ->read(0, static_cast<std::size_t>(fork.logicalSize));
    }

    const VolumeRecords& m_records;
    const std::shared_ptr<const Source>& m_volume;
    std::uint64_t m_total = 0;
};

/// The kinds that a folder tree cannot carry: pipes, devices, sockets.
bool isSpecial(const CatalogItem& item)
{
    const auto type = item.mode & modeTypeMask;
    return type != 0 && type != modeFolder && type != modeFile && type != modeSymlink;
}

std::uint32_t permissionsOf(const CatalogItem& item)
{
    // Old systems leave all of it zero.
    return item.mode == 0 ? (item.isFolder ? 0755U : 0644U) : item.mode & 07777U;
}

class EntryBuilder
{
public:
    EntryBuilder(const VolumeRecords& records, const std::shared_ptr<const Source>& volume)
        : m_records(records), m_volume(volume), m_attributes(AttributeReader(records, volume).readAll())
    {
        for (std::size_t i = 0; i < records.catalog.size(); ++i) {
            if (kindOfRecord(records.catalog.data(i)) != RecordKind::thread) {
                m_children[getBE32(records.catalog.key(i).data() + 2)].push_back(i);
            }
        }
    }

    Entry build()
    {
        const auto roots = m_children.find(rootParentId);
        if (roots == m_children.end() || roots->second.size() != 1) {
            throw DiskImageError("The catalog has no root folder.");
        }
        const auto record = roots->second.front();
        const auto item = readItem(m_records.catalog.data(record));
        if (!item.isFolder || item.id != rootFolderId) {
            throw DiskImageError("The catalog's root is not a folder.");
        }
        findLinkTargets();
        Entry root;
        fill(root, item, nameOf(record), 0);
        return root;
    }

private:
    [[nodiscard]] std::u16string nameOf(std::size_t record) const
    {
        return readCatalogKey(m_records.catalog.key(record)).name;
    }

    /// Notes the files that hard links refer to; they lie in a folder of their own as "iNode" and a number.
    void findLinkTargets()
    {
        const auto inRoot = m_children.find(rootFolderId);
        if (inRoot == m_children.end()) {
            return;
        }
        for (const auto record : inRoot->second) {
            const auto folder = readItem(m_records.catalog.data(record));
            const auto stored = m_children.find(folder.id);
            if (!folder.isFolder || nameOf(record) != hardLinkFolderName() || stored == m_children.end()) {
                continue;
            }
            for (const auto target : stored->second) {
                if (const auto number = hardLinkNumber(nameOf(target))) {
                    m_linkTargets[*number] = target;
                }
            }
        }
    }

    void fill(Entry& entry, const CatalogItem& item, const std::u16string& name, std::size_t depth)
    {
        entry.name = posixName(name);
        if (name.empty() || entry.name == "." || entry.name == "..") {
            throw DiskImageError("The catalog has an entry named \"" + entry.name + "\".");
        }
        entry.id = item.id;
        entry.mode = permissionsOf(item);
        entry.created = unixFromDate(item.createDate);
        entry.modified = unixFromDate(item.modifyDate);
        entry.finderInfo = item.finderInfo;
        if (const auto found = m_attributes.find(item.id); found != m_attributes.end()) {
            for (const auto& [key, value] : found->second) {
                spend(key.size() + value.size());
            }
            entry.attributes = found->second;
        }
        if (item.isFolder) {
            entry.kind = EntryKind::folder;
            fillChildren(entry, item.id, depth);
        } else if (item.isHardLink()) {
            fillLinked(entry, item);
        } else {
            fillForks(entry, item);
        }
    }

    void fillChildren(Entry& folder, CatalogId id, std::size_t depth)
    {
        if (!m_foldersSeen.insert(id).second) {
            throw DiskImageError("The catalog has two folders with the number " + std::to_string(id) + ".");
        }
        if (depth > maximumDepth) {
            throw DiskImageError("The folders on the volume lie more than " + std::to_string(maximumDepth) + " deep.");
        }
        const auto found = m_children.find(id);
        if (found == m_children.end()) {
            return;
        }
        folder.children.reserve(found->second.size());
        for (const auto record : found->second) {
            const auto item = readItem(m_records.catalog.data(record));
            const auto name = nameOf(record);
            const bool isHidden = (id == rootFolderId && isPrivateName(name, m_records.isJournaled())) ||
                                  isSpecial(item) || item.isFolderLink();
            if (!isHidden) {
                fill(folder.children.emplace_back(), item, name, depth + 1);
            }
        }
    }

    /// A hard link shows what it refers to, under its own name and number.
    void fillLinked(Entry& entry, const CatalogItem& link)
    {
        const auto found = m_linkTargets.find(link.special);
        if (found == m_linkTargets.end()) {
            throw DiskImageError("What the hard link \"" + entry.name + "\" refers to is missing.");
        }
        const auto target = readItem(m_records.catalog.data(found->second));
        if (target.isFolder || target.isHardLink()) {
            throw DiskImageError("The hard link \"" + entry.name + "\" does not refer to a file.");
        }
        auto name = std::move(entry.name);
        fill(entry, target, nameOf(found->second), 0);
        entry.name = std::move(name);
        entry.id = link.id;
    }

    void spend(std::uint64_t bytes)
    {
        if (bytes > unfoldedBytesLimit - m_unfoldedBytes) {
            throw DiskImageError("The hard links on the volume repeat more than memory should hold.");
        }
        m_unfoldedBytes += bytes;
    }

    void fillForks(Entry& entry, const CatalogItem& item)
    {
        const auto quoted = "\"" + entry.name + "\"";
        auto data = resolveFork(item.data, item.id, ForkType::data, m_records.overflow, m_records.header, quoted);
        auto resource =
            resolveFork(item.resource, item.id, ForkType::resource, m_records.overflow, m_records.header, quoted);
        spend((data.size() + resource.size()) * sizeof(Extent));
        if (item.isSymlink()) {
            if (item.data.logicalSize > longestLinkRead) {
                throw DiskImageError("The target of the link " + quoted + " is too long.");
            }
            entry.kind = EntryKind::symlink;
            entry.linkTarget = textOf(opener(std::move(data), item.data.logicalSize)()->read(
                0, static_cast<std::size_t>(item.data.logicalSize)));
            return;
        }
        if (item.isCompressed()) {
            fillCompressed(entry);
            return;
        }
        entry.dataSize = item.data.logicalSize;
        if (entry.dataSize > 0) {
            entry.openData = opener(std::move(data), entry.dataSize);
        }
        entry.resourceSize = item.resource.logicalSize;
        if (entry.resourceSize > 0) {
            entry.openResource = opener(std::move(resource), entry.resourceSize);
        }
    }

    /// A file whose bytes are packed into an attribute or its resource fork. Handing out an empty file would lose them
    /// silently.
    static void fillCompressed(Entry& entry)
    {
        if (const auto found = entry.attributes.find("com.apple.decmpfs"); found != entry.attributes.end()) {
            entry.dataSize = found->second.size() < 16 ? 0 : getLE64(found->second.data() + 8);
            entry.attributes.erase(found);
        }
        entry.openData = [name = entry.name]() -> std::unique_ptr<Source> {
            throw DiskImageError("\"" + name + "\" is stored in compressed form, which cannot be read.");
        };
    }

    [[nodiscard]] std::function<std::unique_ptr<Source>()> opener(std::vector<Extent> extents, std::uint64_t size) const
    {
        return [volume = m_volume, blockSize = m_records.header.blockSize, extents = std::move(extents), size] {
            return openFork(volume, blockSize, extents, size);
        };
    }

    const VolumeRecords& m_records;
    const std::shared_ptr<const Source>& m_volume;
    std::unordered_map<CatalogId, Attributes> m_attributes;
    std::unordered_map<CatalogId, std::vector<std::size_t>> m_children; ///< records by parent, in order
    std::unordered_map<std::uint32_t, std::size_t> m_linkTargets;       ///< records by link number
    std::unordered_set<CatalogId> m_foldersSeen;
    std::uint64_t m_unfoldedBytes = 0;
};

} // namespace

Entry buildEntries(const VolumeRecords& records, const std::shared_ptr<const Source>& volume)
{
    return EntryBuilder(records, volume).build();
}

} // namespace velmora::diskimage::hfs
