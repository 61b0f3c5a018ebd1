#pragma once

#include "diskimage/base/storage.h"
#include "diskimage/hfs/entry.h"
#include "diskimage/hfs/fork.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace velmora::diskimage::hfs
{

/// Fills the extents with the bytes of a source, piece by piece, and the rest of the last block with zeros. Throws
/// DiskImageError, naming `path`, when the source has another size than `size`.
void copyToFork(const Source& source, std::uint64_t size, const std::string& path, Storage& volume,
                std::uint32_t blockSize, const std::vector<Extent>& extents);

/// Copies forks to a new volume, where every byte that nobody wrote is zero: holes of a source stay holes, and so do
/// long runs of zeros that pass through memory.
class NewForkCopy
{
public:
    /// `stopped`, which may be empty, is asked between the pieces of large forks; true ends the copy with
    /// DiskImageError.
    NewForkCopy(Storage& volume, const std::function<bool()>& stopped) : m_volume(volume), m_stopped(stopped) {}

    /// Copies all of a source to byte `offset` of the volume. Throws as copyToFork() does.
    void copy(const Source& source, std::uint64_t size, const std::string& path, std::uint64_t offset);

    /// The CRC-32 of everything copied so far, holes included: it does not depend on how the copy was made.
    [[nodiscard]] std::uint32_t checksum() const { return m_checksum; }

private:
    void copyPiece(const Source& source, ByteRange piece, std::uint64_t offset);

    Storage& m_volume;
    const std::function<bool()>& m_stopped;
    Bytes m_buffer{};
    std::uint32_t m_checksum = 0;
};

/// Opens the bytes of an entry's data fork: the file's, or the link's target.
std::unique_ptr<Source> openDataOf(const Entry& entry);

} // namespace velmora::diskimage::hfs
