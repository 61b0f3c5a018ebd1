#include "diskimage/base/error.h"
#include "diskimage/finder/ds_store.h"
#include "diskimage/hfs/names.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>

namespace velmora::diskimage::finder
{
namespace
{

using testing::HasSubstr;

DsRecord position(const std::string& name, std::uint8_t x = 0)
{
    Bytes data(16);
    data[3] = x;
    return {hfs::storedName(name), "Iloc", "blob", data};
}

std::vector<DsRecord> manyRecords(std::size_t count)
{
    std::vector<DsRecord> records;
    for (std::size_t i = 0; i < count; ++i) {
        // Names of every length up to the longest, in no order.
        std::string name = std::to_string(i * 7919 % 10007) + "_";
        name.resize(std::min<std::size_t>(255, name.size() + i % 251), static_cast<char>('a' + i % 26));
        records.push_back(position(name, static_cast<std::uint8_t>(i)));
    }
    return records;
}

/// A reading of the container that shares nothing with the library and takes nothing for granted.
class Container
{
public:
    explicit Container(const Bytes& file) : m_file(file)
    {
        const std::size_t bookkeeping = word(8) + 4;
        EXPECT_EQ(word(8), word(16));
        const std::uint32_t count = word(bookkeeping);
        for (std::uint32_t i = 0; i < count; ++i)
            m_addresses.push_back(word(bookkeeping + 8 + 4 * i));
        EXPECT_EQ(std::size_t{1} << (m_addresses[0] & 31), word(12));
        for (std::size_t i = 2; i < 6; ++i)
            EXPECT_EQ(word(0x14 + (i - 2) * 4), i < count ? m_addresses[i] : 0u);
        std::size_t offset = bookkeeping + 8 + (count + 255) / 256 * 256 * 4;
        EXPECT_EQ(word(offset), 1u);
        EXPECT_EQ(m_file[offset + 4], 4);
        EXPECT_EQ(word(offset + 5), 0x44534442u); // "DSDB"
        EXPECT_EQ(word(offset + 9), 1u);
        readFreeLists(offset + 13);
    }

    /// Header, blocks and free blocks, by offset: each begins where the one before ends.
    void expectTiling() const
    {
        std::map<std::uint64_t, std::uint64_t> pieces = m_free;
        const auto add = [&](std::uint64_t offset, std::uint64_t size) {
            EXPECT_TRUE(pieces.emplace(offset, size).second) << offset;
        };
        add(0, 32);
        for (const std::uint32_t address : m_addresses)
            add(address & ~31u, std::uint64_t{1} << (address & 31));
        std::uint64_t next = 0;
        for (const auto& [offset, size] : pieces) {
            ASSERT_EQ(offset, next);
            ASSERT_EQ(offset % size, 0u);
            next = offset + size;
        }
        EXPECT_EQ(next, std::uint64_t{1} << 31);
        for (const std::uint32_t address : m_addresses)
            EXPECT_LE(4 + (address & ~31u) + (std::uint64_t{1} << (address & 31)), m_file.size());
    }

    struct Node {
        std::vector<std::uint32_t> children;
        std::vector<DsRecord> records;
        std::size_t used = 8;
    };

    [[nodiscard]] Node node(std::uint32_t block) const
    {
        Node result;
        std::size_t offset = 4 + (m_addresses.at(block) & ~31u);
        const std::uint32_t rightmost = word(offset);
        const std::uint32_t count = word(offset + 4);
        offset += 8;
        for (std::uint32_t i = 0; i < count; ++i) {
            if (rightmost != 0) {
                result.children.push_back(word(offset));
                offset += 4;
                result.used += 4;
            }
            DsRecord record{std::u16string(word(offset), u'?'), "", "blob", Bytes(16)};
            for (std::size_t k = 0; k < record.name.size(); ++k)
                record.name[k] = static_cast<char16_t>(m_file[offset + 4 + 2 * k] << 8 | m_file[offset + 5 + 2 * k]);
            const auto code = m_file.begin() + static_cast<std::ptrdiff_t>(offset + 4 + 2 * record.name.size());
            record.code.assign(code, code + 4);
            std::copy_n(code + 12, 16, record.data.begin());
            result.records.push_back(record);
            const std::size_t length = 4 + 2 * record.name.size() + 12 + 16;
            offset += length;
            result.used += length;
        }
        if (rightmost != 0)
            result.children.push_back(rightmost);
        return result;
    }

    /// As the Finder looks a record up.
    [[nodiscard]] bool finds(const DsRecord& wanted) const
    {
        for (std::uint32_t block = superblock(0);;) {
            const Node current = node(block);
            std::size_t index = 0;
            while (index < current.records.size() && hfs::compareNames(current.records[index].name, wanted.name) < 0)
                ++index;
            if (index < current.records.size() && current.records[index].name == wanted.name)
                return current.records[index] == wanted;
            if (current.children.empty())
                return false;
            block = current.children[index];
        }
    }

    [[nodiscard]] std::uint32_t superblock(std::size_t field) const
    {
        return word(4 + (m_addresses.at(1) & ~31u) + field * 4);
    }

private:
    [[nodiscard]] std::uint32_t word(std::size_t offset) const
    {
        if (offset + 4 > m_file.size())
            throw std::out_of_range("beyond the file");
        return getBE32(m_file.data() + offset);
    }

    void readFreeLists(std::size_t offset)
    {
        for (unsigned width = 0; width < 32; ++width) {
            std::uint32_t count = word(offset);
            for (offset += 4; count > 0; --count, offset += 4)
                EXPECT_TRUE(m_free.emplace(word(offset), std::uint64_t{1} << width).second);
        }
    }

    const Bytes& m_file;
    std::vector<std::uint32_t> m_addresses;
    std::map<std::uint64_t, std::uint64_t> m_free;
};

struct Totals {
    std::uint32_t nodes = 0;
    std::vector<DsRecord> records;
};

void walk(const Container& container, std::uint32_t block, std::uint32_t levelsBelow, Totals& totals)
{
    const Container::Node node = container.node(block);
    ++totals.nodes;
    EXPECT_LE(node.used, 0x1000u);
    EXPECT_EQ(node.children.empty(), levelsBelow == 0);
    for (std::size_t i = 0; i < node.records.size(); ++i) {
        if (!node.children.empty())
            walk(container, node.children[i], levelsBelow - 1, totals);
        totals.records.push_back(node.records[i]);
    }
    if (!node.children.empty())
        walk(container, node.children.back(), levelsBelow - 1, totals);
}

TEST(DsStore, isConsistentAtAnySize)
{
    for (const std::size_t count : {0u, 1u, 2u, 60u, 61u, 3000u}) {
        SCOPED_TRACE(count);
        const std::vector<DsRecord> records = manyRecords(count);
        const Bytes file = writeDsStore(records);
        const Container container(file);
        container.expectTiling();
        EXPECT_EQ(container.superblock(0), 2u);
        Totals totals;
        walk(container, 2, container.superblock(1), totals);
        EXPECT_EQ(container.superblock(1), count < 60 ? 0u : count < 3000 ? 1u : 3u);
        EXPECT_EQ(container.superblock(2), count);
        EXPECT_EQ(container.superblock(3), totals.nodes);
        ASSERT_EQ(totals.records.size(), count);
        for (std::size_t i = 1; i < count; ++i)
            ASSERT_LT(hfs::compareNames(totals.records[i - 1].name, totals.records[i].name), 0);
        for (const DsRecord& record : records)
            ASSERT_TRUE(container.finds(record));
        EXPECT_EQ(readDsStore(file), totals.records);
    }
}

TEST(DsStore, startsANodeOnlyForARecordThatDoesNotFit)
{
    // 4088 bytes of records in a leaf: 73 of 56 bytes.
    for (const std::size_t count : {73u, 74u, 75u}) {
        SCOPED_TRACE(count);
        std::vector<DsRecord> records;
        for (std::size_t i = 0; i < count; ++i)
            records.push_back(position(std::to_string(100000000000 + i)));
        const Bytes file = writeDsStore(records);
        const Container container(file);
        EXPECT_EQ(container.superblock(3), count == 73 ? 1u : 3u);
        if (count > 73) {
            EXPECT_EQ(container.node(3).records.size(), count == 74 ? 72u : 73u);
            EXPECT_EQ(container.node(4).records.size(), 1u);
        }
    }
}

TEST(DsStore, ordersNamesThenCodes)
{
    const std::vector<std::string> names = {".", ".background", "10", "9", "_", "a", "B", "e", "é", "f", "ø", "𝄞"};
    std::vector<DsRecord> records;
    for (auto name = names.rbegin(); name != names.rend(); ++name)
        records.push_back({*name == "." ? u"." : hfs::storedName(*name), "vSrn", "long", {0, 0, 0, 1}});
    for (const char* code : {"vstl", "bwsp", "Iloc"})
        records.push_back({u"a", code, "type", {1, 2, 3, 4}});
    std::vector<std::string> order;
    for (const DsRecord& record : readDsStore(writeDsStore(records)))
        order.push_back((record.name == u"." ? "." : hfs::posixName(record.name)) + "/" + record.code);
    EXPECT_THAT(order, testing::ElementsAre("./vSrn", ".background/vSrn", "10/vSrn", "9/vSrn", "_/vSrn", "a/Iloc",
                                            "a/bwsp", "a/vSrn", "a/vstl", "B/vSrn", "e/vSrn", "e\u0301/vSrn", "f/vSrn",
                                            "ø/vSrn", "𝄞/vSrn"));
}

TEST(DsStore, keepsEveryTypeOfData)
{
    const std::vector<DsRecord> records = {
        {u"a", "aaaa", "bool", {1}},          {u"b", "bbbb", "long", {1, 2, 3, 4}},
        {u"c", "cccc", "shor", {0, 0, 3, 4}}, {u"d", "dddd", "type", {'i', 'c', 'n', 'v'}},
        {u"e", "eeee", "blob", {}},           {u"f", "ffff", "ustr", {0, 65, 0, 66}},
        {u"g", "gggg", "comp", Bytes(8, 7)},  {u"h", "hhhh", "dutc", Bytes(8, 9)},
    };
    EXPECT_EQ(readDsStore(writeDsStore(records)), records);
}

TEST(DsStore, refusesRecordsThatItCannotHold)
{
    const auto errorOf = [](std::vector<DsRecord> records) -> std::string {
        try {
            writeDsStore(std::move(records));
        } catch (const DiskImageError& error) {
            return error.what();
        }
        return {};
    };
    EXPECT_THAT(errorOf({position("readme"), position("README")}), HasSubstr("two .DS_Store records for \"readme\""));
    EXPECT_EQ(errorOf({{u".", "icvp", "blob", Bytes(4084 - 4 - 2 - 12)}}), "");
    EXPECT_THAT(errorOf({{u".", "icvp", "blob", Bytes(4085 - 4 - 2 - 12)}}), HasSubstr("too large"));
    EXPECT_THAT(errorOf({{u"a", "icv", "blob", {}}}), HasSubstr("do not suit"));
    EXPECT_THAT(errorOf({{u"a", "aaaa", "long", {1}}}), HasSubstr("do not suit"));
    EXPECT_THAT(errorOf({{u"a", "aaaa", "ustr", {1}}}), HasSubstr("do not suit"));
    EXPECT_THAT(errorOf({{u"a", "aaaa", "what", {1}}}), HasSubstr("do not suit"));
    // Records so large that no node takes two.
    std::vector<DsRecord> large;
    for (const char16_t name : {u'a', u'b', u'c', u'd', u'e', u'f'}) {
        large.push_back({std::u16string(1, name), "aaaa", "blob", Bytes(3000)});
        EXPECT_EQ(readDsStore(writeDsStore(large)), large);
    }
}

TEST(HostileDsStore, endsInAnErrorOrInRecords)
{
    const Bytes good = writeDsStore(manyRecords(200));
    const auto reads = [](const Bytes& bytes) {
        try {
            (void)readDsStore(bytes);
            return true;
        } catch (const DiskImageError&) {
            return false;
        }
    };
    EXPECT_TRUE(reads(good));
    for (std::size_t length = 0; length < good.size() - 2048; length += 61) // the end of the last block is unused
        EXPECT_FALSE(reads(Bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(length)))) << length;
    const std::size_t bookkeeping = 4 + getBE32(good.data() + 8);
    const auto spoil = [&](std::size_t begin, std::size_t end) {
        for (std::size_t offset = begin; offset < end; offset += 2) {
            for (const std::uint32_t value : {0u, 1u, 2u, 3u, 0x100Cu, 0x1Fu, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
                Bytes bad = good;
                putBE32(bad.data() + offset, value);
                reads(bad);
            }
        }
    };
    spoil(0, 0x60);
    spoil(0x1004, 0x1004 + 200);
    spoil(0x2004, 0x2004 + 100);
    spoil(bookkeeping, bookkeeping + 100);
    spoil(bookkeeping + 8 + 1024, bookkeeping + 8 + 1024 + 13);
}

TEST(HostileDsStore, mayNotContainItself)
{
    Bytes file = writeDsStore(manyRecords(200));
    // The root's first child becomes the root.
    putBE32(file.data() + 0x1004 + 8, 2);
    EXPECT_THROW((void)readDsStore(file), DiskImageError);
    // Or two children are one.
    Bytes flat = writeDsStore(manyRecords(60));
    putBE32(flat.data() + 0x1004 + 8, 3);
    putBE32(flat.data() + 0x1004, 3);
    EXPECT_THROW((void)readDsStore(flat), DiskImageError);
    // Or blocks of other numbers lie at the same place.
    Bytes overlapping = writeDsStore(manyRecords(200));
    const std::size_t table = 4 + getBE32(overlapping.data() + 8) + 8;
    for (std::size_t block = 4; block < getBE32(overlapping.data() + table - 8); ++block)
        putBE32(overlapping.data() + table + 4 * block, 0x0000000D); // the first 8 KiB, a node of some kind
    EXPECT_THROW((void)readDsStore(overlapping), DiskImageError);
}

} // namespace
} // namespace velmora::diskimage::finder
