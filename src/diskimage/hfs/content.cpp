#include "diskimage/hfs/content.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/names.h"

#include <algorithm>
#include <limits>

namespace velmora::diskimage::hfs
{
namespace
{

DiskImageError faultIn(const Content& content, std::size_t index, const std::string& why)
{
    return DiskImageError("\"" + pathOfItem(content, index) + "\" " + why + ".");
}

void checkItem(const Content& content, std::size_t index)
{
    const auto& item = content[index];
    const auto& entry = *item.entry;
    if (entry.kind != EntryKind::folder && !entry.children.empty()) {
        throw faultIn(content, index, "is no folder and yet has entries in it");
    }
    if (item.depth > maximumDepth) {
        throw faultIn(content, index, "lies more than " + std::to_string(maximumDepth) + " folders deep");
    }
    if (entry.kind == EntryKind::symlink && (entry.linkTarget.empty() || entry.linkTarget.size() > maximumLinkLength ||
                                             entry.linkTarget.find('\0') != std::string::npos)) {
        throw faultIn(content, index,
                      "is a link whose target a volume cannot hold (1 to " + std::to_string(maximumLinkLength) +
                          " bytes without NUL)");
    }
    const bool isFile = entry.kind == EntryKind::file;
    if (isFile && ((entry.dataSize > 0 && !entry.openData) || (entry.resourceSize > 0 && !entry.openResource))) {
        throw faultIn(content, index, "has no source for its bytes");
    }
}

/// Appends the children of the folder at `index`, sorted.
void appendChildren(Content& content, std::size_t index, NameOrder order)
{
    const auto& children = content[index].entry->children;
    const auto first = content.size();
    if (children.size() >= std::numeric_limits<CatalogId>::max() - firstUserId - first) {
        throw faultIn(content, index, "holds too many entries");
    }
    for (std::size_t i = 0; i < children.size(); ++i) {
        ContentItem item;
        item.entry = &children[i];
        try {
            item.name = storedName(children[i].name);
        } catch (const DiskImageError& error) {
            throw DiskImageError("In \"" + pathOfItem(content, index) + "\": " + error.what());
        }
        item.parent = static_cast<std::uint32_t>(index);
        item.place = static_cast<std::uint32_t>(i);
        item.depth = content[index].depth + 1;
        item.attributes = storedAttributes(children[i]);
        content.push_back(std::move(item));
    }
    const auto begin = content.begin() + static_cast<std::ptrdiff_t>(first);
    std::sort(begin, content.end(),
              [=](const auto& a, const auto& b) { return compareNames(a.name, b.name, order) < 0; });
    const auto twin = std::adjacent_find(
        begin, content.end(), [=](const auto& a, const auto& b) { return compareNames(a.name, b.name, order) == 0; });
    if (twin != content.end()) {
        throw DiskImageError("The names \"" + twin->entry->name + "\" and \"" + std::next(twin)->entry->name +
                             "\" in \"" + pathOfItem(content, index) +
                             "\" are the same name on an HFS+ volume, which ignores case.");
    }
    if (first < content.size() && compareNames(content[first].name, {}, order) == 0) {
        // It would take the place of the folder's own thread record, whose name is empty.
        throw DiskImageError("The name \"" + content[first].entry->name + "\" in \"" + pathOfItem(content, index) +
                             "\" consists of characters that an HFS+ volume ignores.");
    }
    content[index].firstChild = static_cast<std::uint32_t>(first);
    content[index].childCount = static_cast<std::uint32_t>(children.size());
}

ItemPlacement placementOf(const Content& content, std::size_t index)
{
    const auto& item = content[index];
    return {.id = idOfItem(index),
            .valence = item.childCount,
            .hasAttributes = !item.attributes.empty(),
            .data = contiguousFork(dataSizeOf(*item.entry), item.data),
            .resource = contiguousFork(resourceSizeOf(*item.entry), item.resource)};
}

} // namespace

Content listContent(const Entry& top, NameOrder order, std::uint32_t depth)
{
    Content content(1);
    content[0].entry = &top;
    content[0].name = storedName(top.name);
    content[0].depth = depth;
    content[0].attributes = storedAttributes(top);
    for (std::size_t i = 0; i < content.size(); ++i) {
        checkItem(content, i);
        appendChildren(content, i, order);
    }
    return content;
}

CatalogId idOfItem(std::size_t index)
{
    return index == 0 ? rootFolderId : static_cast<CatalogId>(firstUserId + index - 1);
}

std::string pathOfItem(const Content& content, std::size_t index)
{
    std::string path;
    for (auto i = index; content[i].depth > 0; i = content[i].parent) {
        path.insert(0, "/" + content[i].entry->name);
        if (i == 0) {
            break;
        }
    }
    return path.empty() ? "/" : path;
}

std::uint64_t dataSizeOf(const Entry& entry)
{
    return entry.kind == EntryKind::symlink ? entry.linkTarget.size()
           : entry.kind == EntryKind::file  ? entry.dataSize
                                            : 0;
}

std::uint64_t resourceSizeOf(const Entry& entry)
{
    return entry.kind == EntryKind::file ? entry.resourceSize : 0;
}

std::uint64_t countForkBlocks(const Content& content, std::uint32_t blockSize, std::uint32_t attributesNodeSize)
{
    // Sizes come from outside; the sum stops where no volume could hold it.
    constexpr std::uint64_t limit = 1ULL << 62;
    std::uint64_t sum = 0;
    const auto add = [&](std::uint64_t bytes) { sum = std::min(limit, sum + ceilDivide(bytes, blockSize)); };
    for (const auto& item : content) {
        add(dataSizeOf(*item.entry));
        add(resourceSizeOf(*item.entry));
        for (const auto& attribute : item.attributes) {
            add(ownForkSize(attribute, attributesNodeSize));
        }
    }
    return sum;
}

void placeForks(Content& content, std::uint32_t blockSize, std::uint32_t firstBlock)
{
    auto place = [=, next = firstBlock](std::uint64_t bytes) mutable {
        const Extent extent{next, static_cast<std::uint32_t>(ceilDivide(bytes, blockSize))};
        next += extent.count;
        return extent;
    };
    for (auto& item : content) {
        item.data = place(dataSizeOf(*item.entry));
        item.resource = place(resourceSizeOf(*item.entry));
        for (auto& attribute : item.attributes) {
            attribute.fork = place(ownForkSize(attribute, newAttributesNodeSize));
        }
    }
}

RecordList encodeCatalog(const Content& content, std::int64_t rootCreated)
{
    RecordList records;
    std::size_t bytes = 0;
    for (const auto& item : content) {
        const auto nameBytes = 2 * item.name.size();
        bytes += catalogKeySize(0) + threadRecordSize + nameBytes + catalogKeySize(item.name.size()) + fileRecordSize;
    }
    records.reserve(2 * content.size(), bytes);
    auto root = encodeItem(*content[0].entry, placementOf(content, 0));
    putBE32(root.data() + recordCreateDateOffset, dateFromUnix(rootCreated));
    records.add(encodeCatalogKey(rootParentId, content[0].name), root);
    for (std::size_t i = 0; i < content.size(); ++i) {
        const auto& item = content[i];
        const auto id = idOfItem(i);
        records.add(encodeCatalogKey(id, {}), encodeThread(item.entry->kind == EntryKind::folder,
                                                           i == 0 ? rootParentId : idOfItem(item.parent), item.name));
        for (std::size_t child = item.firstChild; child < std::size_t{item.firstChild} + item.childCount; ++child) {
            records.add(encodeCatalogKey(id, content[child].name),
                        encodeItem(*content[child].entry, placementOf(content, child)));
        }
    }
    return records;
}

RecordList encodeAttributes(const Content& content)
{
    RecordList records;
    for (std::size_t i = 0; i < content.size(); ++i) {
        const auto& item = content[i];
        for (const auto& attribute : item.attributes) {
            const auto size = ownForkSize(attribute, newAttributesNodeSize);
            records.add(encodeAttributeKey({idOfItem(i), attribute.name, 0}),
                        size == 0 ? encodeInlineAttribute(*attribute.value)
                                  : encodeAttributeFork(contiguousFork(size, attribute.fork)));
        }
    }
    return records;
}

} // namespace velmora::diskimage::hfs
