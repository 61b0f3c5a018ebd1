#include "diskimage/finder/ds_store_tree.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/names.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace velmora::diskimage::finder
{
namespace
{

constexpr std::size_t nodeHeadSize = 8;
constexpr std::size_t childPointerSize = 4;

/// How the bytes of each data type are stored: a fixed number, or behind a length in units of `unit` bytes.
struct DataType {
    std::string_view name;
    std::size_t size; ///< 0: a length word precedes
    std::size_t unit;
};
constexpr DataType dataTypes[] = {
    {"bool", 1, 0}, {"long", 4, 0}, {"shor", 4, 0}, {"type", 4, 0},
    {"blob", 0, 1}, {"ustr", 0, 2}, {"comp", 8, 0}, {"dutc", 8, 0},
};

const DataType* findDataType(std::string_view name)
{
    for (const DataType& type : dataTypes) {
        if (type.name == name)
            return &type;
    }
    return nullptr;
}

std::string described(const DsRecord& record)
{
    return "\"" + hfs::posixName(record.name) + "\" (" + record.code + ")";
}

Bytes encoded(const DsRecord& record)
{
    const DataType* type = findDataType(record.type);
    const std::size_t size = record.data.size();
    if (!type || record.code.size() != 4 || (type->size != 0 ? size != type->size : size % type->unit != 0))
        throw DiskImageError("The .DS_Store record " + described(record) + " has data that do not suit its type.");
    Bytes bytes;
    appendBE32(bytes, static_cast<std::uint32_t>(record.name.size()));
    for (const char16_t unit : record.name)
        appendBE16(bytes, static_cast<std::uint16_t>(unit));
    append(bytes, record.code);
    append(bytes, record.type);
    if (type->size == 0)
        appendBE32(bytes, static_cast<std::uint32_t>(size / type->unit));
    append(bytes, record.data);
    // Any record may end up in an internal node, behind the number of a child.
    if (bytes.size() > dsNodeSize - nodeHeadSize - childPointerSize)
        throw DiskImageError("The .DS_Store record " + described(record) + " is too large: it has " +
                             std::to_string(bytes.size()) + " bytes.");
    return bytes;
}

/// One level of the tree: nodes as ranges of records, and the records between them, which belong to the next level.
struct Level {
    std::vector<std::vector<std::size_t>> nodes;
    std::vector<std::size_t> separators;
};

Level packed(const std::vector<std::size_t>& records, const std::vector<Bytes>& bytes, std::size_t overhead)
{
    Level level;
    std::vector<std::size_t> node;
    std::size_t used = nodeHeadSize;
    const auto add = [&](std::size_t record) {
        node.push_back(record);
        used += bytes[record].size() + overhead;
    };
    const auto finish = [&](std::size_t separator) {
        level.nodes.push_back(std::move(node));
        level.separators.push_back(separator);
        node.clear();
        used = nodeHeadSize;
    };
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::size_t record = records[i];
        if (used + bytes[record].size() + overhead <= dsNodeSize) {
            add(record);
        } else if (i + 1 < records.size()) {
            finish(record);
        } else { // as the separator it would leave nothing for the last node
            const std::size_t separator = node.back();
            node.pop_back();
            finish(separator);
            add(record);
        }
    }
    level.nodes.push_back(std::move(node));
    return level;
}

/// The bytes of a level's nodes; `firstChild` is the block of the first node of the level below, 0 for leaves.
void serialise(DsTree& tree, std::size_t firstNode, const Level& level, const std::vector<Bytes>& bytes,
               std::uint32_t firstChild)
{
    std::uint32_t child = firstChild;
    for (std::size_t i = 0; i < level.nodes.size(); ++i) {
        Bytes node;
        append(node, Bytes(childPointerSize)); // the rightmost child, known at the end
        appendBE32(node, static_cast<std::uint32_t>(level.nodes[i].size()));
        for (const std::size_t record : level.nodes[i]) {
            if (firstChild != 0)
                appendBE32(node, child++);
            append(node, bytes[record]);
        }
        if (firstChild != 0)
            putBE32(node.data(), child++);
        tree.nodes[firstNode + i] = std::move(node);
    }
}

} // namespace

DsTree buildDsTree(std::vector<DsRecord> records)
{
    const auto compare = [](const DsRecord& a, const DsRecord& b) {
        const int order = hfs::compareNames(a.name, b.name);
        return order != 0 ? order : a.code.compare(b.code);
    };
    std::stable_sort(records.begin(), records.end(),
                     [&](const DsRecord& a, const DsRecord& b) { return compare(a, b) < 0; });
    const auto twin = std::adjacent_find(records.begin(), records.end(),
                                         [&](const DsRecord& a, const DsRecord& b) { return compare(a, b) == 0; });
    if (twin != records.end())
        throw DiskImageError("There are two .DS_Store records for " + described(*twin) + ".");
    if (records.size() > std::numeric_limits<std::uint32_t>::max())
        throw DiskImageError("There are too many records for one .DS_Store file.");

    std::vector<Bytes> bytes;
    std::vector<std::size_t> pending;
    for (const DsRecord& record : records) {
        pending.push_back(bytes.size());
        bytes.push_back(encoded(record));
    }
    std::vector<Level> levels; // leaves first
    do {
        levels.push_back(packed(pending, bytes, levels.empty() ? 0 : childPointerSize));
        pending = levels.back().separators;
    } while (levels.back().nodes.size() > 1);

    DsTree tree;
    tree.levels = static_cast<std::uint32_t>(levels.size() - 1);
    tree.recordCount = static_cast<std::uint32_t>(records.size());
    for (const Level& level : levels)
        tree.nodes.resize(tree.nodes.size() + level.nodes.size());
    std::size_t firstNode = 0; // from the root down
    for (auto level = levels.rbegin(); level != levels.rend(); ++level) {
        const std::size_t below = firstNode + level->nodes.size();
        const bool isLeaf = level + 1 == levels.rend();
        serialise(tree, firstNode, *level, bytes, isLeaf ? 0 : dsRootBlock + static_cast<std::uint32_t>(below));
        firstNode = below;
    }
    return tree;
}

DsRecord readDsRecord(ByteView node, std::size_t& offset)
{
    const auto take = [&](std::size_t length) {
        if (length > node.size() - offset)
            throw DiskImageError("The .DS_Store file is damaged: a record reaches beyond its node.");
        const ByteView bytes = node.subspan(offset, length);
        offset += length;
        return bytes;
    };
    DsRecord record;
    const std::size_t units = getBE32(take(4).data());
    const ByteView name = take(units * 2);
    for (std::size_t i = 0; i < units; ++i)
        record.name.push_back(static_cast<char16_t>(getBE16(name.data() + i * 2)));
    record.code = textOf(take(4));
    record.type = textOf(take(4));
    const DataType* type = findDataType(record.type);
    if (!type)
        throw DiskImageError("The .DS_Store file holds a record of the unknown type \"" + record.type + "\".");
    const std::size_t length = type->size != 0 ? type->size : getBE32(take(4).data()) * type->unit;
    const ByteView data = take(length);
    record.data.assign(data.begin(), data.end());
    return record;
}

} // namespace velmora::diskimage::finder
