#include "diskimage/base/partition_table.h"

#include "diskimage/base/checksum.h"
#include "diskimage/base/error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmora::diskimage
{
namespace
{

constexpr Guid diskGuid{0xDC, 0xAF, 0x80, 0x95, 0xE3, 0x46, 0x40, 0x42, 0x9E, 0xAC, 0x4F, 0x45, 0x68, 0x0B, 0xBE, 0xBC};
constexpr Guid partitionGuid{0x60, 0x80, 0xB3, 0xB2, 0x78, 0xBE, 0x4D, 0xA9,
                             0x8B, 0x19, 0x2F, 0xCC, 0x48, 0x39, 0xCA, 0x2D};

std::unique_ptr<Storage> gptDisk(std::uint64_t sectors, PartitionType type = PartitionType::hfs)
{
    auto disk = memoryStorage(Bytes(sectors * sectorSize));
    writeGpt(*disk, type, diskGuid, partitionGuid);
    return disk;
}

std::uint32_t sectorCrc(const Storage& disk, std::uint64_t sector, std::size_t count = 1)
{
    return crc32(0, disk.read(sector * sectorSize, count * sectorSize));
}

/// Recomputes a header's checksum after a test has changed it.
void sealHeader(Storage& disk, std::uint64_t sector)
{
    auto bytes = disk.read(sector * sectorSize, 92);
    putLE32(bytes.data() + 16, 0);
    putLE32(bytes.data() + 16, crc32(0, bytes));
    disk.write(sector * sectorSize, bytes);
}

} // namespace

TEST(PartitionTable, hasTheBytesOfApplesTool)
{
    const auto disk = gptDisk(3836);
    EXPECT_EQ(sectorCrc(*disk, 0), 0xB9F3F1BEU);
    EXPECT_EQ(sectorCrc(*disk, 1), 0x2D2540E2U);
    EXPECT_EQ(sectorCrc(*disk, 2, 32), 0x4ACE4E54U);
    EXPECT_EQ(sectorCrc(*disk, 3803, 32), 0x4ACE4E54U);
    EXPECT_EQ(sectorCrc(*disk, 3835), 0x6BE2648BU);
}

TEST(PartitionTable, placesThePartition)
{
    const struct {
        const char* name;
        std::uint64_t sectors;
        std::uint64_t count;
    } cases[] = {{"whole MiB", 116736, 116656},
                 {"not a multiple of eight", 3836, 3760},
                 {"no free space behind", 81, 8},
                 {"larger than an MBR can say", std::uint64_t{1} << 33, (std::uint64_t{1} << 33) - 80}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(partitionPlace(row.sectors).start, 40U);
        EXPECT_EQ(partitionPlace(row.sectors).count, row.count);
    }
    EXPECT_THROW(partitionPlace(80), DiskImageError);
    EXPECT_THROW(partitionPlace(0), DiskImageError);
    EXPECT_THROW(writeGpt(*memoryStorage(Bytes(100001)), PartitionType::hfs, {}, {}), DiskImageError);
}

TEST(PartitionTable, listsEveryStretchOfAGptDisk)
{
    using enum ExtentKind;
    EXPECT_THAT(readPartitions(*gptDisk(3836)),
                testing::ElementsAre(DiskExtent{protectiveMbr, "Protective Master Boot Record", "MBR", 0, 1},
                                     DiskExtent{gptHeader, "GPT Header", "Primary GPT Header", 1, 1},
                                     DiskExtent{gptTable, "GPT Partition Data", "Primary GPT Table", 2, 32},
                                     DiskExtent{free, "", "Apple_Free", 34, 6},
                                     DiskExtent{partition, "disk image", "Apple_HFS", 40, 3760},
                                     DiskExtent{free, "", "Apple_Free", 3800, 3},
                                     DiskExtent{gptTable, "GPT Partition Data", "Backup GPT Table", 3803, 32},
                                     DiskExtent{gptHeader, "GPT Header", "Backup GPT Header", 3835, 1}));
    EXPECT_EQ(readPartitions(*gptDisk(81)).size(), 7U) << "no free space behind the partition";
    EXPECT_EQ(findVolume(*gptDisk(3836, PartitionType::apfs)).type, "Apple_APFS");
}

TEST(PartitionTable, readsAnApplePartitionMap)
{
    const auto disk = memoryStorage(Bytes(1000 * sectorSize));
    disk->write(0, viewOf(std::string_view("ER\x02\x00", 4)));
    const auto entry = [&](std::uint64_t sector, std::uint32_t start, std::uint32_t count, std::string_view name,
                           std::string_view type) {
        Bytes bytes(sectorSize);
        std::copy_n("PM", 2, bytes.begin());
        putBE32(bytes.data() + 4, 3);
        putBE32(bytes.data() + 8, start);
        putBE32(bytes.data() + 12, count);
        std::copy(name.begin(), name.end(), bytes.begin() + 16);
        std::copy(type.begin(), type.end(), bytes.begin() + 48);
        disk->write(sector * sectorSize, bytes);
    };
    entry(1, 1, 63, "Apple", "Apple_partition_map");
    entry(2, 64, 900, "disk image", "Apple_HFS");
    entry(3, 964, 36, "", "Apple_Free");
    using enum ExtentKind;
    EXPECT_THAT(readPartitions(*disk), testing::ElementsAre(DiskExtent{other, "Driver Descriptor Map", "DDM", 0, 1},
                                                            DiskExtent{other, "Apple", "Apple_partition_map", 1, 63},
                                                            DiskExtent{partition, "disk image", "Apple_HFS", 64, 900},
                                                            DiskExtent{free, "", "Apple_Free", 964, 36}));
    EXPECT_EQ(findVolume(*disk).start, 64U);
    entry(3, 964, 37, "", "Apple_Free");
    EXPECT_THROW(readPartitions(*disk), DiskImageError) << "beyond the disk";
    entry(3, 963, 30, "", "Apple_Free");
    EXPECT_THROW(readPartitions(*disk), DiskImageError) << "overlapping";
}

TEST(PartitionTable, takesABareVolumeAsOnePartition)
{
    const auto disk = memoryStorage(Bytes(100 * sectorSize));
    EXPECT_THROW(readPartitions(*disk), DiskImageError);
    disk->write(1024, viewOf("H+"));
    EXPECT_EQ(findVolume(*disk).count, 100U);
    EXPECT_EQ(findVolume(*disk).type, "Apple_HFS");
    disk->write(1024, Bytes(2));
    disk->write(32, viewOf("NXSB"));
    EXPECT_EQ(findVolume(*disk).type, "Apple_APFS");
}

TEST(PartitionTable, refusesWhatIsDamaged)
{
    const struct {
        const char* name;
        std::uint64_t offset;
        std::uint64_t value;
        bool sealed; ///< the header's checksum is made right again
    } cases[] = {{"primary header", 512 + 60, 1, false},
                 {"backup header", 3835 * 512 + 60, 1, false},
                 {"primary table", 1024 + 60, 1, false},
                 {"backup table", 3803 * 512 + 60, 1, false},
                 {"header size", 512 + 12, 0xFFFFFFF0, true},
                 {"own place", 512 + 24, 7, true},
                 {"place of the other header", 512 + 32, UINT64_MAX, true},
                 {"place of the table", 512 + 72, UINT64_MAX - 1, true},
                 {"number of entries", 512 + 80, 0x0000008000000000, true},
                 {"size of an entry", 512 + 80, 0x8000000100000080, true},
                 {"headers contradict", 512 + 48, 3801, true}};
    for (const auto& row : cases) {
        SCOPED_TRACE(row.name);
        const auto disk = gptDisk(3836);
        Bytes value(8);
        putLE64(value.data(), row.value);
        disk->write(row.offset, value);
        if (row.sealed) {
            sealHeader(*disk, 1);
        }
        EXPECT_THROW(readPartitions(*disk), DiskImageError);
    }
    const auto disk = gptDisk(3836);
    for (const std::uint64_t size : {0U, 1U, 512U, 1024U, 1536U, 17408U, 1000000U}) {
        SCOPED_TRACE(size);
        EXPECT_THROW(readPartitions(*sliceOf(std::as_const(*disk), 0, size)), DiskImageError);
    }
}

TEST(PartitionTable, refusesPartitionsOutsideTheUsablePart)
{
    for (const auto& [first, last] : {std::pair{33U, 100U}, {50U, 49U}, {40U, 3803U}}) {
        SCOPED_TRACE(first);
        const auto disk = gptDisk(3836);
        auto table = disk->read(1024, 16384);
        putLE64(table.data() + 32, first);
        putLE64(table.data() + 40, last);
        for (const std::uint64_t header : {1U, 3835U}) {
            Bytes crc(4);
            putLE32(crc.data(), crc32(0, table));
            disk->write(header * 512 + 88, crc);
            sealHeader(*disk, header);
        }
        disk->write(1024, table);
        disk->write(3803 * 512, table);
        EXPECT_THROW(readPartitions(*disk), DiskImageError);
    }
}

} // namespace velmora::diskimage
