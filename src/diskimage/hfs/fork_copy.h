#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/entry.h"
#include "diskimage/hfs/fork.h"

#include <cstdint>
#include <string>
#include <vector>

namespace velmora::diskimage::hfs
{

/// What lies in the blocks that are to be filled.
enum class BlockState {
    zeros, ///< nothing was ever written: zeros need not be written and stay holes
    unknown
};

/// Fills the extents with the bytes of a source, piece by piece, and the rest of the last block with zeros. Throws
/// DiskImageError, naming `path`, when the source has another size than `size`.
void copyToFork(const Source& source, std::uint64_t size, const std::string& path, Storage& volume,
                std::uint32_t blockSize, const std::vector<Extent>& extents, BlockState state);

/// Opens the bytes of an entry's data fork: the file's, or the link's target.
std::unique_ptr<Source> openDataOf(const Entry& entry);

} // namespace velmora::diskimage::hfs
