#include "diskimage/hfs/check.h"
#include "diskimage/hfs/editor.h"
#include "diskimage/hfs/sample_trees.h"
#include "diskimage/hfs/volume.h"

#include "diskimage/base/error.h"

#include <gtest/gtest.h>

#include <set>

namespace velmora::diskimage::hfs
{
namespace
{

using namespace test;

constexpr std::size_t blockSize = 4096;

void readAll(const Entry& entry)
{
    for (const auto& [open, size] :
         {std::pair{entry.openData, entry.dataSize}, {entry.openResource, entry.resourceSize}}) {
        if (open) {
            const auto source = open();
            (void)source->read(0, static_cast<std::size_t>(std::min<std::uint64_t>(source->size(), 1 << 20)));
        }
    }
    for (const auto& child : entry.children) {
        readAll(child);
    }
}

/// Everything that reads a volume must end, with an error or without.
void readAndChange(Bytes bytes)
{
    const auto volume = memoryStorage(std::move(bytes));
    try {
        readAll(Volume(*volume).root());
    } catch (const DiskImageError&) { // as it should be
    }
    (void)checkVolume(*volume);
    try {
        VolumeEditor editor(*volume);
        editor.put("/", file("added", 5000));
        editor.put("/", folder("folder", {file("inside", 100)}));
        editor.remove("/link");
        editor.commit(0);
        // What was changed can still be read, or says why not.
        readAll(Volume(*volume).root());
    } catch (const DiskImageError&) { // as it should be
    }
}

Bytes soundVolume()
{
    auto tree = folder("x", {folder("folder", {file("inside", 10)}), link("link", "target")});
    for (std::uint32_t i = 0; i < 30; ++i) {
        tree.children.push_back(file("block " + std::to_string(i), blockSize));
    }
    tree.children[2].attributes = {{"small", Bytes(4)}, {"large", Bytes(5000, 1)}};
    const auto volume = makeVolume(tree, {.clumps = {4, 2, 1}});
    VolumeEditor editor(*volume);
    for (std::uint32_t i = 0; i < 30; i += 2) {
        editor.remove("/block " + std::to_string(i));
    }
    editor.commit(0);
    auto scattered = file("scattered", 12 * blockSize);
    VolumeEditor again(*volume);
    again.put("/", scattered);
    again.commit(0);
    EXPECT_TRUE(checkVolume(*volume).empty());
    return volume->read(0, static_cast<std::size_t>(volume->size()));
}

} // namespace

TEST(HostileVolumes, everyFieldMayBeAnything)
{
    const auto sound = soundVolume();
    // Headers, and of all nodes the beginning and the table at the end; records as far as they are not zero.
    std::set<std::size_t> places;
    for (std::size_t i = 1024; i < 1536; i += 2) {
        places.insert(i);
    }
    for (std::size_t block = 1; block < 12; ++block) {
        for (std::size_t i = block * blockSize; i < (block + 1) * blockSize; i += 2) {
            const bool isNear = i % blockSize < 20 || i % blockSize >= blockSize - 20;
            if (isNear || sound[i] != 0 || sound[i + 1] != 0) {
                places.insert(i);
            }
        }
    }
    for (const auto place : places) {
        for (const std::uint16_t value : std::initializer_list<std::uint16_t>{0, 1, 0x7FFF, 0xFFFF}) {
            SCOPED_TRACE("place " + std::to_string(place) + ", value " + std::to_string(value));
            auto bytes = sound;
            putBE16(bytes.data() + place, value);
            ASSERT_NO_THROW(readAndChange(std::move(bytes)));
        }
    }
}

TEST(HostileVolumes, mayEndAnywhere)
{
    const auto sound = soundVolume();
    for (std::size_t size = 0; size < sound.size(); size += size < 8192 ? 511 : 4095) {
        SCOPED_TRACE(size);
        ASSERT_NO_THROW(readAndChange(Bytes(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size))));
        EXPECT_FALSE(
            checkVolume(*memoryStorage(Bytes(sound.begin(), sound.begin() + static_cast<std::ptrdiff_t>(size))))
                .empty());
    }
}

TEST(HostileVolumes, oldWrapperMayPointAnywhere)
{
    const auto sound = soundVolume();
    const auto wrapped = [&](std::uint16_t start, std::uint16_t embedded, std::uint16_t count) {
        Bytes bytes(64 * 512);
        append(bytes, sound);
        putBE16(bytes.data() + 1024, 0x4244);
        putBE32(bytes.data() + 1024 + 20, 4096);
        putBE16(bytes.data() + 1024 + 28, start);
        putBE16(bytes.data() + 1024 + 124, 0x482B);
        putBE16(bytes.data() + 1024 + 126, embedded);
        putBE16(bytes.data() + 1024 + 128, count);
        return bytes;
    };
    const auto blocks = static_cast<std::uint16_t>(sound.size() / 4096);
    const auto good = memoryStorage(wrapped(8, 7, blocks));
    EXPECT_TRUE(isHfsPlus(*good));
    EXPECT_NE(Volume(*good).find("/scattered"), nullptr);
    VolumeEditor editor(*good);
    editor.put("/folder", file("added", 3));
    editor.commit(0);
    EXPECT_NE(Volume(*good).find("/folder/added"), nullptr);
    for (const auto& [start, embedded, count] :
         {std::tuple<std::uint16_t, std::uint16_t, std::uint16_t>{8, 8, blocks}, {0xFFFF, 0xFFFF, 0xFFFF}, {0, 0, 0}}) {
        EXPECT_THROW(Volume(*memoryStorage(wrapped(start, embedded, count))), DiskImageError);
    }
}

TEST(HostileVolumes, areRecognisedByTheirHeaderAlone)
{
    EXPECT_TRUE(isHfsPlus(*memoryStorage(soundVolume())));
    EXPECT_FALSE(isHfsPlus(*memoryStorage(Bytes(1535))));
    EXPECT_FALSE(isHfsPlus(*memoryStorage(Bytes(100000))));
    auto withoutHeader = soundVolume();
    std::fill_n(withoutHeader.begin() + 1024, 512, std::uint8_t{0});
    EXPECT_NE(Volume(*memoryStorage(withoutHeader)).find("/scattered"), nullptr) << "its copy is used";
}

} // namespace velmora::diskimage::hfs
