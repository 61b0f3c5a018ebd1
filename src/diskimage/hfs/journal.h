#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/volume_header.h"

namespace velmora::diskimage::hfs
{

/// Whether a journal holds changes that are not yet in the volume itself (TN1150, "Journal"). A journal on another
/// device, or one that cannot be read, counts as such.
bool hasPendingJournal(const Source& volume, const VolumeHeader& header);

} // namespace velmora::diskimage::hfs
