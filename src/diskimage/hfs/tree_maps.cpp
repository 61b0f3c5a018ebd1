#include "diskimage/hfs/tree_maps.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"

#include <algorithm>

namespace velmora::diskimage::hfs
{

AttributeMap readAttributeMap(const RecordList& records)
{
    AttributeMap map;
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto data = records.data(i);
        map.emplace_hint(map.end(), readAttributeKey(records.key(i)), Bytes(data.begin(), data.end()));
    }
    return map;
}

RecordList encodeAttributeMap(const AttributeMap& map)
{
    RecordList records;
    for (const auto& [key, data] : map) {
        records.add(encodeAttributeKey(key), data);
    }
    return records;
}

CatalogMap::CatalogMap(const RecordList& records, NameOrder order, bool countsFolders)
    : m_map(CatalogOrder{order}), m_countsFolders(countsFolders)
{
    for (std::size_t i = 0; i < records.size(); ++i) {
        const auto data = records.data(i);
        m_map.emplace_hint(m_map.end(), readCatalogKey(records.key(i)), Bytes(data.begin(), data.end()));
    }
}

CatalogMap::Item CatalogMap::root()
{
    return folder(rootFolderId);
}

std::optional<CatalogMap::Item> CatalogMap::find(CatalogId folder, std::string_view posixName)
{
    if (const auto found = m_map.find({folder, storedName(posixName)}); found != m_map.end()) {
        return found;
    }
    const bool isAscii = std::all_of(posixName.begin(), posixName.end(), [](char c) { return (c & 0x80) == 0; });
    if (isAscii) {
        return std::nullopt;
    }
    // Other systems store some names otherwise than we would.
    for (const auto item : children(folder)) {
        if (hfs::posixName(item->first.name) == posixName) {
            return item;
        }
    }
    return std::nullopt;
}

std::optional<CatalogMap::Item> CatalogMap::findPath(std::string_view path)
{
    auto item = root();
    while (!path.empty()) {
        const auto slash = std::min(path.find('/'), path.size());
        const auto name = path.substr(0, slash);
        path.remove_prefix(std::min(slash + 1, path.size()));
        if (name.empty()) {
            continue;
        }
        if (kindOfRecord(item->second) != RecordKind::folder) {
            return std::nullopt;
        }
        const auto found = find(getBE32(item->second.data() + recordIdOffset), name);
        if (!found) {
            return std::nullopt;
        }
        item = *found;
    }
    return item;
}

CatalogMap::Item CatalogMap::folder(CatalogId id)
{
    const auto thread = m_map.find({id, {}});
    if (thread != m_map.end() && kindOfRecord(thread->second) == RecordKind::thread) {
        const auto& data = thread->second;
        std::u16string name;
        for (std::size_t i = threadRecordSize; i + 2 <= data.size() && name.size() < getBE16(data.data() + 8); i += 2) {
            name += static_cast<char16_t>(getBE16(data.data() + i));
        }
        const auto item = m_map.find({getBE32(data.data() + 4), std::move(name)});
        if (item != m_map.end() && kindOfRecord(item->second) == RecordKind::folder &&
            getBE32(item->second.data() + recordIdOffset) == id) {
            return item;
        }
    }
    throw DiskImageError("The catalog is damaged: the folder with the number " + std::to_string(id) +
                         " cannot be found by its thread.");
}

std::vector<CatalogMap::Item> CatalogMap::children(CatalogId folder)
{
    std::vector<Item> items;
    for (auto item = m_map.lower_bound({folder, {}}); item != m_map.end() && item->first.parentId == folder; ++item) {
        if (!item->first.name.empty()) {
            items.push_back(item);
        }
    }
    return items;
}

void CatalogMap::changeValence(CatalogId id, bool isFolder, std::uint32_t difference)
{
    auto& record = folder(id)->second;
    putBE32(record.data() + folderValenceOffset, getBE32(record.data() + folderValenceOffset) + difference);
    if (m_countsFolders && isFolder) {
        putBE32(record.data() + folderCountOffset, getBE32(record.data() + folderCountOffset) + difference);
    }
}

void CatalogMap::add(CatalogId folder, std::u16string_view name, Bytes record)
{
    const bool isFolder = kindOfRecord(record) == RecordKind::folder;
    const auto id = getBE32(record.data() + recordIdOffset);
    changeValence(folder, isFolder, 1);
    if (isFolder && m_countsFolders) {
        const auto flags = getBE16(record.data() + recordFlagsOffset);
        putBE16(record.data() + recordFlagsOffset, static_cast<std::uint16_t>(flags | itemHasFolderCount));
    }
    m_map[{folder, std::u16string(name)}] = std::move(record);
    m_map[{id, {}}] = encodeThread(isFolder, folder, name);
}

void CatalogMap::remove(Item item)
{
    changeValence(item->first.parentId, kindOfRecord(item->second) == RecordKind::folder, 0U - 1U);
    m_map.erase({getBE32(item->second.data() + recordIdOffset), {}});
    m_map.erase(item);
}

RecordList CatalogMap::encode() const
{
    RecordList records;
    std::size_t bytes = 0;
    for (const auto& [key, data] : m_map) {
        bytes += catalogKeySize(key.name.size()) + data.size();
    }
    records.reserve(m_map.size(), bytes);
    for (const auto& [key, data] : m_map) {
        records.add(encodeCatalogKey(key.parentId, key.name), data);
    }
    return records;
}

} // namespace velmora::diskimage::hfs
