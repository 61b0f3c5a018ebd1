#include "diskimage/hfs/tree_reader.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"

#include <bit>

namespace velmora::diskimage::hfs
{
namespace
{

constexpr std::uint32_t smallestNode = 512;
constexpr std::uint32_t largestNode = 32768;

DiskImageError damaged(const std::string& name, const std::string& why)
{
    return DiskImageError("The " + name + " is damaged: " + why + ".");
}

/// Adds the records of one leaf.
void readRecords(RecordList& records, ByteView node, std::uint32_t number, const std::string& name)
{
    const std::size_t count = getBE16(node.data() + 10);
    const auto fail = [&] { return damaged(name, "the records of node " + std::to_string(number) + " overlap"); };
    if (count > (node.size() - nodeDescriptorSize - 2) / 4) {
        throw fail();
    }
    const auto offsetOf = [&](std::size_t i) -> std::size_t {
        return getBE16(node.data() + node.size() - 2 * (i + 1));
    };
    const auto tableStart = node.size() - 2 * (count + 1);
    for (std::size_t i = 0; i < count; ++i) {
        const auto start = offsetOf(i);
        const auto end = offsetOf(i + 1);
        if (start < nodeDescriptorSize || end > tableStart || start + 2 > end) {
            throw fail();
        }
        const auto record = node.subspan(start, end - start);
        const auto keySize = std::size_t{2} + getBE16(record.data());
        const auto dataStart = keySize + keySize % 2;
        if (dataStart > record.size()) {
            throw damaged(name, "a key in node " + std::to_string(number) + " exceeds its record");
        }
        records.add(record.first(keySize), record.subspan(dataStart));
    }
}

} // namespace

TreeHeader readTreeHeader(const Source& tree, const std::string& name)
{
    if (tree.size() < smallestNode) {
        throw damaged(name, "it has only " + std::to_string(tree.size()) + " bytes");
    }
    const auto node = tree.read(0, smallestNode);
    const auto* const p = node.data();
    const TreeHeader header{.depth = getBE16(p + 14),
                            .rootNode = getBE32(p + 16),
                            .leafRecords = getBE32(p + 20),
                            .firstLeaf = getBE32(p + 24),
                            .lastLeaf = getBE32(p + 28),
                            .nodeSize = getBE16(p + 32),
                            .maxKeyLength = getBE16(p + 34),
                            .totalNodes = getBE32(p + 36),
                            .freeNodes = getBE32(p + 40),
                            .clumpSize = getBE32(p + 46),
                            .type = p[50],
                            .keyCompareType = p[51],
                            .attributes = getBE32(p + 52)};
    if (p[8] != nodeKindHeader) {
        throw damaged(name, "its first node is no header");
    }
    if (header.nodeSize < smallestNode || header.nodeSize > largestNode || !std::has_single_bit(header.nodeSize)) {
        throw damaged(name, "its nodes have " + std::to_string(header.nodeSize) + " bytes");
    }
    if (header.totalNodes == 0 || header.totalNodes > tree.size() / header.nodeSize) {
        throw damaged(name, "its " + std::to_string(header.totalNodes) + " nodes exceed its file");
    }
    return header;
}

RecordList readLeaves(const Source& tree, const TreeHeader& header, const std::string& name)
{
    RecordList records;
    std::uint32_t previous = 0;
    for (auto number = header.firstLeaf; number != 0;) {
        if (number >= header.totalNodes) {
            throw damaged(name,
                          "it refers to node " + std::to_string(number) + " of " + std::to_string(header.totalNodes));
        }
        const auto node = tree.read(std::uint64_t{number} * header.nodeSize, header.nodeSize);
        // A node that knows who is before it cannot be reached twice, so the chain has an end.
        if (node[8] != nodeKindLeaf || getBE32(node.data() + 4) != previous) {
            throw damaged(name, "node " + std::to_string(number) + " is not the next leaf");
        }
        readRecords(records, node, number, name);
        previous = number;
        number = getBE32(node.data());
    }
    return records;
}

} // namespace velmora::diskimage::hfs
