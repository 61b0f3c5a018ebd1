#include "diskimage/hfs/editor.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/check.h"
#include "diskimage/hfs/sample_trees.h"
#include "diskimage/hfs/volume.h"
#include "diskimage/message_of.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::diskimage::hfs
{
namespace
{

using namespace test;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint64_t MiB = 1 << 20;
constexpr std::int64_t now = 1'750'000'000;

Bytes bytesOf(const Storage& volume)
{
    return volume.read(0, static_cast<std::size_t>(volume.size()));
}

/// A volume on which free blocks lie one by one between files of a block each.
std::unique_ptr<Storage> fragmentedVolume(std::uint32_t holes)
{
    auto tree = folder("Fragmented");
    for (std::uint32_t i = 0; i < 2 * holes; ++i) {
        tree.children.push_back(file("block " + std::to_string(i), 4096, i));
    }
    // Room for a larger catalog, and not a block more.
    auto volume = makeVolume(tree);
    VolumeEditor editor(*volume);
    for (std::uint32_t i = 0; i < holes; ++i) {
        editor.remove("/block " + std::to_string(2 * i));
    }
    editor.commit(now);
    return volume;
}

} // namespace

TEST(Editor, addsWithoutTouchingWhatIsThere)
{
    auto tree = variedTree();
    const auto volume = makeVolume(tree, {}, requiredBytes(tree, {}) + 20 * MiB);
    auto added = variedTree();
    added.name = "Added";
    auto icon = file(".VolumeIcon.icns", 50000, 30);
    {
        const auto before = bytesOf(*volume);
        VolumeEditor editor(*volume);
        editor.put("/App.app/Contents", added);
        editor.put("/", icon);
        editor.put("/", folder("Empty folder", {file("now it is not", 5)}));
        editor.changeFinderFlags("/", finderFlagHasCustomIcon, 0);
        editor.changeFinderFlags("/readme.TXT", finderFlagIsInvisible, 0);
        EXPECT_EQ(findChild(editor.root(), ".VolumeIcon.icns")->dataSize, 50000U) << "visible before the commit";
        const auto meanwhile = Volume(*volume);
        expectSameTree(meanwhile.root(), tree);
        editor.commit(now);
    }
    EXPECT_THAT(checkVolume(*volume), IsEmpty());

    const Volume read(*volume);
    for (const auto* path : {"/README.txt", "/attributed", "/App.app/Contents/MacOS/Program", "/zeros", "/a:b link"}) {
        SCOPED_TRACE(path);
        const auto* const old = [&] {
            const Entry* entry = &tree;
            for (std::string_view rest(path); !rest.empty();) {
                rest.remove_prefix(1);
                const auto slash = std::min(rest.find('/'), rest.size());
                entry = findChild(*entry, rest.substr(0, slash));
                rest.remove_prefix(slash);
            }
            return entry;
        }();
        ASSERT_NE(read.find(path), nullptr);
        EXPECT_EQ(read.find(path)->id, old->id);
    }
    expectSameTree(*read.find("/App.app/Contents/Added"), added, "/App.app/Contents");
    expectSameTree(*read.find("/.VolumeIcon.icns"), icon, "/");
    EXPECT_EQ(read.find("/Empty folder/now it is not")->dataSize, 5U);
    EXPECT_EQ(read.find("/Empty folder")->id, findChild(tree, "Empty folder")->id);
    EXPECT_EQ(read.root().finderFlags(), finderFlagHasCustomIcon);
    EXPECT_EQ(read.find("/README.txt")->finderFlags(), finderFlagIsInvisible);
    EXPECT_EQ(read.root().modified, now);
    EXPECT_EQ(read.find("/App.app")->modified, tree.modified) << "nothing was put into it";
}

TEST(Editor, replacesAFileAndKeepsItsId)
{
    auto tree = folder("x", {file("Config", 9000, 1), link("Link", "target"), file("other", 10)});
    tree.children[0].attributes = {{"old", Bytes(10)}, {"old and large", Bytes(5000, 1)}};
    tree.children[0].resourceSize = 100;
    tree.children[0].openResource = opens(Bytes(100, 3));
    const auto volume = makeVolume(tree, {}, 2 * MiB);
    const auto freeBefore = Volume(*volume).info().freeBlocks;
    auto replacement = file("CONFIG", 20000, 2);
    replacement.attributes = {{"new", Bytes(5)}};
    VolumeEditor editor(*volume);
    editor.put("/", replacement);
    editor.put("/", link("other", "now a link"));
    editor.put("/", file("Link", 1));
    editor.commit(now);
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    const Volume read(*volume);
    EXPECT_EQ(read.root().children.size(), 3U);
    replacement.name = "Config"; // the name that is there stays
    expectSameTree(*read.find("/config"), replacement, "/");
    EXPECT_EQ(read.find("/config")->id, tree.children[0].id);
    EXPECT_EQ(read.find("/other")->linkTarget, "now a link");
    EXPECT_EQ(read.find("/Link")->kind, EntryKind::file);
    EXPECT_EQ(read.info().freeBlocks, freeBefore + 3 + 1 + 2 - 5) << "old data, resource fork and attribute; new data";

    // Blocks that the first commit gave back are there for the next.
    editor.put("/", file("large", std::size_t{read.info().freeBlocks} * 4096));
    editor.commit(now);
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    EXPECT_EQ(Volume(*volume).info().freeBlocks, 0U);
}

TEST(Editor, removesEverythingBelow)
{
    auto tree = variedTree();
    const auto volume = makeVolume(tree);
    VolumeEditor editor(*volume);
    for (const auto& child : tree.children) {
        editor.remove("/" + child.name);
        editor.remove("/" + child.name);
    }
    editor.commit(now);
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    EXPECT_TRUE(Volume(*volume).root().children.empty());
    EXPECT_EQ(Volume(*volume).info().fileCount, 0U);
    EXPECT_EQ(Volume(*volume).info().folderCount, 0U);
}

TEST(Editor, growsTheTreesOnAVolumeMadeSmall)
{
    auto tree = folder("x");
    const auto volume = makeVolume(tree, {.clumps = {1, 2, 1}}, 30 * MiB);
    auto added = crowdedTree(3000, 200);
    for (std::size_t i = 0; i < 500; ++i) {
        added.children[0].children[i].attributes["name"] = pattern(300, 1);
    }
    VolumeEditor editor(*volume);
    editor.put("", added);
    expectSameTree(*findChild(editor.root(), "Crowded"), added);
    editor.commit(now);
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    expectSameTree(*Volume(*volume).find("/Crowded"), added);
}

TEST(Editor, usesScatteredBlocksAndTheExtentsTree)
{
    const auto volume = fragmentedVolume(60);
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    auto file1 = file("scattered", 30 * 4096 - 1, 500);
    file1.resourceSize = 10 * 4096;
    file1.openResource = opens(pattern(10 * 4096, 501));
    file1.attributes["scattered too"] = pattern(20 * 4096 - 5, 502);
    {
        VolumeEditor editor(*volume);
        editor.put("/", file1);
        expectSameTree(*findChild(editor.root(), "scattered"), file1, "/");
        editor.commit(now);
    }
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    expectSameTree(*Volume(*volume).find("/scattered"), file1, "/");
    EXPECT_EQ(Volume(*volume).info().freeBlocks, 0U);

    VolumeEditor editor(*volume);
    editor.remove("/scattered");
    editor.commit(now);
    EXPECT_THAT(checkVolume(*volume), IsEmpty()) << "no records are left in the extents tree";
    EXPECT_EQ(Volume(*volume).info().freeBlocks, 60U);
}

TEST(Editor, aCatalogMayBeScatteredToo)
{
    auto tree = folder("x");
    for (std::uint32_t i = 0; i < 300; ++i) {
        tree.children.push_back(file("block " + std::to_string(i), 4096, i));
    }
    const auto volume = makeVolume(tree, {.clumps = {1, 2, 1}});
    VolumeEditor editor(*volume);
    for (std::uint32_t i = 0; i < 300; i += 2) {
        editor.remove("/block " + std::to_string(i));
    }
    editor.commit(now);
    auto many = folder("many");
    for (std::uint32_t i = 0; i < 300; ++i) {
        many.children.push_back(file(std::string(180, 'n') + std::to_string(i)));
    }
    editor.put("/", many);
    editor.commit(now);
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
    expectSameTree(*Volume(*volume).find("/many"), many, "/");
    const auto header = volume->read(1024, 512);
    EXPECT_NE(getBE32(header.data() + 288 + 7 * 8), 0U) << "the catalog has more extents than the header holds";
}

TEST(Editor, refusesAndLeavesTheVolumeAsItWas)
{
    auto tree = folder("x", {file("file", 10), folder("folder", {file("inside", 5)})});
    const auto volume = makeVolume(tree, {}, MiB);
    const auto before = bytesOf(*volume);
    VolumeEditor editor(*volume);
    EXPECT_THAT(messageOf([&] { editor.put("/", file("large", 10 * MiB)); }), HasSubstr("bytes are missing"));
    EXPECT_THAT(messageOf([&] { editor.put("/", folder("FILE")); }), HasSubstr("FILE"));
    EXPECT_THAT(messageOf([&] { editor.put("/", file("folder")); }), HasSubstr("folder"));
    EXPECT_THAT(messageOf([&] { editor.put("/", folder("folder", {folder("inside")})); }), HasSubstr("inside"));
    EXPECT_THAT(messageOf([&] { editor.put("/missing", file("f")); }), HasSubstr("/missing"));
    EXPECT_THAT(messageOf([&] { editor.put("/file", file("f")); }), HasSubstr("not a folder"));
    EXPECT_THAT(messageOf([&] { editor.put("/", folder("f", {file("a"), file("A")})); }), HasSubstr("same name"));
    EXPECT_THAT(messageOf([&] { editor.remove("/"); }), HasSubstr("root"));
    EXPECT_THAT(messageOf([&] { editor.changeFinderFlags("/missing", 1, 0); }), HasSubstr("/missing"));
    editor.remove("/missing/either");
    expectSameTree(editor.root(), tree);
    EXPECT_TRUE(bytesOf(*volume) == before);

    auto liar = file("liar", 10);
    liar.openData = opens(Bytes(9));
    EXPECT_THAT(messageOf([&] { editor.put("/", liar); }), HasSubstr("liar"));
    EXPECT_THAT(messageOf([&] { editor.commit(now); }), HasSubstr("earlier change"));
    expectSameTree(Volume(*volume).root(), tree);
    EXPECT_THAT(checkVolume(*volume), IsEmpty());
}

TEST(Editor, refusesVolumesThatMustNotBeChanged)
{
    auto tree = folder("x", {file("journal info", 4096), file("journal", 8192)});
    const auto sound = makeVolume(tree);
    const auto infoBlock = 98U; // the first behind the trees
    const auto journaled = [&](std::uint32_t flags, std::uint32_t magic, std::uint64_t end) {
        auto volume = memoryStorage(bytesOf(*sound));
        Bytes info(52);
        putBE32(info.data(), flags);
        putBE64(info.data() + 36, 99 * 4096);
        volume->write(infoBlock * 4096, info);
        Bytes journal(24);
        putLE32(journal.data(), magic);
        putLE64(journal.data() + 8, 512);
        putLE64(journal.data() + 16, end);
        volume->write(99 * 4096, journal);
        Bytes header(12);
        putBE32(header.data(), 0x80002100);
        putBE32(header.data() + 8, infoBlock);
        volume->write(1024 + 4, header);
        return volume;
    };
    constexpr std::uint32_t magic = 0x4A4E4C78;
    EXPECT_NO_THROW(VolumeEditor(*journaled(1, magic, 512))) << "an empty journal";
    EXPECT_NO_THROW(VolumeEditor(*journaled(5, 0, 1024))) << "one that was never used";
    EXPECT_THAT(messageOf([&] { VolumeEditor(*journaled(1, magic, 1024)); }), HasSubstr("journal"));
    EXPECT_THAT(messageOf([&] { VolumeEditor(*journaled(1, 0, 512)); }), HasSubstr("journal"));
    EXPECT_THAT(messageOf([&] { VolumeEditor(*journaled(2, magic, 512)); }), HasSubstr("journal"));

    for (const std::uint32_t attributes : {0x80000000U, 0x80000900U, 0x80004100U}) {
        SCOPED_TRACE(attributes);
        auto volume = memoryStorage(bytesOf(*sound));
        Bytes bits(4);
        putBE32(bits.data(), attributes);
        volume->write(1024 + 4, bits);
        EXPECT_THAT(messageOf([&] { VolumeEditor editor(*volume); }), HasSubstr("unmounted"));
    }
}

TEST(Editor, doesNotTrustTheBitmapWithTheFileSystemsOwnBlocks)
{
    auto tree = folder("x");
    const auto volume = makeVolume(tree, {}, MiB);
    volume->write(4096, Bytes(16)); // all of the first 128 blocks are free, says the bitmap
    VolumeEditor editor(*volume);
    editor.put("/", file("f", 100 * 4096));
    editor.commit(now);
    expectSameTree(*Volume(*volume).find("/f"), file("f", 100 * 4096), "/");
}

} // namespace velmora::diskimage::hfs
