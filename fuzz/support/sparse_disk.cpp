#include "support/sparse_disk.h"

#include "diskimage/base/partition_table.h"
#include "support/target.h"

#include <algorithm>

namespace velmora::fuzz
{

using namespace diskimage;

Bytes unpackDisk(ByteView input)
{
    InputReader reader(input);
    const std::size_t sectors = std::min<std::size_t>(reader.word(), mostSectors);
    const ByteView map = reader.bytes((sectors + 7) / 8);
    Bytes disk(sectors * sectorSize);
    for (std::size_t i = 0; i < sectors; ++i) {
        if (i / 8 < map.size() && (map[i / 8] & 0x80 >> i % 8) != 0) {
            const ByteView sector = reader.bytes(sectorSize);
            std::copy(sector.begin(), sector.end(), disk.begin() + static_cast<std::ptrdiff_t>(i * sectorSize));
        }
    }
    return disk;
}

Bytes packDisk(ByteView disk)
{
    const std::size_t sectors = disk.size() / sectorSize;
    expect(disk.size() % sectorSize == 0 && sectors <= mostSectors, "the disk can be an input");
    Bytes input;
    appendBE16(input, static_cast<std::uint16_t>(sectors));
    input.resize(2 + (sectors + 7) / 8);
    for (std::size_t i = 0; i < sectors; ++i) {
        const ByteView sector = disk.subspan(i * sectorSize, sectorSize);
        if (isZero(sector))
            continue;
        input[2 + i / 8] |= static_cast<std::uint8_t>(0x80 >> i % 8);
        append(input, sector);
    }
    return input;
}

} // namespace velmora::fuzz
