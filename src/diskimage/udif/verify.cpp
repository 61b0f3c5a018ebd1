#include "diskimage/base/checksum.h"
#include "diskimage/base/crc_algebra.h"
#include "diskimage/udif/format.h"

#include <algorithm>

namespace velmora::diskimage::udif
{
namespace
{

/// Of a part of a source, of which the holes are not read.
std::uint32_t crcOf(const Source& source, std::uint64_t offset, std::uint64_t length)
{
    constexpr std::uint64_t pieceSize = std::uint64_t{1} << 20;
    Bytes buffer(static_cast<std::size_t>(std::min(length, pieceSize)));
    std::uint32_t crc = 0;
    for (const std::uint64_t end = offset + length; offset < end;) {
        const ByteRange data = source.nextData(offset);
        const std::uint64_t hole = std::min(data.start, end) - offset;
        if (hole > 0)
            crc = crc32Combined(crc, crc32OfZeros(hole), hole);
        offset += hole;
        const std::uint64_t there = std::min(data.end, end) - offset;
        const auto piece = MutableByteView(buffer).first(static_cast<std::size_t>(std::min(there, pieceSize)));
        source.read(offset, piece);
        crc = crc32(crc, piece);
        offset += piece.size();
    }
    return crc;
}

/// Of the expanded data in the table's order. Ignored chunks do not count, not even as zeros.
std::uint32_t extentCrc(const Source& disk, const BlockTable& table)
{
    std::uint32_t crc = 0;
    for (const Chunk& chunk : table.chunks) {
        if (chunk.type == ChunkType::ignored)
            continue;
        const std::uint64_t length = chunk.sectorCount * sectorSize;
        // A few bytes may claim terabytes of zeros.
        const std::uint32_t chunkCrc = chunk.type == ChunkType::zero
                                           ? crc32OfZeros(length)
                                           : crcOf(disk, (table.firstSector + chunk.firstSector) * sectorSize, length);
        crc = crc32Combined(crc, chunkCrc, length);
    }
    return crc;
}

/// Of the stored values of all tables, so that a changed value is noticed besides changed data.
std::uint32_t masterCrc(const std::vector<BlockTable>& tables)
{
    Bytes values;
    for (const BlockTable& table : tables)
        appendBE32(values, table.checksum);
    return crc32(0, values);
}

} // namespace

std::vector<ChecksumResult> verifyChecksums(const Source& file, const Image& image)
{
    std::vector<ChecksumResult> results;
    if (!image.trailer())
        return results;
    // Checksums of another kind cannot be verified, and a writer may leave some out.
    const Trailer& trailer = *image.trailer();
    for (const BlockTable& table : image.tables()) {
        if (table.checksumType == checksumCrc32)
            results.push_back({table.name, table.checksum, extentCrc(image.disk(), table)});
    }
    if (trailer.dataChecksumType == checksumCrc32)
        results.push_back(
            {"data fork", trailer.dataChecksum, crcOf(file, trailer.dataForkOffset, trailer.dataForkLength)});
    if (trailer.masterChecksumType == checksumCrc32)
        results.push_back({"master", trailer.masterChecksum, masterCrc(image.tables())});
    return results;
}

} // namespace velmora::diskimage::udif
