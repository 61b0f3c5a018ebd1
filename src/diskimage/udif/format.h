#pragma once

#include "diskimage/udif/image.h"

#include <cstdint>
#include <string>

/// The records of a UDIF file, big-endian. In the file: the data fork, the property list, a code signature if there is
/// one, and the trailer.
namespace velmora::diskimage::udif
{

/// A disk larger than this is refused: no real image comes near, and a few bytes could claim it.
inline constexpr std::uint64_t maximumSectorCount = std::uint64_t{1} << 35; // 16 TiB
/// Compressed chunks are expanded in memory, one at a time; writers use 1 MiB at most.
inline constexpr std::uint64_t maximumCompressedSectors = 16384; // 8 MiB
inline constexpr std::uint32_t checksumNone = 0;
inline constexpr std::uint32_t checksumCrc32 = 2;

/// Whether a file of this size ends in a trailer; `end` holds its last 512 bytes.
bool isTrailer(ByteView end);

/// Reads the trailer of a file of `fileSize` bytes and checks that everything it points to lies in the file. Throws
/// DiskImageError.
Trailer readTrailer(ByteView bytes, std::uint64_t fileSize);
Bytes writeTrailer(const Trailer& trailer);

/// Reads a block table ("mish": a head of 204 bytes, then 40 bytes for each entry) and checks that its chunks cover
/// their extent and lie in the data fork. `name` is for messages. Throws DiskImageError.
BlockTable readBlockTable(ByteView bytes, const std::string& name, std::uint64_t dataForkLength);

/// What a block table says about its image beside its chunks.
struct BlockTableHead {
    std::uint32_t buffersNeeded = 0; ///< sectors of work space that a reader should have
    std::uint32_t descriptor = 0;    ///< number of the extent
};

/// The bytes of a table, with the terminator that closes it at `endOffset` of the data fork.
Bytes writeBlockTable(const BlockTable& table, const BlockTableHead& head, std::uint64_t endOffset);

} // namespace velmora::diskimage::udif
