#pragma once

#include "diskimage/hfs/entry.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace velmora::fuzz
{

/// What is remembered of an entry, to be compared with what it is later.
struct EntryDigest {
    diskimage::hfs::EntryKind kind = diskimage::hfs::EntryKind::file;
    diskimage::hfs::CatalogId id = 0;
    std::uint32_t mode = 0;
    std::uint64_t dataSize = 0;
    std::uint64_t resourceSize = 0;
    std::uint32_t crc = 0; ///< of attributes, link target and the first bytes of both forks
    bool operator==(const EntryDigest&) const = default;
};

/// Reads everything below a folder, of each fork the first and last bytes, and returns it by path ("/folder/name").
std::map<std::string, EntryDigest> contentOf(const diskimage::hfs::Entry& root);

/// The faults of the volume on a disk, which may have the wrapper of old systems around it.
std::vector<std::string> faultsOn(const diskimage::Source& disk);

} // namespace velmora::fuzz
