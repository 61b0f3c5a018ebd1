#include "diskimage/hfs/writer.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/check.h"
#include "diskimage/hfs/sample_trees.h"
#include "diskimage/hfs/volume.h"
#include "diskimage/message_of.h"
#include "diskimage/sparse_disk.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::diskimage::hfs
{
namespace
{

using namespace test;
using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint64_t MiB = 1 << 20;
constexpr std::uint64_t GiB = 1024 * MiB;
constexpr std::uint64_t TiB = 1024 * GiB;
constexpr ClumpSizes stockSizes{0, 0, 0};

/// Storage that only remembers what was written, for volumes larger than memory.
class SparseStorage : public Storage
{
public:
    using Source::read;
    explicit SparseStorage(std::uint64_t size) : m_size(size) {}
    [[nodiscard]] std::uint64_t size() const override { return m_size; }
    void read(std::uint64_t offset, MutableByteView out) const override
    {
        for (std::size_t i = 0; i < out.size();) {
            const auto inPage = (offset + i) % pageSize;
            const auto length = std::min<std::uint64_t>(pageSize - inPage, out.size() - i);
            const auto page = m_pages.find((offset + i) / pageSize);
            for (std::size_t k = 0; k < length; ++k) {
                out[i + k] = page == m_pages.end() ? std::uint8_t{0} : page->second[inPage + k];
            }
            i += length;
        }
    }
    void write(std::uint64_t offset, ByteView bytes) override
    {
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            auto& page = m_pages[(offset + i) / pageSize];
            page.resize(pageSize);
            page[(offset + i) % pageSize] = bytes[i];
        }
    }
    void resize(std::uint64_t size) override { m_size = size; }
    [[nodiscard]] std::size_t bytesWritten() const { return m_pages.size() * pageSize; }

private:
    static constexpr std::uint64_t pageSize = 4096;
    std::uint64_t m_size;
    std::map<std::uint64_t, Bytes> m_pages;
};

/// Storage to which the "system" copies, but never all that was asked for.
class CopyingStorage : public SparseStorage
{
public:
    using SparseStorage::SparseStorage;
    std::uint64_t copyFrom(const Source& source, ByteRange range, std::uint64_t offset) override
    {
        const auto length = range.length() / 3;
        write(offset, source.read(range.start, length));
        copied += length;
        return length;
    }
    std::uint64_t copied = 0;
};

Entry deepTree()
{
    auto tree = folder("deepest", {file("found", 10)});
    for (int i = 0; i < 300; ++i) {
        std::vector<Entry> children;
        children.push_back(std::move(tree));
        tree = folder("d" + std::to_string(i), std::move(children));
    }
    return tree;
}

Entry attributedTree()
{
    auto tree = folder("Attributes");
    for (std::uint32_t i = 0; i < 300; ++i) {
        auto entry = i % 2 == 0 ? file("f" + std::to_string(i)) : folder("d" + std::to_string(i));
        for (std::uint32_t k = 0; k < 10; ++k) {
            entry.attributes["attribute " + std::to_string(k)] = pattern(i * 13 % 4000, i + k);
        }
        tree.children.push_back(std::move(entry));
    }
    return tree;
}

} // namespace

TEST(Writer, whatIsWrittenIsSoundAndComesBack)
{
    const struct {
        const char* name;
        Entry tree;
        ClumpSizes clumps;
    } cases[] = {
        {"nothing", folder("Empty"), {}},
        {"everything that an entry can have", variedTree(), {}},
        {"stock sizes", variedTree(), stockSizes},
        {"300 folders deep", deepTree(), {}},
        {"3000 files in a folder", crowdedTree(3000), {}},
        {"several levels of index nodes", crowdedTree(6000, 255), {}},
        {"small growth unit", crowdedTree(500, 100), {1, 2, 1}},
        {"3000 attributes", attributedTree(), {}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        auto tree = row.tree;
        const auto volume = makeVolume(tree, {.clumps = row.clumps, .created = 1'700'000'000});
        EXPECT_THAT(checkVolume(*volume), IsEmpty());
        const Volume read(*volume);
        expectSameTree(read.root(), tree);
        EXPECT_EQ(read.root().created, 1'700'000'000);
        EXPECT_EQ(read.info().created, 1'700'000'000);
        EXPECT_EQ(read.info().name, posixName(storedName(tree.name)));
    }
}

TEST(Writer, theRequiredSizeIsTheSmallest)
{
    const struct {
        const char* name;
        Entry tree;
        ClumpSizes clumps;
    } cases[] = {{"tiny clumps", folder("x", {file("a", 600000)}), {1, 2, 1}},
                 {"the usual clumps", variedTree(), {}},
                 {"stock sizes", variedTree(), stockSizes},
                 {"catalog of several clumps", crowdedTree(3000), {}}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        auto tree = row.tree;
        const auto needed = requiredBytes(tree, {.clumps = row.clumps});
        EXPECT_EQ(needed % 4096, 0U);
        const auto exact = makeVolume(tree, {.clumps = row.clumps}, needed);
        EXPECT_EQ(Volume(*exact).info().freeBlocks, 0U);
        EXPECT_THAT(messageOf([&] { makeVolume(tree, {.clumps = row.clumps}, needed - 4096); }),
                    HasSubstr(std::to_string(needed)));
        for (const auto more : {std::uint64_t{4096}, 10 * MiB}) {
            EXPECT_THAT(checkVolume(*makeVolume(tree, {.clumps = row.clumps}, needed + more)), IsEmpty());
        }
    }
    EXPECT_EQ(requiredBytes(folder("x"), {.clumps = {1, 2, 1}}), 512U * 1024);
    EXPECT_THAT(messageOf([] { makeVolume(*std::make_unique<Entry>(folder("x")), {}, MiB + 512); }),
                HasSubstr("multiple"));
}

TEST(Writer, layoutOfAnEmptyVolumeIsThatOfTheFormatter)
{
    auto root = folder("x");
    const auto volume = makeVolume(root, {.created = 0, .identifier = 0x0123456789ABCDEF}, 100 * MiB);
    const auto header = volume->read(1024, 512);
    const auto field = [&](std::size_t offset) { return getBE32(header.data() + offset); };
    EXPECT_EQ(textOf(ByteView(header).first(4)), std::string("H+\0\x04", 4));
    EXPECT_EQ(field(4), 0x80000100U);
    EXPECT_EQ(field(8), 0x31302E30U);
    EXPECT_EQ(field(16), 2082844800U);
    EXPECT_EQ(field(40), 4096U);
    EXPECT_EQ(field(44), 25600U);
    EXPECT_EQ(field(48), 25600U - 99) << "reserved 2, bitmap 1, extents 16, attributes 16, catalog 64";
    EXPECT_EQ(field(56), 65536U);
    EXPECT_EQ(field(60), 65536U);
    EXPECT_EQ(field(64), 16U);
    EXPECT_EQ(field(76), 1U);
    EXPECT_EQ(field(88), 0U) << "no folder to be opened";
    EXPECT_EQ(getBE64(header.data() + 104), 0x0123456789ABCDEFU);
    const struct {
        const char* name;
        std::size_t offset;
        std::uint32_t start;
        std::uint32_t count;
    } forks[] = {{"bitmap", 112, 1, 1}, {"extents", 192, 2, 16}, {"attributes", 352, 18, 16}, {"catalog", 272, 34, 64}};
    for (const auto& row : forks) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(getBE64(header.data() + row.offset), row.count * 4096U);
        EXPECT_EQ(field(row.offset + 8), row.count * 4096U);
        EXPECT_EQ(field(row.offset + 16), row.start);
        EXPECT_EQ(field(row.offset + 20), row.count);
    }
    EXPECT_EQ(volume->read(volume->size() - 1024, 512), header);
    EXPECT_EQ(getBE16(volume->read(34 * 4096 + 32, 2).data()), 4096U);
    EXPECT_EQ(getBE16(volume->read(18 * 4096 + 32, 2).data()), 8192U);
}

TEST(Writer, largeVolumesAreFormattedAsMacOsWould)
{
    const struct {
        const char* name;
        std::uint64_t size;
        std::uint32_t blockSize;
        std::uint32_t catalogBytes;
        std::uint32_t attributesBytes;
        std::uint32_t nodeSize;
    } cases[] = {{"just below 1 GiB", GiB - 4096, 4096, 8 * MiB - 4096, 8 * MiB - 8192, 4096},
                 {"1 GiB", GiB, 4096, 4 * MiB, 4 * MiB, 8192},
                 {"40 GiB", 40 * GiB, 4096, 49 * MiB, 84 * MiB, 8192},
                 {"not whole blocks", 3 * TiB + 4096, 8192, 338 * MiB, 338 * MiB, 8192},
                 {"9 TiB", 9 * TiB, 16384, 446 * MiB, 446 * MiB, 8192},
                 {"20 TiB", 20 * TiB, 32768, 512 * MiB, 512 * MiB, 8192}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        SparseStorage volume(row.size);
        auto tree = folder("Large", {file("f", 100000)});
        writeVolume(volume, tree, {.clumps = stockSizes});
        const auto header = volume.read(1024, 512);
        EXPECT_EQ(getBE32(header.data() + 40), row.blockSize);
        EXPECT_EQ(getBE64(header.data() + 272), row.catalogBytes);
        EXPECT_EQ(getBE64(header.data() + 352), row.attributesBytes);
        const auto catalogStart = std::uint64_t{getBE32(header.data() + 288)} * row.blockSize;
        EXPECT_EQ(getBE16(volume.read(catalogStart + 32, 2).data()), row.nodeSize);
        EXPECT_LT(volume.bytesWritten(), 2 * MiB) << "free space is not written";
        expectSameTree(Volume(volume).root(), tree);
    }
}

TEST(Writer, aVolumeOfManyGigabytesIsSound)
{
    SparseStorage volume(40 * GiB);
    auto tree = variedTree();
    writeVolume(volume, tree, {});
    EXPECT_THAT(checkVolume(volume), IsEmpty());
}

TEST(Writer, treesBeyondTheHeadersMapGetMapNodes)
{
    SparseStorage volume(2 * GiB);
    auto tree = folder("Map nodes", {file("f", 100)});
    writeVolume(volume, tree, {.clumps = {.catalogBlocks = 131072, .attributesBlocks = 2, .extentsBlocks = 65536}});
    EXPECT_THAT(checkVolume(volume), IsEmpty());
    const auto header = volume.read(1024, 512);
    const auto catalog = volume.read(std::uint64_t{getBE32(header.data() + 288)} * 4096, 4);
    EXPECT_NE(getBE32(catalog.data()), 0U) << "65536 nodes of 8192 bytes need more than the header's 63488 bits";
}

TEST(Writer, theSameContentGivesTheSameBytes)
{
    auto one = variedTree();
    auto other = variedTree();
    std::reverse(other.children.begin(), other.children.end());
    const auto size = requiredBytes(one, {}) + MiB;
    const auto first = makeVolume(one, {}, size);
    EXPECT_TRUE(first->read(0, size) == makeVolume(other, {}, size)->read(0, size)) << "whatever the children's order";
    other.children.front().modified += 1;
    EXPECT_NE(Volume(*first).info().identifier, Volume(*makeVolume(other, {}, size)).info().identifier);
    EXPECT_EQ(Volume(*first).info().identifier, Volume(*makeVolume(one, {}, size + MiB)).info().identifier);
}

TEST(Writer, givesIdsAndPlacesAnybodyCanCompute)
{
    auto tree = folder("x", {file("b", 5000, 1), folder("A", {file("c", 3, 2)})});
    const auto volume = makeVolume(tree);
    EXPECT_EQ(tree.id, rootFolderId);
    EXPECT_EQ(tree.children[1].id, 16U);
    EXPECT_EQ(tree.children[0].id, 17U);
    EXPECT_EQ(tree.children[1].children[0].id, 18U);
    EXPECT_EQ(Volume(*volume).find("/a/C")->id, 18U);
    EXPECT_EQ(volume->read(98 * 4096, 5000), pattern(5000, 1));
    EXPECT_EQ(volume->read(98 * 4096 + 5000, 8192 - 5000), Bytes(8192 - 5000));
    EXPECT_EQ(volume->read(100 * 4096, 3), pattern(3, 2));
}

TEST(Writer, refusesWhatAVolumeCannotHold)
{
    const auto with = [](Entry entry) { return folder("x", {folder("in", {std::move(entry)})}); };
    const auto change = [](auto set) {
        auto entry = file("entry");
        set(entry);
        return entry;
    };
    const struct {
        const char* name;
        Entry tree;
        std::vector<std::string> says;
    } cases[] = {
        {"names that differ in case", folder("x", {file("Read me"), file("READ ME")}), {"Read me", "READ ME"}},
        {"names that differ in what is ignored", folder("x", {file("ab"), file("a\u200Db")}), {"ab", "a\u200Db"}},
        {"composed and decomposed", folder("x", {file("\u00E9"), file("e\u0301")}), {"e\u0301"}},
        {"a name of nothing that counts", folder("x", {folder("in", {file("\u200D")})}), {"/in", "ignores"}},
        {"a reserved name", with(file("..")), {"/in", ".."}},
        {"a root that is a file", file("x"), {"root"}},
        {"a volume name that is too long", folder(std::string(256, 'v')), {"too long"}},
        {"a link to nowhere", with(link("l", "")), {"/in/l", "link"}},
        {"a link that is too long", with(link("l", std::string(1025, 'x'))), {"/in/l", "1024"}},
        {"a link with a NUL", with(link("l", std::string("a\0", 2))), {"link"}},
        {"children of a file", with(change([](Entry& e) { e.children.push_back(file("c")); })), {"/in/entry"}},
        {"bytes from nowhere", with(change([](Entry& e) { e.dataSize = 1; })), {"/in/entry", "source"}},
        {"an endless file",
         with(change([](Entry& e) {
             e.dataSize = UINT64_MAX;
             e.openData = opens({});
         })),
         {"larger"}},
        {"an attribute's name too long",
         with(change([](Entry& e) { e.attributes[std::string(128, 'a')] = {}; })),
         {"127"}},
        {"an attribute without a name", with(change([](Entry& e) { e.attributes[""] = {}; })), {"entry"}},
        {"Finder information as an attribute",
         with(change([](Entry& e) { e.attributes["com.apple.FinderInfo"] = {}; })),
         {"com.apple.FinderInfo"}},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        const auto message = messageOf([&] { (void)requiredBytes(row.tree, {}); });
        for (const auto& part : row.says) {
            EXPECT_THAT(message, HasSubstr(part));
        }
    }
}

TEST(Writer, copiesTheSameWhateverTheSystemDoesOfIt)
{
    const auto treeOf = [](std::function<std::unique_ptr<Source>()> open) {
        auto tree = folder("x", {file("plain", 100'000), file("holed", 5 * MiB - 7)});
        tree.children[1].openData = std::move(open);
        return tree;
    };
    // Five megabytes of which the second and third are a hole.
    Bytes content = pattern(5 * MiB - 7, 3);
    std::fill(content.begin() + MiB, content.begin() + 3 * MiB, std::uint8_t{0});
    const auto disk = memoryStorage(content);
    const std::vector<ByteRange> data{{0, MiB}, {3 * MiB, content.size()}};
    auto plain = treeOf(opens(content));
    auto holed = treeOf([&] { return std::make_unique<SparseDisk>(*disk, data); });
    SparseStorage byHand(requiredBytes(plain, {}));
    CopyingStorage bySystem(byHand.size());
    EXPECT_EQ(writeVolume(byHand, plain, {}), writeVolume(bySystem, holed, {}));
    EXPECT_GT(bySystem.copied, MiB);
    EXPECT_TRUE(byHand.read(0, byHand.size()) == bySystem.read(0, bySystem.size()));
    auto other = treeOf(opens(pattern(5 * MiB - 7, 4)));
    EXPECT_NE(writeVolume(byHand, plain, {}), writeVolume(byHand, other, {})) << "the checksum covers the contents";
}

TEST(Writer, aFileThatChangedMeanwhileIsAnError)
{
    for (const std::size_t actual : {99U, 101U}) {
        auto tree = folder("x", {folder("in", {file("changing", 100)})});
        tree.children[0].children[0].openData = opens(Bytes(actual));
        EXPECT_THAT(messageOf([&] { makeVolume(tree); }), AllOf(HasSubstr("/in/changing"), HasSubstr("changed")));
    }
}

TEST(Writer, dropsWhatMeansNothingElsewhere)
{
    auto tree = folder("x", {file("f")});
    tree.setFinderFlags(finderFlagHasCustomIcon | 0x1000);
    tree.mode = 0;
    tree.children[0].attributes = {{"com.apple.system.Security", Bytes(44)}};
    const auto volume = makeVolume(tree);
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    const Volume read(*volume);
    EXPECT_TRUE(read.find("/f")->attributes.empty()) << "access-control lists";
    EXPECT_EQ(read.root().finderFlags(), finderFlagHasCustomIcon) << "a locked name of the root";
    EXPECT_EQ(read.root().mode, 0755U);
}

TEST(ClumpSizes, areReadAsTheFormatterTakesThem)
{
    const struct {
        const char* text;
        ClumpSizes sizes;
    } cases[] = {{"c=64,a=16,e=16", {64, 16, 16}}, {"-c c=64,a=16,e=16", {64, 16, 16}}, {"e=1", {0, 0, 1}}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.text);
        const auto sizes = parseClumpSizes(row.text);
        EXPECT_EQ(sizes.catalogBlocks, row.sizes.catalogBlocks);
        EXPECT_EQ(sizes.attributesBlocks, row.sizes.attributesBlocks);
        EXPECT_EQ(sizes.extentsBlocks, row.sizes.extentsBlocks);
    }
    for (const auto* text :
         {"", "c", "c=", "c=x", "c=0", "c=-1", "c=64,", "c=64;a=1", "c=1,c=2", "q=3", "c=4294967296", "c=64 ", "b=1"}) {
        SCOPED_TRACE(text);
        EXPECT_THROW(parseClumpSizes(text), DiskImageError);
    }
    auto tree = folder("x");
    EXPECT_THAT(messageOf([&] { makeVolume(tree, {.clumps = {64, 15, 16}}); }), HasSubstr("attributes tree"));
    EXPECT_THAT(messageOf([&] { makeVolume(tree, {.clumps = {0xFFFFFFFF, 16, 16}}); }), HasSubstr("catalog"));
}

} // namespace velmora::diskimage::hfs
