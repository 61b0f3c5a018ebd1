#pragma once

#include "diskimage/base/storage.h"

namespace velmora::fuzz
{

/// Opens an image and reads what is in it in bounded time: places on the disk, checksums, partitions; a small disk is
/// converted as well. What the file holds wrongly is refused silently.
void readImage(const diskimage::Source& file);

/// Converts a small disk whose partitions can be read to compressed and plain images, which must hold what it holds
/// beside free space, and verify.
void convertDisk(const diskimage::Source& disk);

} // namespace velmora::fuzz
