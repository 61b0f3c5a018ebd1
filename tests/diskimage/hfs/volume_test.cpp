#include "diskimage/hfs/volume.h"

#include "diskimage/base/error.h"
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
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;

void put(Storage& volume, std::uint64_t offset, std::uint64_t value, std::size_t width)
{
    Bytes bytes(8);
    putBE64(bytes.data(), value);
    volume.write(offset, ByteView(bytes).last(width));
}

/// A case-sensitive volume, made from one of ours whose names sort alike in both orders.
std::unique_ptr<Storage> caseSensitiveVolume()
{
    auto tree = folder("v", {folder("folder", {folder("inside")}), file("name", 10, 1)});
    auto volume = makeVolume(tree, {}, 1 << 20);
    for (const auto header : {std::uint64_t{1024}, volume->size() - 1024}) {
        put(*volume, header, 0x48580005, 4);
    }
    put(*volume, 34 * 4096 + 51, 0xBC, 1);
    const struct {
        const char* name;
        std::uint32_t folders;
    } folders[] = {{"v", 1}, {"folder", 1}, {"inside", 0}};
    for (const auto& row : folders) {
        put(*volume, catalogRecord(*volume, row.name) + 2, 0x10, 2);
        put(*volume, catalogRecord(*volume, row.name) + 84, row.folders, 4);
    }
    return volume;
}

/// A tree with a file that two names share.
Entry linkedTree()
{
    auto privateFolder = folder("\u2400\u2400\u2400\u2400HFS+ Private Data", {file("iNode1", 5000, 9)});
    privateFolder.children[0].attributes = {{"shared", Bytes(3)}};
    auto tree = folder("v", {privateFolder, file("one"), file("two"), folder("folder")});
    for (const std::size_t i : {1U, 2U}) {
        putBE64(tree.children[i].finderInfo.data(), 0x686C6E6B6866732B); // "hlnk", "hfs+"
    }
    return tree;
}

} // namespace

TEST(Volume, ofCaseSensitiveNamesKeepsThemApart)
{
    const auto volume = caseSensitiveVolume();
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    VolumeEditor editor(*volume);
    editor.put("/", file("NAME", 20, 2));
    editor.put("/folder", folder("Inside", {folder("a"), folder("A")}));
    editor.put("/", file("name", 30, 3));
    editor.remove("/Folder"); // is not there
    editor.remove("/folder/inside");
    editor.commit(0);
    EXPECT_THAT(checkVolume(*volume), IsEmpty()) << "with the folders counted in their parents";
    const Volume read(*volume);
    EXPECT_TRUE(read.info().caseSensitive);
    EXPECT_EQ(read.find("/name")->dataSize, 30U);
    EXPECT_EQ(read.find("/NAME")->dataSize, 20U);
    EXPECT_EQ(read.find("/Name"), nullptr);
    EXPECT_EQ(read.find("/folder/inside"), nullptr);
    EXPECT_EQ(read.find("/folder/Inside")->children.size(), 2U);
    put(*volume, catalogRecord(*volume, "folder") + 84, 7, 4);
    EXPECT_THAT(checkVolume(*volume), Contains(HasSubstr("number of folders in it")));
    put(*volume, catalogRecord(*volume, "folder") + 2, 0, 2);
    EXPECT_THAT(checkVolume(*volume), Contains(HasSubstr("counts its folders")));
}

TEST(Volume, findsByThePathInAnySpelling)
{
    auto tree = folder("v", {folder("Folder", {file("N\u00E4me:x", 3)})});
    const auto volume = makeVolume(tree);
    const Volume read(*volume);
    for (const auto* path : {"/Folder/N\u00E4me:x", "folder/na\u0308ME:X", "//Folder//n\u00C4me:x/"}) {
        SCOPED_TRACE(path);
        EXPECT_NE(read.find(path), nullptr);
    }
    EXPECT_EQ(read.find(""), &read.root());
    EXPECT_EQ(read.find("/"), &read.root());
    for (const auto* path : {"/Folder/..", "/Folder/missing", "/Folder/N\u00E4me:x/below", "/\xFF"}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(read.find(path), nullptr);
    }
}

TEST(Volume, showsThroughHardLinks)
{
    auto tree = linkedTree();
    const auto volume = makeVolume(tree);
    const Volume read(*volume);
    EXPECT_EQ(read.root().children.size(), 3U) << "the folder with what is shared is hidden";
    for (const auto* path : {"/one", "/two"}) {
        SCOPED_TRACE(path);
        const auto* const entry = read.find(path);
        EXPECT_EQ(entry->name, path + 1);
        EXPECT_EQ(entry->openData()->read(0, 5000), pattern(5000, 9));
        EXPECT_EQ(entry->attributes.count("shared"), 1U);
    }
    EXPECT_NE(read.find("/one")->id, read.find("/two")->id);

    VolumeEditor editor(*volume);
    EXPECT_THROW(editor.put("/", file("one", 5)), DiskImageError);
    EXPECT_THROW(editor.remove("/two"), DiskImageError);
    EXPECT_THROW(editor.remove("/\u2400\u2400\u2400\u2400HFS+ Private Data"), DiskImageError);
    EXPECT_THROW(editor.put("/\u2400\u2400\u2400\u2400HFS+ Private Data", file("x")), DiskImageError);
    EXPECT_NO_THROW(editor.put("/folder", file("x")));

    put(*volume, catalogRecord(*volume, "one") + 44, 2, 4);
    EXPECT_THROW(Volume{*volume}, DiskImageError) << "a link to nothing";
}

TEST(Volume, doesNotTakeCompressedFilesForEmptyOnes)
{
    auto tree = folder("v", {file("packed")});
    Bytes head(16);
    putLE64(head.data() + 8, 1234567);
    tree.children[0].attributes = {{"com.apple.decmpfs", head}, {"other", Bytes(1)}};
    const auto volume = makeVolume(tree);
    put(*volume, catalogRecord(*volume, "packed") + 41, 0x20, 1);
    const Volume read(*volume);
    EXPECT_EQ(read.find("/packed")->dataSize, 1234567U);
    EXPECT_EQ(read.find("/packed")->attributes.size(), 1U);
    EXPECT_THROW((void)read.find("/packed")->openData(), DiskImageError);
}

TEST(Volume, refusesWhatWouldMisleadWhoeverExtracts)
{
    const struct {
        const char* name;
        const char* entry;
        int offset; ///< from the record on; what is before it is its key
        std::uint64_t value;
        std::size_t width;
    } cases[] = {{"a name that leads upward", "aa", -4, 0x002E002E, 4},
                 {"one name twice", "ab", -2, 'a', 2},
                 {"a folder in itself", "folder", 8, 2, 4},
                 {"a folder twice", "second", 8, 19, 4},
                 {"a file's blocks outside the volume", "file", 88 + 16, 0xFFFFFFF0, 4},
                 {"a link of megabytes", "link", 88, 4097, 8}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        auto tree = folder(
            "v", {file("aa"), file("ab"), file("file", 10000), folder("folder"), folder("second"), link("link", "t")});
        const auto volume = makeVolume(tree);
        ASSERT_NO_THROW(Volume{*volume});
        put(*volume, catalogRecord(*volume, row.entry) + static_cast<std::uint64_t>(row.offset), row.value, row.width);
        EXPECT_THROW(Volume{*volume}, DiskImageError);
    }
}

TEST(Volume, foldersTooDeepToWalkAreRefused)
{
    auto tree = folder("deepest");
    for (int i = 0; i < 1001; ++i) {
        std::vector<Entry> children;
        children.push_back(std::move(tree));
        tree = folder("d", std::move(children));
    }
    EXPECT_THROW((void)requiredBytes(tree, {}), DiskImageError);
    EXPECT_NO_THROW((void)requiredBytes(tree.children[0], {}));
    const auto volume = makeVolume(tree.children[0]);
    EXPECT_NO_THROW(Volume{*volume});
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
}

} // namespace velmora::diskimage::hfs
