#include "diskimage/hfs/sample_trees.h"

#include "diskimage/base/storage.h"

#include <algorithm>

namespace velmora::diskimage::hfs::test
{

Bytes pattern(std::size_t size, std::uint32_t seed)
{
    Bytes bytes(size);
    auto state = seed * 2654435761U + 1;
    for (auto& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<std::uint8_t>(state >> 24);
    }
    return bytes;
}

std::function<std::unique_ptr<Source>()> opens(Bytes bytes)
{
    return [bytes = std::move(bytes)] { return memoryStorage(bytes); };
}

Entry folder(std::string name, std::vector<Entry> children)
{
    Entry entry;
    entry.name = std::move(name);
    entry.kind = EntryKind::folder;
    entry.mode = 0755;
    entry.created = 1'600'000'000;
    entry.modified = 1'650'000'000;
    entry.children = std::move(children);
    return entry;
}

Entry file(std::string name, std::size_t size, std::uint32_t seed)
{
    Entry entry;
    entry.name = std::move(name);
    entry.mode = 0644;
    entry.created = 1'500'000'000;
    entry.modified = 1'550'000'000;
    entry.dataSize = size;
    if (size > 0) {
        entry.openData = opens(pattern(size, seed));
    }
    return entry;
}

Entry link(std::string name, std::string target)
{
    auto entry = file(std::move(name));
    entry.kind = EntryKind::symlink;
    entry.mode = 0755;
    entry.linkTarget = std::move(target);
    return entry;
}

Entry variedTree()
{
    auto program = file("Program", 5000, 2);
    program.mode = 0755;
    auto oldStyle = file("with resources.rsrc", 100, 3);
    oldStyle.resourceSize = 70000;
    oldStyle.openResource = opens(pattern(70000, 4));
    putBE32(oldStyle.finderInfo.data(), 0x54455854);
    auto onlyResources = file("Icon\r");
    onlyResources.resourceSize = 1;
    onlyResources.openResource = opens({7});
    onlyResources.setFinderFlags(finderFlagIsInvisible);
    auto attributed = file("attributed", 4096, 5);
    attributed.attributes = {{"com.apple.quarantine", pattern(40, 6)},
                             {"empty", {}},
                             {"longest in a node", pattern(3802, 7)},
                             {"first outside", pattern(3803, 8)},
                             {"large", pattern(100000, 9)},
                             {"\xEF\xAC\x81 BMP", pattern(10, 10)},
                             {"\xF0\x9F\x8D\x8E beyond", pattern(11, 11)}};
    auto locked = file("old", 10, 12);
    locked.created = -3'000'000'000;
    locked.modified = 5'000'000'000;

    auto hole = file("zeros");
    hole.dataSize = 3'000'000;
    hole.openData = opens(Bytes(3'000'000));

    auto root = folder("Varied / \xC3\xA9", {});
    root.name = "Varied \xC3\xA9";
    root.setFinderFlags(finderFlagHasCustomIcon);
    root.attributes = {{"of the root", pattern(5, 13)}};
    root.children = {
        folder("Empty folder"),
        folder("App.app", {folder("Contents", {folder("MacOS", {program}), file("Info.plist", 300, 14)})}),
        oldStyle,
        onlyResources,
        attributed,
        locked,
        hole,
        file("exactly one block", 4096, 15),
        file("one byte more", 4097, 16),
        file("large", 3'500'001, 17),
        link("Applications", "/Applications"),
        link("a:b link", "folder:with/\xC3\xA9"),
        file("\xC3\x84\xC3\xB6 \xD0\x99 \xED\x95\x9C\xEA\xB5\xAD \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x8D\x8E", 20, 18),
        file("a:b", 21, 19),
        file("README.txt", 22, 20),
        file(std::string(255, 'n'), 23, 21)};
    return root;
}

Entry crowdedTree(std::size_t count, std::size_t nameLength)
{
    std::vector<Entry> files;
    for (std::size_t i = 0; i < count; ++i) {
        auto name = std::to_string(i * 7919 % count);
        name.insert(0, nameLength - std::min(nameLength, name.size()), 'x');
        files.push_back(file(std::move(name), i % 3 == 0 ? i % 5000 : 0, static_cast<std::uint32_t>(i)));
    }
    return folder("Crowded", {folder("many", std::move(files))});
}

std::unique_ptr<Storage> makeVolume(Entry& root, const VolumeOptions& options, std::uint64_t size)
{
    auto volume = memoryStorage();
    volume->resize(size != 0 ? size : requiredBytes(root, options));
    writeVolume(*volume, root, options);
    return volume;
}

std::uint64_t catalogRecord(const Source& volume, std::string_view name)
{
    const auto units = storedName(name);
    Bytes nameInKey;
    appendBE16(nameInKey, static_cast<std::uint16_t>(units.size()));
    for (const auto unit : units) {
        appendBE16(nameInKey, unit);
    }
    const auto header = volume.read(1024, 512);
    const auto start = std::uint64_t{getBE32(header.data() + 288)} * getBE32(header.data() + 40);
    const auto catalog = volume.read(start, static_cast<std::size_t>(getBE64(header.data() + 272)));
    const std::size_t nodeSize = getBE16(catalog.data() + 32);
    for (std::size_t i = 6; i + nameInKey.size() < catalog.size(); i += 2) {
        const bool isLeaf = catalog[i / nodeSize * nodeSize + 8] == 0xFF;
        if (isLeaf && getBE16(catalog.data() + i - 6) == 4 + nameInKey.size() &&
            std::equal(nameInKey.begin(), nameInKey.end(), catalog.begin() + static_cast<std::ptrdiff_t>(i))) {
            return start + i + nameInKey.size();
        }
    }
    ADD_FAILURE() << name << " is not in the catalog";
    return 0;
}

namespace
{

Bytes contentOf(const std::function<std::unique_ptr<Source>()>& open, std::uint64_t size)
{
    return size == 0 ? Bytes{} : open()->read(0, static_cast<std::size_t>(size));
}

std::int64_t asStored(std::int64_t date)
{
    return std::clamp<std::int64_t>(date, -2082844800, 0xFFFFFFFF - 2082844800LL);
}

} // namespace

void expectSameTree(const Entry& read, const Entry& written, const std::string& path)
{
    const auto here = path + "/" + written.name;
    SCOPED_TRACE(here);
    EXPECT_EQ(read.kind, written.kind);
    EXPECT_EQ(read.mode, written.mode);
    if (!path.empty()) {
        EXPECT_EQ(read.created, asStored(written.created)); // the root is as old as the volume
    }
    EXPECT_EQ(read.modified, asStored(written.modified));
    EXPECT_EQ(read.linkTarget, written.linkTarget);
    EXPECT_EQ(read.attributes, written.attributes);
    if (written.kind != EntryKind::symlink) {
        EXPECT_EQ(read.finderInfo, written.finderInfo);
    }
    ASSERT_EQ(read.dataSize, written.dataSize);
    ASSERT_EQ(read.resourceSize, written.resourceSize);
    EXPECT_TRUE(contentOf(read.openData, read.dataSize) == contentOf(written.openData, written.dataSize));
    EXPECT_TRUE(contentOf(read.openResource, read.resourceSize) ==
                contentOf(written.openResource, written.resourceSize));
    ASSERT_EQ(read.children.size(), written.children.size());
    if (written.children.size() > 100) {
        // By name: searching each among thousands would take long. Names in such folders are plain.
        std::map<std::string_view, const Entry*> byName;
        for (const auto& child : read.children) {
            byName[child.name] = &child;
        }
        for (const auto& child : written.children) {
            ASSERT_TRUE(byName.count(child.name)) << child.name;
            expectSameTree(*byName[child.name], child, here);
        }
        return;
    }
    for (const auto& child : written.children) {
        const auto* const found = findChild(read, child.name);
        ASSERT_NE(found, nullptr) << child.name;
        expectSameTree(*found, child, here);
    }
}

} // namespace velmora::diskimage::hfs::test
