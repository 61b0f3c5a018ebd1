#include "support/repair.h"

#include "diskimage/base/checksum.h"
#include "diskimage/base/partition_table.h"

#include <algorithm>

namespace velmora::fuzz
{

using namespace diskimage;

namespace
{

/// Repairs the header in a sector and returns where it says that the other one is.
std::uint64_t repairHeader(MutableByteView disk, std::uint64_t place)
{
    const std::uint64_t sectors = disk.size() / sectorSize;
    if (place >= sectors)
        return 0;
    std::uint8_t* const header = disk.data() + place * sectorSize;
    const std::uint64_t tablePlace = getLE64(header + 72);
    const std::uint64_t tableSize = std::uint64_t{getLE32(header + 80)} * getLE32(header + 84);
    if (tablePlace < sectors && tableSize <= disk.size() - tablePlace * sectorSize)
        putLE32(header + 88, crc32(0, disk.subspan(tablePlace * sectorSize, tableSize)));
    const std::size_t size = std::min<std::size_t>(getLE32(header + 12), sectorSize);
    putLE32(header + 16, 0);
    putLE32(header + 16, crc32(0, disk.subspan(place * sectorSize, size)));
    return getLE64(header + 32);
}

} // namespace

void repairGpt(MutableByteView disk)
{
    const ByteView signature = viewOf("EFI PART");
    if (disk.size() < 2 * sectorSize || !std::equal(signature.begin(), signature.end(), disk.begin() + sectorSize))
        return;
    const std::uint64_t backup = repairHeader(disk, 1);
    if (backup > 1)
        repairHeader(disk, backup);
}

void repairPng(MutableByteView file)
{
    constexpr std::size_t signatureSize = 8;
    constexpr std::size_t overhead = 12;
    for (std::size_t offset = signatureSize; offset < file.size() && file.size() - offset >= overhead;) {
        const std::size_t length = getBE32(file.data() + offset);
        if (length > file.size() - offset - overhead)
            return;
        putBE32(file.data() + offset + 8 + length, crc32(0, file.subspan(offset + 4, 4 + length)));
        offset += overhead + length;
    }
}

} // namespace velmora::fuzz
