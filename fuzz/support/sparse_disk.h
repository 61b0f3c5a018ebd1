#pragma once

#include "diskimage/base/bytes.h"

#include <cstddef>

/// Disks as fuzz inputs: mostly zeros, they are kept as the number of sectors (16 bits, big-endian), a bit for each
/// sector (the highest of a byte first) that tells whether it follows, and these sectors one after another. What is
/// missing reads as zeros.
namespace velmora::fuzz
{

/// Larger disks are cut.
inline constexpr std::size_t mostSectors = 1280;

diskimage::Bytes unpackDisk(diskimage::ByteView input);
/// A disk of whole sectors as input.
diskimage::Bytes packDisk(diskimage::ByteView disk);

} // namespace velmora::fuzz
