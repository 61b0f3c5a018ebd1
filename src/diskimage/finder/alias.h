#pragma once

#include "diskimage/base/bytes.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::diskimage::finder
{

/// What an alias record of a file on an HFS+ volume says (version 2, 150 bytes and tagged values, big-endian).
struct AliasTarget {
    std::string volumeName{};               ///< POSIX form, UTF-8
    std::int64_t volumeCreated = 0;         ///< Unix seconds
    std::vector<std::string> path{};        ///< folders from the root, then the file; POSIX names
    std::vector<std::uint32_t> folderIds{}; ///< ids of those folders, in the same order
    std::uint32_t fileId = 0;
    std::int64_t fileCreated = 0; ///< Unix seconds
    bool operator==(const AliasTarget&) const = default;
};

/// The record's bytes.
Bytes writeAlias(const AliasTarget& target);

/// Reads a version 2 record; hostile bytes end in DiskImageError.
AliasTarget readAlias(ByteView record);

} // namespace velmora::diskimage::finder
