#pragma once

#include "diskimage/hfs/content.h"
#include "diskimage/hfs/writer.h"

#include <cstdint>

namespace velmora::diskimage::hfs
{

/// Where one of the file system's own files lies in a new volume.
struct SpecialFile {
    Extent extent{};
    std::uint32_t nodeSize = 0;  ///< of a tree
    std::uint32_t clumpSize = 0; ///< bytes
};

/// The places of everything in a new volume. In order: boot blocks and header, bitmap, extents, attributes, catalog,
/// contents, free space, alternate header.
struct Geometry {
    std::uint32_t blockSize = 0;
    std::uint32_t totalBlocks = 0;
    std::uint32_t usedBlocks = 0; ///< of totalBlocks
    SpecialFile bitmap{};
    SpecialFile extents{};
    SpecialFile attributes{};
    SpecialFile catalog{};
    std::uint32_t firstDataBlock = 0;
    std::uint32_t dataBlocks = 0;
};

/// What a volume must have room for.
struct Needs {
    const Content& content;
    const RecordList& catalog;
    const RecordList& attributes;
};

/// The size in bytes of the smallest volume that has room; a multiple of 4096. Throws DiskImageError when none has.
std::uint64_t smallestVolume(const Needs& needs, const ClumpSizes& clumps);

/// The places in a volume of `volumeBytes`. Throws DiskImageError with the needed size when it is too small.
Geometry layOut(const Needs& needs, const ClumpSizes& clumps, std::uint64_t volumeBytes);

} // namespace velmora::diskimage::hfs
