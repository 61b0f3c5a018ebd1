#include "diskimage/base/partition_table.h"

#include "diskimage/base/checksum.h"
#include "diskimage/base/error.h"
#include "diskimage/base/text.h"

#include <algorithm>
#include <optional>

// A disk as Apple's image tool partitions it, in sectors; N is their number, E the end of the partition:
//
//   0    protective MBR          N-33  backup table
//   1    primary GPT header      N-1   backup GPT header
//   2    primary table
//   40   the volume, up to E = (N-33) rounded down to a multiple of 8
//
// GPT fields are little-endian (UEFI, "GUID Partition Table"), those of Apple partition maps big-endian
// (Inside Macintosh: Devices, "SCSI Manager").
namespace velmora::diskimage
{
namespace
{

constexpr std::uint64_t partitionStart = 40;
constexpr std::uint64_t partitionAlignment = 8;
constexpr std::uint64_t tableSectors = 32;
constexpr std::size_t tableBytes = tableSectors * sectorSize;
constexpr std::uint32_t entryCount = 128;
constexpr std::uint32_t entrySize = 128;
constexpr std::uint32_t gptHeaderSize = 92;
constexpr std::size_t entryNameOffset = 56;
constexpr std::size_t entryNameUnits = 36;
constexpr std::u16string_view partitionName = u"disk image";

constexpr Guid hfsType{0x48, 0x46, 0x53, 0x00, 0x00, 0x00, 0x11, 0xAA, 0xAA, 0x11, 0x00, 0x30, 0x65, 0x43, 0xEC, 0xAC};
constexpr Guid apfsType{0x7C, 0x34, 0x57, 0xEF, 0x00, 0x00, 0x11, 0xAA, 0xAA, 0x11, 0x00, 0x30, 0x65, 0x43, 0xEC, 0xAC};

/// Between the order of the text and that on disk, where the first three groups are little-endian.
Guid mixedEndian(const Guid& guid)
{
    Guid mixed = guid;
    std::reverse(mixed.begin(), mixed.begin() + 4);
    std::reverse(mixed.begin() + 4, mixed.begin() + 6);
    std::reverse(mixed.begin() + 6, mixed.begin() + 8);
    return mixed;
}

std::string guidText(const Guid& guid)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < guid.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) {
            text += '-';
        }
        text += digits[guid[i] >> 4];
        text += digits[guid[i] & 15];
    }
    return text;
}

Bytes protectiveMbr(std::uint64_t totalSectors)
{
    constexpr std::array<std::uint8_t, 8> entry{0x00, 0xFE, 0xFF, 0xFF, 0xEE, 0xFE, 0xFF, 0xFF};
    Bytes sector(sectorSize);
    std::copy(entry.begin(), entry.end(), sector.begin() + 446);
    putLE32(sector.data() + 454, 1);
    putLE32(sector.data() + 458, static_cast<std::uint32_t>(std::min<std::uint64_t>(totalSectors - 1, 0xFFFFFFFF)));
    sector[510] = 0x55;
    sector[511] = 0xAA;
    return sector;
}

Bytes partitionTable(const PartitionPlace& place, PartitionType type, const Guid& partitionGuid)
{
    Bytes table(tableBytes);
    const auto typeBytes = mixedEndian(type == PartitionType::hfs ? hfsType : apfsType);
    const auto guidBytes = mixedEndian(partitionGuid);
    std::copy(typeBytes.begin(), typeBytes.end(), table.begin());
    std::copy(guidBytes.begin(), guidBytes.end(), table.begin() + 16);
    putLE64(table.data() + 32, place.start);
    putLE64(table.data() + 40, place.start + place.count - 1);
    for (std::size_t i = 0; i < partitionName.size(); ++i) {
        putLE16(table.data() + entryNameOffset + 2 * i, partitionName[i]);
    }
    return table;
}

/// One of the two headers as it lies on disk, or is to lie there.
struct GptHeader {
    std::uint64_t place = 0;
    std::uint64_t otherPlace = 0;
    std::uint64_t firstUsable = 0;
    std::uint64_t lastUsable = 0;
    std::uint64_t tablePlace = 0;
    std::uint32_t count = 0;
    std::uint32_t size = 0;
    std::uint32_t tableCrc = 0;

    [[nodiscard]] std::uint64_t sectorsOfTable() const
    {
        return (std::uint64_t{count} * size + sectorSize - 1) / sectorSize;
    }
};

Bytes headerSector(const GptHeader& header, const Guid& diskGuid)
{
    Bytes sector(sectorSize);
    const std::string_view signature = "EFI PART";
    std::copy(signature.begin(), signature.end(), sector.begin());
    putLE32(sector.data() + 8, 0x00010000);
    putLE32(sector.data() + 12, gptHeaderSize);
    putLE64(sector.data() + 24, header.place);
    putLE64(sector.data() + 32, header.otherPlace);
    putLE64(sector.data() + 40, header.firstUsable);
    putLE64(sector.data() + 48, header.lastUsable);
    const auto guidBytes = mixedEndian(diskGuid);
    std::copy(guidBytes.begin(), guidBytes.end(), sector.begin() + 56);
    putLE64(sector.data() + 72, header.tablePlace);
    putLE32(sector.data() + 80, header.count);
    putLE32(sector.data() + 84, header.size);
    putLE32(sector.data() + 88, header.tableCrc);
    putLE32(sector.data() + 16, crc32(0, ByteView(sector).first(gptHeaderSize)));
    return sector;
}

bool isGptHeader(ByteView sector)
{
    return textOf(sector.first(8)) == "EFI PART";
}

/// Reads a header and checks it in itself, with all places against the disk. `which` is for messages.
GptHeader readHeader(const Source& disk, std::uint64_t place, const std::string& which)
{
    const auto totalSectors = disk.size() / sectorSize;
    auto sector = disk.read(place * sectorSize, sectorSize);
    const auto fail = [&which](const std::string& why) -> DiskImageError {
        return DiskImageError("The " + which + " GPT header " + why + ".");
    };
    if (!isGptHeader(sector)) {
        throw fail("is missing");
    }
    const auto size = getLE32(sector.data() + 12);
    if (size < gptHeaderSize || size > sectorSize) {
        throw fail("has an impossible size of " + std::to_string(size) + " bytes");
    }
    const auto crc = getLE32(sector.data() + 16);
    putLE32(sector.data() + 16, 0);
    if (crc32(0, ByteView(sector).first(size)) != crc) {
        throw fail("is damaged: its checksum is wrong");
    }
    const GptHeader header{.place = getLE64(sector.data() + 24),
                           .otherPlace = getLE64(sector.data() + 32),
                           .firstUsable = getLE64(sector.data() + 40),
                           .lastUsable = getLE64(sector.data() + 48),
                           .tablePlace = getLE64(sector.data() + 72),
                           .count = getLE32(sector.data() + 80),
                           .size = getLE32(sector.data() + 84),
                           .tableCrc = getLE32(sector.data() + 88)};
    if (header.place != place || header.otherPlace == 0 || header.otherPlace >= totalSectors) {
        throw fail("gives a wrong place for itself or for the other one");
    }
    if (header.size < entrySize || header.size > 4096 || header.size % 8 != 0 || header.count == 0 ||
        header.count > 4096) {
        throw fail("has an impossible number or size of entries");
    }
    if (header.tablePlace < 2 || header.tablePlace > totalSectors ||
        header.sectorsOfTable() > totalSectors - header.tablePlace) {
        throw fail("places its table outside the disk");
    }
    return header;
}

Bytes readTable(const Source& disk, const GptHeader& header, const std::string& which)
{
    auto table = disk.read(header.tablePlace * sectorSize, std::size_t{header.count} * header.size);
    if (crc32(0, table) != header.tableCrc) {
        throw DiskImageError("The " + which + " GPT table is damaged: its checksum is wrong.");
    }
    return table;
}

std::string typeText(const Guid& type)
{
    return type == hfsType ? "Apple_HFS" : type == apfsType ? "Apple_APFS" : guidText(type);
}

std::optional<DiskExtent> readEntry(const std::uint8_t* entry, const GptHeader& header)
{
    Guid type{};
    std::copy_n(entry, type.size(), type.begin());
    if (type == Guid{}) {
        return std::nullopt;
    }
    const auto first = getLE64(entry + 32);
    const auto last = getLE64(entry + 40);
    if (first < header.firstUsable || last < first || last > header.lastUsable) {
        throw DiskImageError("A partition from sector " + std::to_string(first) + " to " + std::to_string(last) +
                             " lies outside the usable part of the disk.");
    }
    std::u16string name;
    for (std::size_t i = 0; i < entryNameUnits; ++i) {
        const auto unit = getLE16(entry + entryNameOffset + 2 * i);
        if (unit == 0) {
            break;
        }
        name += unit < 0x20 || unit >= 0xFFFE ? u'?' : static_cast<char16_t>(unit); // no text could hold these
    }
    return DiskExtent{ExtentKind::partition, utf8FromUtf16(name), typeText(mixedEndian(type)), first, last - first + 1};
}

/// Sorts the stretches, refuses overlaps, and fills what lies between them with free space.
std::vector<DiskExtent> coverDisk(std::vector<DiskExtent> known, std::uint64_t totalSectors)
{
    std::sort(known.begin(), known.end(), [](const auto& a, const auto& b) { return a.start < b.start; });
    std::vector<DiskExtent> all;
    std::uint64_t next = 0;
    const auto addFree = [&](std::uint64_t end) {
        if (next < end) {
            all.push_back({ExtentKind::free, "", "Apple_Free", next, end - next});
        }
    };
    for (auto& extent : known) {
        if (extent.start < next) {
            throw DiskImageError("The partition table is damaged: two stretches overlap at sector " +
                                 std::to_string(extent.start) + ".");
        }
        if (extent.start > totalSectors || extent.count > totalSectors - extent.start) {
            throw DiskImageError("The stretch at sector " + std::to_string(extent.start) +
                                 " reaches beyond the end of the disk.");
        }
        addFree(extent.start);
        next = extent.start + extent.count;
        all.push_back(std::move(extent));
    }
    addFree(totalSectors);
    return all;
}

std::vector<DiskExtent> readGpt(const Source& disk)
{
    const auto totalSectors = disk.size() / sectorSize;
    const auto primary = readHeader(disk, 1, "primary");
    const auto backup = readHeader(disk, primary.otherPlace, "backup");
    const auto table = readTable(disk, primary, "primary");
    if (backup.otherPlace != 1 || backup.tableCrc != primary.tableCrc || backup.firstUsable != primary.firstUsable ||
        backup.lastUsable != primary.lastUsable || backup.size != primary.size || backup.count != primary.count) {
        throw DiskImageError("The two GPT headers contradict each other.");
    }
    readTable(disk, backup, "backup");

    std::vector<DiskExtent> known{
        {ExtentKind::protectiveMbr, "Protective Master Boot Record", "MBR", 0, 1},
        {ExtentKind::gptHeader, "GPT Header", "Primary GPT Header", 1, 1},
        {ExtentKind::gptTable, "GPT Partition Data", "Primary GPT Table", primary.tablePlace, primary.sectorsOfTable()},
        {ExtentKind::gptTable, "GPT Partition Data", "Backup GPT Table", backup.tablePlace, backup.sectorsOfTable()},
        {ExtentKind::gptHeader, "GPT Header", "Backup GPT Header", backup.place, 1}};
    for (std::size_t i = 0; i < primary.count; ++i) {
        if (auto extent = readEntry(table.data() + i * primary.size, primary)) {
            known.push_back(std::move(*extent));
        }
    }
    return coverDisk(std::move(known), totalSectors);
}

/// The text in a field, which is ASCII by the format; what else is found there is no UTF-8.
std::string fixedText(const std::uint8_t* bytes, std::size_t length)
{
    std::string text(bytes, std::find(bytes, bytes + length, 0));
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c < 0x20 || c > 0x7E; }, '?');
    return text;
}

/// An Apple partition map. Discs have blocks of 2048 bytes, with the map's entries in such blocks or in sectors.
std::vector<DiskExtent> readAppleMap(const Source& disk)
{
    constexpr std::uint32_t mostEntries = 512;
    const auto totalSectors = disk.size() / sectorSize;
    const auto driverMap = disk.read(0, sectorSize);
    std::uint64_t unit = getBE16(driverMap.data() + 2);
    if (unit < sectorSize || unit % sectorSize != 0 || disk.size() < 2 * unit || textOf(disk.read(unit, 2)) != "PM") {
        unit = sectorSize;
    }
    std::vector<DiskExtent> known{{ExtentKind::other, "Driver Descriptor Map", "DDM", 0, unit / sectorSize}};
    std::uint32_t count = 1;
    for (std::uint32_t i = 1; i <= count; ++i) {
        const auto entry = disk.read(i * unit, sectorSize);
        if (textOf(ByteView(entry).first(2)) != "PM") {
            throw DiskImageError("Entry " + std::to_string(i) + " of the Apple partition map is damaged.");
        }
        if (i == 1) {
            count = std::min(getBE32(entry.data() + 4), mostEntries);
        }
        const auto start = getBE32(entry.data() + 8) * (unit / sectorSize);
        const auto length = getBE32(entry.data() + 12) * (unit / sectorSize);
        if (length == 0) {
            continue;
        }
        const auto type = fixedText(entry.data() + 48, 32);
        const auto kind = type == "Apple_Free"            ? ExtentKind::free
                          : type == "Apple_partition_map" ? ExtentKind::other
                                                          : ExtentKind::partition;
        known.push_back({kind, fixedText(entry.data() + 16, 32), type, start, length});
    }
    return coverDisk(std::move(known), totalSectors);
}

/// The type of a volume that fills the disk without any map, or nothing.
std::optional<std::string> bareVolumeType(const Source& disk)
{
    if (disk.size() >= 1536) {
        const auto signature = textOf(disk.read(1024, 2));
        if (signature == "H+" || signature == "HX" || signature == "BD") {
            return "Apple_HFS";
        }
    }
    if (disk.size() >= 4096 && textOf(disk.read(32, 4)) == "NXSB") {
        return "Apple_APFS";
    }
    return std::nullopt;
}

} // namespace

PartitionPlace partitionPlace(std::uint64_t totalSectors)
{
    constexpr auto behind = tableSectors + 1;
    const auto end = totalSectors < behind ? 0 : (totalSectors - behind) / partitionAlignment * partitionAlignment;
    if (end <= partitionStart) {
        throw DiskImageError("A disk of " + std::to_string(totalSectors) +
                             " sectors is too small for a partition table and a volume.");
    }
    return {partitionStart, end - partitionStart};
}

void writeGpt(Storage& disk, PartitionType type, const Guid& diskGuid, const Guid& partitionGuid)
{
    if (disk.size() % sectorSize != 0) {
        throw DiskImageError("A disk of " + std::to_string(disk.size()) + " bytes does not consist of whole sectors.");
    }
    const auto totalSectors = disk.size() / sectorSize;
    const auto table = partitionTable(partitionPlace(totalSectors), type, partitionGuid);
    GptHeader header{.place = 1,
                     .otherPlace = totalSectors - 1,
                     .firstUsable = 2 + tableSectors,
                     .lastUsable = totalSectors - tableSectors - 2,
                     .tablePlace = 2,
                     .count = entryCount,
                     .size = entrySize,
                     .tableCrc = crc32(0, table)};
    disk.write(0, protectiveMbr(totalSectors));
    disk.write(header.place * sectorSize, headerSector(header, diskGuid));
    disk.write(header.tablePlace * sectorSize, table);
    std::swap(header.place, header.otherPlace);
    header.tablePlace = totalSectors - tableSectors - 1;
    disk.write(header.tablePlace * sectorSize, table);
    disk.write(header.place * sectorSize, headerSector(header, diskGuid));
}

std::vector<DiskExtent> readPartitions(const Source& disk)
{
    if (disk.size() < 2 * sectorSize) {
        throw DiskImageError("A disk of " + std::to_string(disk.size()) + " bytes is too small to hold a volume.");
    }
    if (isGptHeader(disk.read(sectorSize, sectorSize))) {
        return readGpt(disk);
    }
    if (textOf(disk.read(0, 2)) == "ER") {
        return readAppleMap(disk);
    }
    if (const auto type = bareVolumeType(disk)) {
        return {{ExtentKind::partition, "whole disk", *type, 0, disk.size() / sectorSize}};
    }
    throw DiskImageError("The disk holds neither a GUID partition table, an Apple partition map nor a bare volume.");
}

DiskExtent findVolume(const Source& disk)
{
    for (auto& extent : readPartitions(disk)) {
        if (extent.type == "Apple_HFS" || extent.type == "Apple_HFSX" || extent.type == "Apple_APFS") {
            return extent;
        }
    }
    throw DiskImageError("None of the disk's partitions holds an HFS+ or APFS volume.");
}

} // namespace velmora::diskimage
