#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/entry.h"
#include "diskimage/hfs/names.h"
#include "diskimage/hfs/overflow.h"
#include "diskimage/hfs/record_list.h"
#include "diskimage/hfs/tree_reader.h"
#include "diskimage/hfs/volume_header.h"

#include <memory>

namespace velmora::diskimage::hfs
{

/// What the metadata of a volume says, still in its own terms.
struct VolumeRecords {
    VolumeHeader header{};
    NameOrder order = NameOrder::caseFolding;
    TreeHeader catalogHeader{};
    TreeHeader attributesHeader{}; ///< nodeSize 0 when the volume has no such tree
    TreeHeader extentsHeader{};
    OverflowExtents overflow{};
    RecordList catalog{}; ///< strictly ascending
    RecordList attributes{};

    [[nodiscard]] bool isJournaled() const;
};

/// Reads the metadata of the volume that fills `volume`. Throws DiskImageError.
VolumeRecords readVolumeRecords(const std::shared_ptr<const Source>& volume);

/// The places of the catalog or of the attributes tree.
std::vector<Extent> catalogExtents(const VolumeRecords& records);
std::vector<Extent> attributesExtents(const VolumeRecords& records);

/// The entries that records describe, the root first. What they open reads from `volume`, which they share. Throws
/// DiskImageError for contradictions, for folders too deep to walk and for more attributes than memory should hold.
Entry buildEntries(const VolumeRecords& records, const std::shared_ptr<const Source>& volume);

} // namespace velmora::diskimage::hfs
