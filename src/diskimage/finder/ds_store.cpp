// The container of a .DS_Store file: an image of a buddy allocator. Offsets in the file count from its fifth byte. The
// space of 2^31 bytes is divided into blocks, each a power of two long and aligned to its length; a block's address is
// its offset with the binary logarithm of its length in the low five bits. Block 0 keeps the table of all addresses,
// a table of contents naming block 1 "DSDB", and 32 lists of free blocks; block 1 describes the tree, whose nodes are
// the other blocks. Header, blocks and free blocks cover the space exactly.

#include "diskimage/finder/ds_store.h"

#include "diskimage/base/error.h"
#include "diskimage/finder/ds_store_tree.h"

#include <algorithm>
#include <array>

namespace velmora::diskimage::finder
{
namespace
{

constexpr std::size_t base = 4; ///< where the space begins in the file
constexpr std::size_t headerSize = 36;
constexpr unsigned spaceWidth = 31;
constexpr unsigned smallestWidth = 5;
constexpr unsigned nodeWidth = 12;
constexpr std::uint32_t superblockOffset = 0x40;
constexpr std::uint32_t superblockBlock = 1;
constexpr std::size_t tableGranularity = 256;
constexpr std::string_view treeName = "DSDB";

/// A block, or a free one.
struct Block {
    std::uint32_t offset = 0;
    unsigned width = smallestWidth;
    [[nodiscard]] std::uint64_t end() const { return offset + (std::uint64_t{1} << width); }
    [[nodiscard]] std::uint32_t address() const { return offset | width; }
};

using FreeLists = std::array<std::vector<std::uint32_t>, 32>;

/// Halves a block until each part is free or used; `used` is sorted.
void collectFree(const Block& block, const std::vector<Block>& used, FreeLists& lists)
{
    const auto first = std::upper_bound(used.begin(), used.end(), block.offset,
                                        [](std::uint32_t offset, const Block& b) { return offset < b.end(); });
    if (first == used.end() || first->offset >= block.end()) {
        lists[block.width].push_back(block.offset);
    } else if (first->offset > block.offset || first->end() < block.end()) {
        const unsigned half = block.width - 1;
        collectFree({block.offset, half}, used, lists);
        collectFree({block.offset + (std::uint32_t{1} << half), half}, used, lists);
    }
}

Bytes bookkeeping(const std::vector<Block>& blocks)
{
    Bytes out;
    appendBE32(out, static_cast<std::uint32_t>(blocks.size()));
    appendBE32(out, 0);
    for (const Block& block : blocks)
        appendBE32(out, block.address());
    const std::size_t words = (blocks.size() + tableGranularity - 1) / tableGranularity * tableGranularity;
    out.resize(out.size() + (words - blocks.size()) * 4);
    appendBE32(out, 1);
    out.push_back(static_cast<std::uint8_t>(treeName.size()));
    append(out, treeName);
    appendBE32(out, superblockBlock);

    std::vector<Block> used = blocks;
    used.push_back({}); // the header
    std::sort(used.begin(), used.end(), [](const Block& a, const Block& b) { return a.offset < b.offset; });
    FreeLists lists;
    collectFree({0, spaceWidth}, used, lists);
    for (const auto& list : lists) {
        appendBE32(out, static_cast<std::uint32_t>(list.size()));
        for (const std::uint32_t offset : list)
            appendBE32(out, offset);
    }
    return out;
}

/// Header, superblock, nodes and bookkeeping one after the other, as the Finder lays out a fresh file. Fills in where
/// the bookkeeping block lies.
std::vector<Block> layOut(std::size_t nodeCount)
{
    constexpr std::size_t limit = std::size_t{1} << (spaceWidth - nodeWidth - 1);
    if (nodeCount > limit)
        throw DiskImageError("There are too many records for one .DS_Store file.");
    std::vector<Block> blocks{{}, {superblockOffset, smallestWidth}};
    for (std::size_t i = 1; i <= nodeCount; ++i)
        blocks.push_back({static_cast<std::uint32_t>(i << nodeWidth), nodeWidth});
    const std::uint64_t end = blocks.back().end();
    for (unsigned width = 11;; ++width) {
        const std::uint64_t size = std::uint64_t{1} << width;
        blocks[0] = {static_cast<std::uint32_t>((end + size - 1) / size * size), width};
        if (bookkeeping(blocks).size() <= size)
            return blocks;
    }
}

void place(Bytes& file, const Block& block, const Bytes& content)
{
    std::copy(content.begin(), content.end(), file.begin() + static_cast<std::ptrdiff_t>(base + block.offset));
}

Bytes headerOf(const std::vector<Block>& blocks)
{
    Bytes header;
    appendBE32(header, 1);
    append(header, "Bud1");
    appendBE32(header, blocks[0].offset);
    appendBE32(header, std::uint32_t{1} << blocks[0].width);
    appendBE32(header, blocks[0].offset);
    for (std::size_t number = 2; number < 6; ++number)
        appendBE32(header, number < blocks.size() ? blocks[number].address() : 0);
    return header;
}

Bytes superblockOf(const DsTree& tree)
{
    Bytes block;
    appendBE32(block, dsRootBlock);
    appendBE32(block, tree.levels);
    appendBE32(block, tree.recordCount);
    appendBE32(block, static_cast<std::uint32_t>(tree.nodes.size()));
    appendBE32(block, dsNodeSize);
    return block;
}

[[noreturn]] void fail(const std::string& why)
{
    throw DiskImageError("The .DS_Store file is damaged: " + why + ".");
}

class Reader
{
public:
    explicit Reader(ByteView file) : m_file(file)
    {
        if (file.size() < headerSize || getBE32(file.data()) != 1 || textOf(file.subspan(4, 4)) != "Bud1")
            fail("it does not begin as one");
        const std::uint32_t offset = getBE32(file.data() + 8);
        if (offset != getBE32(file.data() + 16))
            fail("the two offsets of its bookkeeping differ");
        readBookkeeping(range(offset, getBE32(file.data() + 12)));
    }

    std::vector<DsRecord> records()
    {
        const ByteView superblock = block(m_superblock);
        if (superblock.size() < 4)
            fail("its superblock is too small");
        readNode(getBE32(superblock.data()), 0);
        return std::move(m_records);
    }

private:
    [[nodiscard]] ByteView range(std::uint64_t offset, std::uint64_t length) const
    {
        const std::uint64_t space = m_file.size() - base;
        if (offset > space || length > space - offset)
            fail("a block lies outside the file");
        return m_file.subspan(base + offset, length);
    }

    /// The bytes of a numbered block.
    [[nodiscard]] ByteView block(std::uint32_t number) const
    {
        const std::uint32_t address = number < m_addresses.size() ? m_addresses[number] : 0;
        if (address == 0)
            fail("it refers to block " + std::to_string(number) + ", which does not exist or is in use already");
        return range(address & ~0x1Fu, std::uint64_t{1} << (address & 0x1F));
    }

    void readBookkeeping(ByteView bytes)
    {
        std::size_t offset = 0;
        const auto take = [&](std::uint64_t length) {
            if (length > bytes.size() - offset)
                fail("its bookkeeping is cut off");
            const ByteView part = bytes.subspan(offset, length);
            offset += length;
            return part;
        };
        const std::uint64_t count = getBE32(take(8).data());
        const std::uint64_t words = (count + tableGranularity - 1) / tableGranularity * tableGranularity;
        const ByteView table = take(words * 4);
        for (std::uint64_t i = 0; i < count; ++i)
            m_addresses.push_back(getBE32(table.data() + i * 4));
        for (std::uint32_t left = getBE32(take(4).data()); left > 0; --left) {
            const std::string name = textOf(take(take(1)[0]));
            const std::uint32_t number = getBE32(take(4).data());
            if (name == treeName) {
                m_superblock = number;
                return;
            }
        }
        fail("its table of contents has no \"DSDB\"");
    }

    void readNode(std::uint32_t number, int depth)
    {
        constexpr int deepest = 32;
        const ByteView node = block(number);
        m_addresses[number] = 0; // a node hangs in the tree once
        // Nor do the nodes of a sound file overlap: blocks within blocks could be read again and again.
        if (depth > deepest || node.size() > m_file.size() - m_nodeBytes)
            fail("its nodes form no tree");
        m_nodeBytes += node.size();
        std::size_t offset = 0;
        const auto word = [&] {
            if (node.size() - offset < 4)
                fail("a node is cut off");
            offset += 4;
            return getBE32(node.data() + offset - 4);
        };
        const std::uint32_t rightmost = word();
        for (std::uint32_t left = word(); left > 0; --left) {
            if (rightmost != 0)
                readNode(word(), depth + 1);
            m_records.push_back(readDsRecord(node, offset));
        }
        if (rightmost != 0)
            readNode(rightmost, depth + 1);
    }

    ByteView m_file;
    std::vector<std::uint32_t> m_addresses;
    std::uint32_t m_superblock = 0;
    std::size_t m_nodeBytes = 0;
    std::vector<DsRecord> m_records;
};

} // namespace

Bytes writeDsStore(std::vector<DsRecord> records)
{
    const DsTree tree = buildDsTree(std::move(records));
    const std::vector<Block> blocks = layOut(tree.nodes.size());
    Bytes file(base + blocks[0].end());
    const Bytes header = headerOf(blocks);
    std::copy(header.begin(), header.end(), file.begin());
    place(file, blocks[0], bookkeeping(blocks));
    place(file, blocks[superblockBlock], superblockOf(tree));
    for (std::size_t i = 0; i < tree.nodes.size(); ++i)
        place(file, blocks[dsRootBlock + i], tree.nodes[i]);
    return file;
}

std::vector<DsRecord> readDsStore(ByteView file)
{
    return Reader(file).records();
}

} // namespace velmora::diskimage::finder
