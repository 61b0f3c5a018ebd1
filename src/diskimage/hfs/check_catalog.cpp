#include "diskimage/hfs/check_catalog.h"

#include "diskimage/base/error.h"
#include "diskimage/base/text.h"
#include "diskimage/hfs/catalog_records.h"
#include "diskimage/hfs/format.h"

#include <unordered_map>
#include <unordered_set>

namespace velmora::diskimage::hfs
{
namespace
{

/// One file or folder with what the other records say of it.
struct CheckedItem {
    std::size_t record = 0;
    CatalogId parent = 0;
    CatalogItem item{};
    std::uint32_t threads = 0;
    std::uint32_t children = 0;
    std::uint32_t folders = 0; ///< of the children
    bool hasAttributes = false;
    bool hasSecurity = false;
    bool isReached = false; ///< from the root
};

class CatalogChecker
{
public:
    CatalogChecker(const RecordList& catalog, const VolumeHeader& header, BlockChecker& blocks, CheckReport& report)
        : m_catalog(catalog), m_header(header), m_blocks(blocks), m_report(report)
    {
    }

    void check(const RecordList& attributes)
    {
        for (std::size_t i = 0; i < m_catalog.size(); ++i) {
            collect(i);
        }
        for (std::size_t i = 0; i < m_catalog.size(); ++i) {
            if (isThread(i)) {
                checkThread(i);
            }
        }
        for (auto& [id, checked] : m_items) {
            connect(id, checked);
        }
        collectAttributes(attributes);
        collectLinkTargets();
        for (const auto& [id, checked] : m_items) {
            checkItem(checked);
        }
        checkReached();
        checkCounts();
    }

private:
    [[nodiscard]] CatalogKey keyOf(std::size_t i) const { return readCatalogKey(m_catalog.key(i)); }
    [[nodiscard]] std::string quoted(const CheckedItem& checked) const
    {
        return "\"" + posixName(keyOf(checked.record).name) + "\"";
    }
    void fault(const CheckedItem& checked, const std::string& what)
    {
        m_report.add(quoted(checked) + " " + what + ".");
    }

    [[nodiscard]] bool isThread(std::size_t i) const
    {
        const auto data = m_catalog.data(i);
        const auto type = data.size() < threadRecordSize ? 0 : getBE16(data.data());
        return type == recordFolderThread || type == recordFileThread;
    }

    void collect(std::size_t i)
    {
        const auto data = m_catalog.data(i);
        const auto type = data.size() < 2 ? 0 : getBE16(data.data());
        if (isThread(i)) {
            return;
        }
        const auto key = keyOf(i);
        const auto name = "\"" + posixName(key.name) + "\"";
        if (!(type == recordFolder && data.size() == folderRecordSize) &&
            !(type == recordFile && data.size() == fileRecordSize)) {
            m_report.add("The catalog's record of " + name + " has an unknown type or a wrong length.");
            return;
        }
        const CheckedItem checked{.record = i, .parent = key.parentId, .item = readItem(data)};
        if (!m_items.emplace(checked.item.id, checked).second) {
            m_report.add(name + " has the same number " + std::to_string(checked.item.id) + " as another entry.");
        }
        checkName(key);
        checkEncoding(getBE32(data.data() + 80), name);
    }

    void checkName(const CatalogKey& key)
    {
        const auto name = posixName(key.name);
        bool isAsWritten = false;
        try {
            isAsWritten = storedName(name) == key.name;
        } catch (const DiskImageError& error) {
            m_report.add("The catalog has a name that cannot be. " + std::string(error.what()));
            return;
        }
        if (!isAsWritten) {
            m_report.add("\"" + name + "\" is not stored in decomposed form.");
        }
    }

    void checkEncoding(std::uint32_t encoding, const std::string& name)
    {
        // Two encodings beyond 63 have bits of their own (TN1150, "Text Encodings").
        const auto bit = encoding == 140 ? 49U : encoding == 152 ? 48U : encoding;
        if (bit > 63) {
            m_report.add(name + " has the unknown text encoding " + std::to_string(encoding) + ".");
        } else if ((m_header.encodingsBitmap >> bit & 1) == 0) {
            m_report.add("The volume header lacks the text encoding of " + name + ".");
        }
    }

    void checkThread(std::size_t i)
    {
        const auto key = keyOf(i);
        const auto data = m_catalog.data(i);
        const std::size_t length = getBE16(data.data() + 8);
        const auto number = std::to_string(key.parentId);
        if (!key.name.empty() || length > maximumNameLength || data.size() != threadRecordSize + 2 * length) {
            m_report.add("The thread of the number " + number + " has a wrong key or length.");
            return;
        }
        const auto found = m_items.find(key.parentId);
        if (found == m_items.end()) {
            m_report.add("There is a thread of the number " + number + ", but no file or folder.");
            return;
        }
        auto& checked = found->second;
        ++checked.threads;
        std::u16string name;
        for (std::size_t unit = 0; unit < length; ++unit) {
            name += static_cast<char16_t>(getBE16(data.data() + threadRecordSize + 2 * unit));
        }
        if (checked.item.isFolder != (getBE16(data.data()) == recordFolderThread)) {
            fault(checked, "has a thread of the wrong kind");
        }
        if (getBE32(data.data() + 4) != checked.parent || name != keyOf(checked.record).name) {
            fault(checked, "has a thread that leads elsewhere");
        }
    }

    /// Counts an item with its parent.
    void connect(CatalogId id, const CheckedItem& checked)
    {
        if (id == rootFolderId || checked.parent == rootParentId) {
            if (id != rootFolderId || checked.parent != rootParentId || !checked.item.isFolder) {
                fault(checked, "is a wrong root folder");
            }
            return;
        }
        const auto parent = m_items.find(checked.parent);
        if (parent == m_items.end() || !parent->second.item.isFolder) {
            fault(checked, "lies in a folder that does not exist");
            return;
        }
        ++parent->second.children;
        parent->second.folders += checked.item.isFolder ? 1 : 0;
        if (checked.item.isFolder) {
            m_subfolders[checked.parent].push_back(id);
        }
    }

    void checkItem(const CheckedItem& checked)
    {
        const auto& item = checked.item;
        const auto expect = [&](bool holds, const char* what) {
            if (!holds) {
                fault(checked, what);
            }
        };
        expect(item.id >= firstUserId || item.id == rootFolderId, "has a number of the file system's own");
        const bool idsAreReused = (m_header.attributes & 0x1000) != 0;
        expect(item.id < m_header.nextCatalogId || idsAreReused, "has a number that the next new file would get");
        expect(checked.threads == 1, "has no thread");
        expect(((item.flags & itemHasAttributes) != 0) == checked.hasAttributes,
               "has a flag about extended attributes that is wrong");
        expect(((item.flags & itemHasSecurity) != 0) == checked.hasSecurity,
               "has a flag about access control that is wrong");
        if (item.isFolder) {
            checkFolder(checked);
        } else {
            checkFile(checked);
        }
    }

    void checkFolder(const CheckedItem& checked)
    {
        const auto& item = checked.item;
        const auto* const record = m_catalog.data(checked.record).data();
        if ((item.flags & 0x0003) != 0) {
            fault(checked, "is a folder with a flag of files");
        }
        if ((item.mode & modeTypeMask) != modeFolder && item.mode != 0) {
            fault(checked, "is a folder with the mode of something else");
        }
        if (getBE32(record + folderValenceOffset) != checked.children) {
            fault(checked, "counts " + std::to_string(getBE32(record + folderValenceOffset)) + " entries and has " +
                               std::to_string(checked.children));
        }
        const bool countsFolders = m_header.signature == signatureHfsx;
        if (countsFolders && (item.flags & itemHasFolderCount) == 0) {
            fault(checked, "lacks the flag that it counts its folders");
        }
        if (getBE32(record + folderCountOffset) != (countsFolders ? checked.folders : 0)) {
            fault(checked, "has a wrong number of folders in it");
        }
        if (item.id == rootFolderId &&
            (getBE16(item.finderInfo.data() + finderFlagsOffset) & finderFlagNameLocked) != 0) {
            fault(checked, "is a root folder whose name is locked");
        }
    }

    void checkFile(const CheckedItem& checked)
    {
        const auto& item = checked.item;
        const auto* const record = m_catalog.data(checked.record).data();
        const auto type = item.mode & modeTypeMask;
        if ((item.flags & itemThreadExists) == 0) {
            fault(checked, "lacks the flag that it has a thread");
        }
        if (type == modeFolder) {
            fault(checked, "is a file with the mode of a folder");
        }
        const bool hasLinkFinderInfo =
            getBE32(item.finderInfo.data()) == typeSymlink && getBE32(item.finderInfo.data() + 4) == creatorSymlink;
        if ((type == modeSymlink) != hasLinkFinderInfo) {
            fault(checked, "is a symbolic link by only one of mode and Finder type");
        }
        if (type == modeFile && item.special > 1 && !item.isHardLink() && !item.isFolderLink() &&
            !isInLinkFolder(checked)) {
            fault(checked, "counts links that it does not have");
        }
        if (item.isHardLink() && m_linkTargets.count(item.special) == 0) {
            fault(checked, "is a hard link to a file that is missing");
        }
        if (type == modeSymlink && item.data.logicalSize > maximumLinkLength) {
            fault(checked, "is a symbolic link whose target is longer than a path can be");
        }
        if (getBE32(record + 4) != 0 && (item.flags & itemHasLinkChain) == 0) {
            fault(checked, "has a value in a reserved field");
        }
        m_blocks.addFork(item.data, item.id, ForkType::data, quoted(checked));
        m_blocks.addFork(item.resource, item.id, ForkType::resource, quoted(checked) + " (resource fork)");
    }

    [[nodiscard]] bool isInLinkFolder(const CheckedItem& checked) const
    {
        const auto parent = m_items.find(checked.parent);
        return parent != m_items.end() && parent->second.parent == rootFolderId &&
               keyOf(parent->second.record).name == hardLinkFolderName();
    }

    void collectLinkTargets()
    {
        for (const auto& [id, checked] : m_items) {
            if (!checked.item.isFolder && !checked.item.isHardLink() && isInLinkFolder(checked)) {
                if (const auto number = hardLinkNumber(keyOf(checked.record).name)) {
                    m_linkTargets.insert(*number);
                }
            }
        }
    }

    void collectAttributes(const RecordList& attributes)
    {
        for (std::size_t i = 0; i < attributes.size();) {
            const auto key = readAttributeKey(attributes.key(i));
            const auto data = attributes.data(i);
            const auto name = "The extended attribute \"" + utf8FromUtf16(key.name) + "\"";
            ++i;
            if (const auto found = m_items.find(key.fileId); found == m_items.end()) {
                m_report.add(name + " belongs to no file.");
            } else if (key.name == u"com.apple.system.Security") {
                found->second.hasSecurity = true;
            } else {
                found->second.hasAttributes = true;
            }
            if (key.startBlock != 0 || key.name.empty()) {
                m_report.add(name + " has a wrong key.");
            }
            const auto type = data.size() < 4 ? 0 : getBE32(data.data());
            if (type == attributeInline) {
                // A pad byte follows a value of odd length.
                if (data.size() < 16 || data.size() != (std::size_t{16} + getBE32(data.data() + 12) + 1) / 2 * 2) {
                    m_report.add(name + " has a wrong length.");
                }
            } else if (type == attributeFork && data.size() == 8 + forkDataSize) {
                m_blocks.addFork(readForkData(data.data() + 8), key.fileId, ForkType::data, name,
                                 collectExtents(attributes, key, i));
            } else {
                m_report.add(name + " has a record of an unknown type or a wrong length.");
            }
        }
    }

    /// The records that continue an attribute's fork; `next` passes over them.
    static OverflowExtents collectExtents(const RecordList& attributes, const AttributeKey& key, std::size_t& next)
    {
        OverflowExtents extents;
        for (; next < attributes.size(); ++next) {
            const auto nextKey = readAttributeKey(attributes.key(next));
            const auto data = attributes.data(next);
            if (nextKey.fileId != key.fileId || nextKey.name != key.name || data.size() != 8 + extentRecordSize ||
                getBE32(data.data()) != attributeExtents) {
                break;
            }
            extents[{key.fileId, ForkType::data, nextKey.startBlock}] = readExtentRecord(data.data() + 8);
        }
        return extents;
    }

    void checkReached()
    {
        std::vector<CatalogId> folders{rootFolderId};
        for (std::size_t i = 0; i < folders.size(); ++i) {
            const auto found = m_items.find(folders[i]);
            if (found == m_items.end()) {
                m_report.add("The volume has no root folder.");
                return;
            }
            found->second.isReached = true;
            const auto& inside = m_subfolders[folders[i]];
            folders.insert(folders.end(), inside.begin(), inside.end());
        }
        for (const auto& [id, checked] : m_items) {
            if (checked.item.isFolder && !checked.isReached) {
                fault(checked, "cannot be reached from the root");
            }
        }
    }

    void checkCounts()
    {
        std::size_t folders = 0;
        for (const auto& [id, checked] : m_items) {
            folders += checked.item.isFolder ? 1 : 0;
        }
        m_report.expect(m_header.fileCount == m_items.size() - folders,
                        "The volume header has a wrong number of files.");
        m_report.expect(std::size_t{m_header.folderCount} + 1 == folders,
                        "The volume header has a wrong number of folders.");
    }

    const RecordList& m_catalog;
    const VolumeHeader& m_header;
    BlockChecker& m_blocks;
    CheckReport& m_report;
    std::map<CatalogId, CheckedItem> m_items{};
    std::unordered_map<CatalogId, std::vector<CatalogId>> m_subfolders{};
    std::unordered_set<std::uint32_t> m_linkTargets{}; ///< numbers of the files that hard links may refer to
};

} // namespace

void checkCatalog(const RecordList& catalog, const RecordList& attributes, const VolumeHeader& header,
                  BlockChecker& blocks, CheckReport& report)
{
    CatalogChecker(catalog, header, blocks, report).check(attributes);
}

} // namespace velmora::diskimage::hfs
