#include "diskimage/hfs/catalog_records.h"
#include "diskimage/hfs/editor.h"
#include "diskimage/hfs/format.h"
#include "diskimage/hfs/names.h"
#include "diskimage/hfs/volume.h"
#include "diskimage/hfs/volume_header.h"
#include "diskimage/hfs/writer.h"
#include "seeds.h"
#include "support/sparse_disk.h"
#include "support/target.h"

#include <algorithm>
#include <functional>
#include <limits>

namespace velmora::fuzz
{

using namespace diskimage;
using namespace diskimage::hfs;

namespace
{

constexpr std::size_t volumeSize = std::size_t{512} << 10;
constexpr std::size_t blockSize = 4096;
// In the volume header.
constexpr std::size_t attributesOffset = 4;
constexpr std::size_t catalogOffset = 272;
constexpr std::size_t firstExtentOffset = 16; // in fork data
// In folder and file records.
constexpr std::size_t modeOffset = 42;
constexpr std::size_t specialOffset = 44;
constexpr std::size_t dataForkOffset = 88;
constexpr std::size_t resourceForkOffset = 168;

Entry file(std::string name, std::size_t size = 0)
{
    Entry entry;
    entry.name = std::move(name);
    entry.mode = 0644;
    entry.dataSize = size;
    entry.openData = [size] { return memoryStorage(Bytes(size, 7)); };
    return entry;
}

Entry folder(std::string name, std::vector<Entry> children = {})
{
    Entry entry;
    entry.name = std::move(name);
    entry.kind = EntryKind::folder;
    entry.children = std::move(children);
    return entry;
}

std::unique_ptr<Storage> volumeOf(std::vector<Entry> children)
{
    Entry root = folder("Volume", std::move(children));
    auto volume = memoryStorage(Bytes(volumeSize));
    writeVolume(*volume, root, {{4, 2, 1}, 1'600'000'000, 1});
    return volume;
}

/// One of everything.
Bytes variedVolume()
{
    Entry link = file("link");
    link.kind = EntryKind::symlink;
    link.linkTarget = "/Applications";
    Entry attributed = file("attributed \xC3\xA9", 10);
    attributed.attributes = {{"small", Bytes(20, 1)}, {"large", Bytes(5000, 2)}};
    attributed.resourceSize = 5;
    attributed.openResource = [] { return memoryStorage(Bytes(5, 3)); };
    return bytesOf(*volumeOf({folder("App", {folder("Contents", {file("Program", 5000)})}), file("a", 1),
                              file("b", 4097), link, attributed}));
}

/// More records than one node holds: leaves and index nodes.
Bytes crowdedVolume()
{
    std::vector<Entry> files;
    for (int i = 0; i < 30; ++i)
        files.push_back(file("file " + std::to_string(i)));
    return bytesOf(*volumeOf(std::move(files)));
}

Bytes deepVolume()
{
    Entry inner = folder("f");
    for (int i = 0; i < 12; ++i)
        inner = folder("f", {std::move(inner)});
    return bytesOf(*volumeOf({std::move(inner)}));
}

/// A file in more pieces than its record holds, on a volume that is nearly full.
Bytes fragmentedVolume()
{
    std::vector<Entry> files;
    for (int i = 0; i < 24; ++i)
        files.push_back(file("f" + std::to_string(i), blockSize));
    files.push_back(file("rest"));
    const std::size_t rest = Volume(*volumeOf(files)).info().freeBlocks * blockSize;
    files.back().dataSize = rest;
    files.back().openData = [rest] { return memoryStorage(Bytes(rest)); };
    const auto volume = volumeOf(files);
    VolumeEditor editor(*volume);
    for (int i = 1; i < 24; i += 2)
        editor.remove("/f" + std::to_string(i));
    editor.commit(1'600'000'000);
    editor.put("/", file("pieces", 10 * blockSize));
    editor.commit(1'600'000'000);
    return bytesOf(*volume);
}

/// Both kinds of what a hard link needs; new file records refer to the number 1.
Bytes linkedVolume()
{
    Entry link = file("hard link");
    std::copy_n("hlnkhfs+", 8, link.finderInfo.begin());
    const std::string nul = "\xE2\x90\x80"; // stands for a NUL in a name
    return bytesOf(*volumeOf({folder(nul + nul + nul + nul + "HFS+ Private Data", {file("iNode1", 5)}), link}));
}

/// A volume in the wrapper of old systems.
Bytes wrappedVolume()
{
    constexpr std::size_t front = 8192;
    Bytes disk(front);
    append(disk, variedVolume());
    std::uint8_t* block = disk.data() + volumeHeaderOffset;
    std::copy_n("BD", 2, block);
    putBE32(block + 20, blockSize);
    putBE16(block + 28, front / 512);
    std::copy_n("H+", 2, block + 124);
    putBE16(block + 128, volumeSize / blockSize);
    return disk;
}

std::size_t catalogPlace(const Bytes& volume)
{
    return getBE32(volume.data() + volumeHeaderOffset + catalogOffset + firstExtentOffset) * blockSize;
}

/// The record of the file or folder with this name.
std::uint8_t* recordOf(Bytes& volume, std::string_view name, std::uint16_t kind = recordFile)
{
    Bytes key;
    const std::u16string units = storedName(name);
    appendBE16(key, static_cast<std::uint16_t>(units.size()));
    for (const char16_t unit : units)
        appendBE16(key, static_cast<std::uint16_t>(unit));
    appendBE16(key, kind);
    const auto place = std::search(volume.begin(), volume.end(), key.begin(), key.end());
    expect(place != volume.end(), "the name is in the catalog");
    return &*place + key.size() - 2;
}

/// A volume whose names are compared by their units, and whose folders count the folders in them.
Bytes binaryVolume()
{
    Bytes volume = bytesOf(*volumeOf({folder("app", {file("program", 5000)}), file("b", 1)}));
    for (const std::size_t header : {volumeHeaderOffset, volumeSize - volumeHeaderOffset}) {
        putBE16(volume.data() + header, signatureHfsx);
        putBE16(volume.data() + header + 2, 5);
    }
    volume[catalogPlace(volume) + 51] = compareBinary;
    for (const char* name : {"Volume", "app"})
        putBE16(recordOf(volume, name, recordFolder) + recordFlagsOffset, itemHasFolderCount);
    putBE32(recordOf(volume, "Volume", recordFolder) + folderCountOffset, 1);
    return volume;
}

using Damage = std::function<void(Bytes& volume)>;

Seed damaged(std::string name, Bytes volume, const Damage& damage)
{
    damage(volume);
    return {std::move(name), packDisk(volume)};
}

/// Links each node of the catalog's leaves to the first one.
void linkLeavesToFirst(Bytes& volume)
{
    const std::size_t catalog = catalogPlace(volume);
    const std::uint32_t first = getBE32(volume.data() + catalog + 24);
    for (std::size_t node = catalog; node < catalog + 4 * blockSize; node += blockSize) {
        if (volume[node + 8] == nodeKindLeaf)
            putBE32(volume.data() + node, first);
    }
}

} // namespace

std::vector<Seed> volumeSeeds()
{
    constexpr std::uint64_t farAway = std::numeric_limits<std::uint64_t>::max() - 100;
    const auto header = [](Bytes& volume) { return volume.data() + volumeHeaderOffset; };
    return {
        {"varied", packDisk(variedVolume())},
        {"crowded", packDisk(crowdedVolume())},
        {"deep", packDisk(deepVolume())},
        {"fragmented", packDisk(fragmentedVolume())},
        {"linked", packDisk(linkedVolume())},
        {"binary", packDisk(binaryVolume())},
        {"wrapped", packDisk(wrappedVolume())},
        damaged("cycle", crowdedVolume(), linkLeavesToFirst),
        damaged("overlap", variedVolume(),
                [](Bytes& volume) {
                    std::copy_n(recordOf(volume, "a") + dataForkOffset, 80, recordOf(volume, "b") + resourceForkOffset);
                }),
        damaged("far", variedVolume(),
                [](Bytes& volume) {
                    putBE64(recordOf(volume, "a") + dataForkOffset, farAway);
                    putBE32(recordOf(volume, "b") + dataForkOffset + firstExtentOffset, 0xFFFFFFFF);
                }),
        damaged("large catalog", variedVolume(),
                [&](Bytes& volume) { putBE64(header(volume) + catalogOffset, farAway); }),
        damaged("hidden cycle", bytesOf(*volumeOf({folder("outer", {folder("inner")})})),
                [](Bytes& volume) {
                    std::uint8_t* inner = recordOf(volume, "inner", recordFolder);
                    putBE32(inner + recordIdOffset, getBE32(recordOf(volume, "outer", recordFolder) + recordIdOffset));
                    putBE16(inner + modeOffset, 0010755); // a pipe's: readers pass over it
                }),
        damaged("journaled", variedVolume(),
                [&](Bytes& volume) {
                    putBE32(header(volume) + attributesOffset,
                            getBE32(header(volume) + attributesOffset) | volumeJournaled);
                    putBE32(header(volume) + 12, 1);
                }),
        damaged("compressed", variedVolume(), [](Bytes& volume) { recordOf(volume, "a")[41] = 0x20; }),
        damaged("lost link", linkedVolume(),
                [](Bytes& volume) { putBE32(recordOf(volume, "hard link") + specialOffset, 9); }),
    };
}

} // namespace velmora::fuzz
