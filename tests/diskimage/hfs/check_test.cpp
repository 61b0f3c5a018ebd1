#include "diskimage/hfs/check.h"

#include "diskimage/hfs/editor.h"
#include "diskimage/hfs/sample_trees.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::diskimage::hfs
{
namespace
{

using namespace test;
using testing::HasSubstr;

// The volume that the faults are put into: the usual clump sizes, 4096-byte blocks, so that the bitmap is block 1, the
// extents tree begins at block 2, the attributes tree at 18, the catalog at 34, the contents at 98.
constexpr std::uint64_t blockSize = 4096;
constexpr std::uint64_t headerAt = 1024;
constexpr std::uint64_t bitmapAt = 1 * blockSize;
constexpr std::uint64_t extentsAt = 2 * blockSize;
constexpr std::uint64_t attributesAt = 18 * blockSize;
constexpr std::uint64_t catalogAt = 34 * blockSize;

/// A sound volume with a tree of two levels, and what is needed to find things in it.
class Victim
{
public:
    Victim()
    {
        auto tree = folder("Victim", {folder("folder", {file("inside", 10)}), file("file", 3 * blockSize),
                                      file("other", blockSize), link("link", "file")});
        tree.children[1].attributes = {{"small", Bytes(4)}, {"large", Bytes(5000, 1)}};
        for (int i = 0; i < 40; ++i) {
            tree.children.push_back(file("more " + std::to_string(i)));
        }
        m_volume = makeVolume(tree, {}, 2 << 20);
    }

    Storage& volume() { return *m_volume; }

    void put(std::uint64_t offset, std::uint64_t value, std::size_t width, bool inBothHeaders = false)
    {
        Bytes bytes(8);
        putBE64(bytes.data(), value);
        const auto part = ByteView(bytes).last(width);
        m_volume->write(offset, part);
        if (inBothHeaders) {
            m_volume->write(offset - headerAt + m_volume->size() - 1024, part);
        }
    }

    [[nodiscard]] std::uint64_t recordOf(std::string_view name) const { return catalogRecord(*m_volume, name); }

    /// Where the thread record of a number begins.
    [[nodiscard]] std::uint64_t threadOf(std::uint32_t id) const
    {
        Bytes key;
        appendBE16(key, 6);
        appendBE32(key, id);
        appendBE16(key, 0);
        const auto catalog = m_volume->read(catalogAt, 64 * blockSize);
        const auto found = std::search(catalog.begin(), catalog.end(), key.begin(), key.end());
        return catalogAt + static_cast<std::uint64_t>(found - catalog.begin()) + key.size();
    }

    /// The same for the record of an attribute.
    [[nodiscard]] std::uint64_t attribute(std::size_t index) const
    {
        const auto leaf = attributesAt + 8192;
        const auto node = m_volume->read(leaf, 8192);
        const auto start = getBE16(node.data() + 8192 - 2 * (index + 1));
        return leaf + start;
    }

private:
    std::unique_ptr<Storage> m_volume;
};

} // namespace

TEST(Check, noticesEachFault)
{
    const auto leaf = catalogAt + blockSize; // the first leaf
    const struct {
        const char* name;
        const char* says;
        std::function<void(Victim&)> harm;
    } cases[] = {
        // The volume header.
        {"signature", "signature", [](Victim& v) { v.put(headerAt, 0x4244, 2); }},
        {"version", "signature or version", [](Victim& v) { v.put(headerAt + 2, 5, 2); }},
        {"block size", "block size", [](Victim& v) { v.put(headerAt + 40, 8192, 4); }},
        {"blocks beyond the device", "number of blocks", [](Victim& v) { v.put(headerAt + 44, 513, 4); }},
        {"blocks fewer than the device", "fill", [](Victim& v) { v.put(headerAt + 44, 511, 4, true); }},
        {"not unmounted", "unmounted", [](Victim& v) { v.put(headerAt + 4, 0x80000000, 4); }},
        {"inconsistent", "inconsistent", [](Victim& v) { v.put(headerAt + 4, 0x80004100, 4); }},
        {"number of files", "number of files", [](Victim& v) { v.put(headerAt + 32, 45, 4, true); }},
        {"number of folders", "number of folders", [](Victim& v) { v.put(headerAt + 36, 2, 4, true); }},
        {"free blocks", "free blocks", [](Victim& v) { v.put(headerAt + 48, 1, 4, true); }},
        {"next allocation", "next allocation", [](Victim& v) { v.put(headerAt + 52, 512, 4); }},
        {"resource clump", "resource forks", [](Victim& v) { v.put(headerAt + 56, 0, 4); }},
        {"data clump", "data forks", [](Victim& v) { v.put(headerAt + 60, 100, 4); }},
        {"next number in use", "next new file", [](Victim& v) { v.put(headerAt + 64, 20, 4, true); }},
        {"next number too low", "file system's own", [](Victim& v) { v.put(headerAt + 64, 15, 4, true); }},
        {"encodings", "text encoding", [](Victim& v) { v.put(headerAt + 72, 2, 8); }},
        {"catalog clump too large", "clump size of the catalog",
         [](Victim& v) { v.put(headerAt + 280, 1 << 20, 4, true); }},
        {"catalog clump zero", "clump size of the catalog", [](Victim& v) { v.put(headerAt + 280, 0, 4, true); }},
        {"attributes clump zero", "attributes tree", [](Victim& v) { v.put(headerAt + 360, 0, 4, true); }},
        {"special file shorter than its blocks", "fill its blocks",
         [](Victim& v) { v.put(headerAt + 112, 100, 8, true); }},
        {"alternate header missing", "missing", [](Victim& v) { v.put((2 << 20) - 1024, 0, 2); }},
        {"alternate creation date", "creation date", [](Victim& v) { v.put((2 << 20) - 1024 + 16, 7, 4); }},
        {"alternate places", "places", [](Victim& v) { v.put((2 << 20) - 1024 + 292, 63, 4); }},
        {"alternate counts", "counts", [](Victim& v) { v.put((2 << 20) - 1024 + 48, 63, 4); }},

        // The bitmap.
        {"used block free", "free, which are in use", [](Victim& v) { v.put(bitmapAt + 12, 0xDF, 1); }},
        {"free block used", "nobody has", [](Victim& v) { v.put(bitmapAt + 50, 0x10, 1); }},
        {"block 0 free", "blocks 0 to 0", [](Victim& v) { v.put(bitmapAt, 0x7F, 1); }},
        {"last block free", "blocks 511 to 511", [](Victim& v) { v.put(bitmapAt + 63, 0x00, 1); }},

        // Trees: the header nodes.
        {"depth", "catalog", [](Victim& v) { v.put(catalogAt + 14, 1, 2); }},
        {"depth beyond all", "levels deep", [](Victim& v) { v.put(catalogAt + 14, 9, 2); }},
        {"root", "catalog", [](Victim& v) { v.put(catalogAt + 16, 1, 4); }},
        {"leaf records", "number of leaf records", [](Victim& v) { v.put(catalogAt + 20, 7, 4); }},
        {"first leaf", "first leaf", [](Victim& v) { v.put(catalogAt + 24, 2, 4); }},
        {"last leaf", "last leaf", [](Victim& v) { v.put(catalogAt + 28, 1, 4); }},
        {"node size", "catalog", [](Victim& v) { v.put(catalogAt + 32, 8192, 2); }},
        {"odd node size", "catalog", [](Victim& v) { v.put(catalogAt + 32, 5000, 2); }},
        {"longest key", "longest key", [](Victim& v) { v.put(catalogAt + 34, 515, 2); }},
        {"total nodes", "number of nodes", [](Victim& v) { v.put(catalogAt + 36, 63, 4); }},
        {"free nodes", "free nodes", [](Victim& v) { v.put(catalogAt + 40, 3, 4); }},
        {"clump", "clump", [](Victim& v) { v.put(catalogAt + 46, 3, 4); }},
        {"tree type", "tree type", [](Victim& v) { v.put(catalogAt + 50, 128, 1); }},
        {"key order", "key order", [](Victim& v) { v.put(catalogAt + 51, 0xBC, 1); }},
        {"attributes", "attributes", [](Victim& v) { v.put(catalogAt + 52, 2, 4); }},
        {"records of the header node", "set of records", [](Victim& v) { v.put(catalogAt + 10, 2, 2); }},
        {"map lacks a node", "node 1 wrongly as free", [](Victim& v) { v.put(catalogAt + 248, 0xBF, 1); }},
        {"map has a node more", "node 40 wrongly as used", [](Victim& v) { v.put(catalogAt + 248 + 5, 0x80, 1); }},
        {"map node", "map node", [](Victim& v) { v.put(catalogAt, 40, 4); }},
        {"empty tree with a root", "empty", [](Victim& v) { v.put(extentsAt + 16, 1, 4); }},

        // Trees: other nodes.
        {"link to the next", "neighbours", [=](Victim& v) { v.put(leaf, 7, 4); }},
        {"link to the previous", "neighbours", [=](Victim& v) { v.put(leaf + blockSize + 4, 7, 4); }},
        {"kind", "kind or height", [=](Victim& v) { v.put(leaf + 8, 0, 1); }},
        {"height", "kind or height", [=](Victim& v) { v.put(leaf + 9, 2, 1); }},
        {"reserved field of a node", "reserved", [=](Victim& v) { v.put(leaf + 12, 1, 2); }},
        {"no records", "number of records", [=](Victim& v) { v.put(leaf + 10, 0, 2); }},
        {"too many records", "number of records", [=](Victim& v) { v.put(leaf + 10, 5000, 2); }},
        {"one record less", "leaf records",
         [=](Victim& v) { v.put(leaf + 10, getBE16(v.volume().read(leaf + 10, 2).data()) - 1U, 2); }},
        {"first offset", "misplaced", [=](Victim& v) { v.put(leaf + blockSize - 2, 16, 2); }},
        {"odd offset", "places of its records", [=](Victim& v) { v.put(leaf + blockSize - 3, 0x7B, 1); }},
        {"offsets not increasing", "places of its records", [=](Victim& v) { v.put(leaf + blockSize - 4, 14, 2); }},
        {"offset outside", "places of its records", [=](Victim& v) { v.put(leaf + blockSize - 4, 4096, 2); }},
        {"length of a key", "length of a key", [=](Victim& v) { v.put(leaf + 14, 8, 2); }},
        {"keys out of order", "out of order", [](Victim& v) { v.put(v.recordOf("more 1") - 2, 'z', 2); }},
        {"names equal but for case", "out of order or equal",
         [](Victim& v) { v.put(v.recordOf("more 11") - 2, '0', 2); }},
        {"index key", "another first key",
         [](Victim& v) {
             const auto root = getBE32(v.volume().read(catalogAt + 16, 4).data());
             const auto node = catalogAt + root * blockSize;
             const auto second = getBE16(v.volume().read(node + blockSize - 4, 2).data());
             v.put(node + second + 2, 2, 4);
             v.put(node + second + 8, 'a', 2);
         }},
        {"child that does not exist", "does not exist",
         [](Victim& v) {
             const auto root = getBE32(v.volume().read(catalogAt + 16, 4).data());
             const auto node = catalogAt + root * blockSize;
             const auto second = getBE16(v.volume().read(node + blockSize - 4, 2).data());
             v.put(node + second - 4U, 1000, 4);
         }},
        {"unused node not zero", "not all zero", [](Victim& v) { v.put(catalogAt + 50 * blockSize + 99, 1, 1); }},

        // Files and folders.
        {"record type", "unknown type", [](Victim& v) { v.put(v.recordOf("file"), 5, 2); }},
        {"record of the other type", "wrong length", [](Victim& v) { v.put(v.recordOf("folder"), 2, 2); }},
        {"reserved number", "file system's own", [](Victim& v) { v.put(v.recordOf("other") + 8, 9, 4); }},
        {"number twice", "same number", [](Victim& v) { v.put(v.recordOf("other") + 8, 16, 4); }},
        {"thread of another kind", "wrong kind", [](Victim& v) { v.put(v.threadOf(17), 4, 2); }},
        {"thread to another folder", "leads elsewhere", [](Victim& v) { v.put(v.threadOf(17) + 4, 3, 4); }},
        {"thread with another name", "leads elsewhere", [](Victim& v) { v.put(v.threadOf(17) + 10, 'x', 2); }},
        {"thread of nobody", "no file or folder", [](Victim& v) { v.put(v.recordOf("other") + 8, 5000, 4); }},
        {"valence", "entries and has", [](Victim& v) { v.put(v.recordOf("folder") + 4, 2, 4); }},
        {"folder count where nobody counts", "number of folders in it",
         [](Victim& v) { v.put(v.recordOf("folder") + 84, 1, 4); }},
        {"folder with a file's flag", "flag of files", [](Victim& v) { v.put(v.recordOf("folder") + 2, 2, 2); }},
        {"file without its flag", "lacks the flag", [](Victim& v) { v.put(v.recordOf("other") + 2, 0, 2); }},
        {"folder with a file's mode", "mode of something else",
         [](Victim& v) { v.put(v.recordOf("folder") + 42, 0100644, 2); }},
        {"file with a folder's mode", "mode of a folder",
         [](Victim& v) { v.put(v.recordOf("other") + 42, 040755, 2); }},
        {"link count", "counts links", [](Victim& v) { v.put(v.recordOf("other") + 44, 2, 4); }},
        {"reserved field of a file", "reserved", [](Victim& v) { v.put(v.recordOf("other") + 4, 2, 4); }},
        {"link by mode alone", "symbolic link", [](Victim& v) { v.put(v.recordOf("link") + 48, 0, 4); }},
        {"attribute flag without attributes", "extended attributes",
         [](Victim& v) { v.put(v.recordOf("other") + 2, 6, 2); }},
        {"attributes without the flag", "extended attributes", [](Victim& v) { v.put(v.recordOf("file") + 2, 2, 2); }},
        {"access control without records", "access control", [](Victim& v) { v.put(v.recordOf("other") + 2, 10, 2); }},
        {"text encoding", "text encoding", [](Victim& v) { v.put(v.recordOf("other") + 80, 7, 4); }},
        {"unknown text encoding", "unknown text encoding", [](Victim& v) { v.put(v.recordOf("other") + 80, 99, 4); }},
        {"locked name of the root", "locked", [](Victim& v) { v.put(v.recordOf("Victim") + 56, 0x1000, 2); }},
        {"name not decomposed", "decomposed", [](Victim& v) { v.put(v.recordOf("more 9") - 2, 0x00E9, 2); }},

        // Forks.
        {"overlap", "both have block", [](Victim& v) { v.put(v.recordOf("other") + 88 + 16, 98, 4); }},
        {"block 0", "no file may have", [](Victim& v) { v.put(v.recordOf("other") + 88 + 16, 0, 4); }},
        {"last block", "no file may have", [](Victim& v) { v.put(v.recordOf("other") + 88 + 16, 511, 4); }},
        {"beyond the volume", "no file may have",
         [](Victim& v) { v.put(v.recordOf("other") + 88 + 16, 0xFFFFFFFF, 4); }},
        {"empty extent before another", "empty extent",
         [](Victim& v) {
             v.put(v.recordOf("other") + 88 + 32, 300, 4);
             v.put(v.recordOf("other") + 88 + 36, 1, 4);
         }},
        {"extent without blocks", "not all zero", [](Victim& v) { v.put(v.recordOf("other") + 88 + 24, 300, 4); }},
        {"total blocks", "claims", [](Victim& v) { v.put(v.recordOf("other") + 88 + 12, 2, 4); }},
        {"size beyond the blocks", "more than its blocks", [](Victim& v) { v.put(v.recordOf("other") + 88, 4097, 8); }},
        {"resource fork", "resource fork", [](Victim& v) { v.put(v.recordOf("other") + 168, 1, 8); }},

        // Extended attributes.
        {"attribute's start block", "wrong key", [](Victim& v) { v.put(v.attribute(1) + 8, 1, 4); }},
        {"attribute's type", "unknown type", [](Victim& v) { v.put(v.attribute(1) + 14 + 10, 0x40, 4); }},
        {"attribute's length", "wrong length", [](Victim& v) { v.put(v.attribute(1) + 14 + 10 + 12, 400, 4); }},
        {"attribute of nobody", "belongs to no file", [](Victim& v) { v.put(v.attribute(1) + 4, 400, 4); }},
        {"attribute's fork", "claims", [](Victim& v) { v.put(v.attribute(0) + 14 + 10 + 8 + 12, 3, 4); }},
    };
    EXPECT_THAT(checkVolume(Victim().volume()), testing::IsEmpty());
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        Victim victim;
        row.harm(victim);
        EXPECT_THAT(checkVolume(victim.volume()), testing::Contains(HasSubstr(row.says)));
    }
}

TEST(Check, noticesBitsBehindTheLastBlock)
{
    auto tree = folder("x");
    const auto volume = makeVolume(tree, {}, 515 * blockSize);
    EXPECT_THAT(checkVolume(*volume), testing::IsEmpty());
    const std::uint8_t bits = 0x21; // block 514 is the last
    volume->write(bitmapAt + 64, ByteView(&bits, 1));
    EXPECT_THAT(checkVolume(*volume), testing::Contains(HasSubstr("behind the end")));
}

TEST(Check, noticesFaultsInTheExtentsTree)
{
    const struct {
        const char* name;
        const char* says;
        std::size_t offset; ///< in the first record of the first leaf
        std::uint32_t value;
    } cases[] = {{"another start", "instead of", 8, 1000},
                 {"of nobody", "no such fork", 4, 5000},
                 {"extent outside", "no file may have", 12, 0xFFFFFF}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        auto tree = folder("x");
        for (std::uint32_t i = 0; i < 40; ++i) {
            tree.children.push_back(file("block " + std::to_string(i), blockSize));
        }
        const auto volume = makeVolume(tree);
        VolumeEditor editor(*volume);
        for (std::uint32_t i = 0; i < 40; i += 2) {
            editor.remove("/block " + std::to_string(i));
        }
        editor.commit(0);
        editor.put("/", file("scattered", 12 * blockSize));
        editor.commit(0);
        EXPECT_THAT(checkVolume(*volume), testing::IsEmpty());
        Bytes value(4);
        putBE32(value.data(), row.value);
        volume->write(extentsAt + blockSize + 14 + row.offset, value);
        EXPECT_THAT(checkVolume(*volume), testing::Contains(HasSubstr(row.says)));
    }
}

TEST(Check, stopsAtTheLimit)
{
    Victim victim;
    victim.volume().write(bitmapAt, Bytes(64, 0xAA));
    EXPECT_EQ(checkVolume(victim.volume(), 3).size(), 3U);
    EXPECT_TRUE(checkVolume(victim.volume(), 0).empty());
}

} // namespace velmora::diskimage::hfs
