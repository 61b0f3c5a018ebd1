#include "diskimage/hfs/editor.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/content.h"
#include "diskimage/hfs/edited_volume.h"
#include "diskimage/hfs/format.h"

#include <algorithm>
#include <optional>
#include <set>

namespace velmora::diskimage::hfs
{
namespace
{

using Item = CatalogMap::Item;

CatalogId idOf(const Item& item)
{
    return getBE32(item->second.data() + recordIdOffset);
}

bool isFolder(const Item& item)
{
    return kindOfRecord(item->second) == RecordKind::folder;
}

/// Files that share their content with others would need all of them changed.
void refuseHardLink(const Item& item)
{
    if (isFolder(item)) {
        return;
    }
    const auto file = readItem(item->second);
    if (file.isHardLink() || file.isFolderLink() || (file.flags & itemHasLinkChain) != 0) {
        throw DiskImageError("\"" + posixName(item->first.name) + "\" is a hard link, which cannot be changed.");
    }
}

/// How deep what lies in a folder is, at most.
std::uint32_t depthOf(std::string_view path)
{
    return static_cast<std::uint32_t>(std::count(path.begin(), path.end(), '/')) + 1;
}

} // namespace

struct VolumeEditor::Impl {
    explicit Impl(Storage& storage) : volume(storage) {}

    /// Marks the time in which a failure leaves half a change behind.
    template <typename Change>
    void change(Change apply)
    {
        isBroken = true;
        root.reset();
        apply();
        isBroken = false;
    }

    /// The item at a path that is open to changes, or nothing.
    std::optional<Item> find(std::string_view path)
    {
        const auto item = volume.catalog().findPath(path);
        if (item && (*item)->first.parentId == rootFolderId &&
            isPrivateName((*item)->first.name, volume.isJournaled())) {
            throw DiskImageError("\"" + std::string(path) + "\" belongs to the file system itself.");
        }
        return item;
    }

    Item require(std::string_view path)
    {
        const auto item = find(path);
        if (!item) {
            throw DiskImageError("There is no \"" + std::string(path) + "\" on the volume.");
        }
        return *item;
    }

    /// What is on the volume already of each item, found out before anything is changed.
    std::vector<std::optional<Item>> findExisting(CatalogId folder, const Content& content)
    {
        std::vector<std::optional<Item>> existing(content.size());
        for (std::size_t i = 0; i < content.size(); ++i) {
            const auto& parent = existing[content[i].parent];
            if (i > 0 && !parent) {
                continue;
            }
            existing[i] = volume.catalog().find(i == 0 ? folder : idOf(*parent), content[i].entry->name);
            if (!existing[i]) {
                continue;
            }
            if (isFolder(*existing[i]) != (content[i].entry->kind == EntryKind::folder)) {
                throw DiskImageError("A file and a folder have the same name \"" + content[i].entry->name + "\".");
            }
            refuseHardLink(*existing[i]);
        }
        return existing;
    }

    void addItem(const Content& content, std::size_t index, CatalogId parent, CatalogId id)
    {
        volume.catalog().add(parent, content[index].name, volume.storeItem(content, index, id));
        volume.countItem(content[index].entry->kind == EntryKind::folder, 1);
    }

    void replaceFile(const Content& content, std::size_t index, const Item& old)
    {
        const auto file = readItem(old->second);
        volume.releaseItem(file);
        old->second = volume.storeItem(content, index, file.id);
        volume.touchFolder(old->first.parentId);
    }

    void removeTree(const Item& top)
    {
        std::vector<Item> items{top};
        std::set<CatalogId> seen; // what readers pass over was never checked: it may contain itself
        for (std::size_t i = 0; i < items.size(); ++i) {
            refuseHardLink(items[i]);
            if (!seen.insert(idOf(items[i])).second) {
                throw DiskImageError("The catalog is damaged: there are two entries with the number " +
                                     std::to_string(idOf(items[i])) + ".");
            }
            if (isFolder(items[i])) {
                const auto children = volume.catalog().children(idOf(items[i]));
                items.insert(items.end(), children.begin(), children.end());
            }
        }
        change([&] {
            volume.touchFolder(top->first.parentId);
            for (auto item = items.rbegin(); item != items.rend(); ++item) {
                const auto record = readItem((*item)->second);
                volume.releaseItem(record);
                volume.countItem(record.isFolder, 0U - 1U);
                volume.forgetFolder(record.id);
                volume.catalog().remove(*item);
            }
        });
    }

    EditedVolume volume;
    mutable std::optional<Entry> root{};
    bool isBroken = false;
};

VolumeEditor::VolumeEditor(Storage& volume) : m_impl(std::make_unique<Impl>(volume)) {}

VolumeEditor::~VolumeEditor() = default;

std::string VolumeEditor::name() const
{
    return posixName(m_impl->volume.catalog().root()->first.name);
}

const Entry& VolumeEditor::root() const
{
    if (!m_impl->root) {
        m_impl->root = m_impl->volume.entries();
    }
    return *m_impl->root;
}

void VolumeEditor::put(std::string_view folderPath, const Entry& entry)
{
    const auto folder = m_impl->require(folderPath);
    if (!isFolder(folder)) {
        throw DiskImageError("\"" + std::string(folderPath) + "\" is not a folder.");
    }
    const auto content = listContent(entry, m_impl->volume.nameOrder(), depthOf(folderPath));
    if (idOf(folder) == rootFolderId && isPrivateName(content[0].name, m_impl->volume.isJournaled())) {
        throw DiskImageError("The name \"" + entry.name + "\" belongs to the file system itself.");
    }
    const auto existing = m_impl->findExisting(idOf(folder), content);
    m_impl->volume.requireRoom(content);
    m_impl->change([&] {
        std::vector<CatalogId> ids(content.size());
        for (std::size_t i = 0; i < content.size(); ++i) {
            const auto parent = i == 0 ? idOf(folder) : ids[content[i].parent];
            ids[i] = existing[i] ? idOf(*existing[i]) : m_impl->volume.newId();
            if (!existing[i]) {
                m_impl->addItem(content, i, parent, ids[i]);
                if (i == 0 || existing[content[i].parent]) {
                    m_impl->volume.touchFolder(parent); // a new folder keeps the date that it came with
                }
            } else if (!isFolder(*existing[i])) {
                m_impl->replaceFile(content, i, *existing[i]);
            }
        }
    });
}

void VolumeEditor::remove(std::string_view path)
{
    const auto item = m_impl->find(path);
    if (!item) {
        return;
    }
    if (idOf(*item) == rootFolderId) {
        throw DiskImageError("The root of a volume cannot be removed.");
    }
    m_impl->removeTree(*item);
}

void VolumeEditor::changeFinderFlags(std::string_view path, std::uint16_t set, std::uint16_t clear)
{
    const auto item = m_impl->require(path);
    m_impl->change([&] {
        auto* const place = item->second.data() + recordFinderInfoOffset + finderFlagsOffset;
        putBE16(place, static_cast<std::uint16_t>((getBE16(place) & ~clear) | set));
    });
}

void VolumeEditor::commit(std::int64_t now)
{
    if (m_impl->isBroken) {
        throw DiskImageError("The volume cannot be written: an earlier change to it failed.");
    }
    m_impl->change([&] { m_impl->volume.commit(dateFromUnix(now)); });
}

} // namespace velmora::diskimage::hfs
