#pragma once

#include "diskimage/hfs/fork.h"
#include "diskimage/hfs/record_list.h"
#include "diskimage/hfs/volume_header.h"

#include <compare>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// Extents beyond the first eight of a fork, as the extents-overflow tree holds them (TN1150, "Extents Overflow File").
namespace velmora::diskimage::hfs
{

enum class ForkType : std::uint8_t { data = 0x00, resource = 0xFF };

/// In the order of the tree.
struct OverflowKey {
    std::uint32_t fileId = 0;
    ForkType type = ForkType::data;
    std::uint32_t startBlock = 0; ///< blocks of the fork before these
    auto operator<=>(const OverflowKey&) const = default;
};

using OverflowExtents = std::map<OverflowKey, ExtentRecord>;

/// Throws DiskImageError for records of a wrong length.
OverflowExtents readOverflow(const RecordList& records);
RecordList encodeOverflow(const OverflowExtents& overflow);

/// All extents of a fork, checked against the volume and against the fork's own numbers. `name` is for messages. Throws
/// DiskImageError.
std::vector<Extent> resolveFork(const ForkData& fork, std::uint32_t fileId, ForkType type,
                                const OverflowExtents& overflow, const VolumeHeader& header, const std::string& name);

/// Puts extents into fork data, what exceeds it into the overflow records, which must hold none of this fork.
void storeExtents(ForkData& fork, const std::vector<Extent>& extents, std::uint32_t fileId, ForkType type,
                  OverflowExtents& overflow);

/// Removes the overflow records of a fork.
void eraseOverflow(OverflowExtents& overflow, std::uint32_t fileId, ForkType type);

} // namespace velmora::diskimage::hfs
