#include "diskimage/hfs/fork_copy.h"

#include "diskimage/base/checksum.h"
#include "diskimage/base/crc_algebra.h"
#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"

#include <algorithm>

namespace velmora::diskimage::hfs
{
namespace
{

constexpr std::uint64_t pieceSize = 1 << 20;

void requireSize(const Source& source, std::uint64_t size, const std::string& path)
{
    if (source.size() != size) {
        throw DiskImageError("\"" + path + "\" has changed: it has " + std::to_string(source.size()) + " bytes, not " +
                             std::to_string(size) + ".");
    }
}

} // namespace

void copyToFork(const Source& source, std::uint64_t size, const std::string& path, Storage& volume,
                std::uint32_t blockSize, const std::vector<Extent>& extents)
{
    requireSize(source, size, path);
    // A block may be larger than a piece; its end is filled by the pieces that follow.
    const auto end = ceilDivide(size, blockSize) * blockSize;
    Bytes buffer(std::min(pieceSize, end));
    for (std::uint64_t offset = 0; offset < end; offset += buffer.size()) {
        const auto piece = MutableByteView(buffer).first(std::min<std::uint64_t>(buffer.size(), end - offset));
        const auto fromSource = offset < size ? std::min<std::uint64_t>(piece.size(), size - offset) : 0;
        source.read(offset, piece.first(fromSource));
        std::fill(piece.begin() + static_cast<std::ptrdiff_t>(fromSource), piece.end(), std::uint8_t{0});
        writeFork(volume, blockSize, extents, offset, piece);
    }
}

void NewForkCopy::copy(const Source& source, std::uint64_t size, const std::string& path, std::uint64_t offset)
{
    requireSize(source, size, path);
    for (std::uint64_t done = 0; done < size;) {
        if (m_stopped && m_stopped()) {
            throw DiskImageError("Writing \"" + path + "\" was stopped.");
        }
        const auto data = source.nextData(done);
        const auto hole = data.start - done;
        m_checksum = hole > 0 ? crc32Combined(m_checksum, crc32OfZeros(hole), hole) : m_checksum;
        const ByteRange piece{data.start, std::min(data.end, data.start + pieceSize)};
        copyPiece(source, piece, offset + piece.start);
        done = piece.end;
    }
}

/// What the system copied is read for the checksum while it is still in the system's cache.
void NewForkCopy::copyPiece(const Source& source, ByteRange piece, std::uint64_t offset)
{
    m_buffer.resize(std::max<std::size_t>(m_buffer.size(), piece.length()));
    const auto bytes = MutableByteView(m_buffer).first(piece.length());
    const auto copied = m_volume.copyFrom(source, piece, offset);
    source.read(piece.start, bytes);
    m_checksum = crc32(m_checksum, bytes);
    const auto rest = bytes.subspan(copied);
    if (!isZero(rest)) {
        m_volume.write(offset + copied, rest);
    }
}

std::unique_ptr<Source> openDataOf(const Entry& entry)
{
    if (entry.kind == EntryKind::symlink) {
        const auto target = viewOf(entry.linkTarget);
        return memoryStorage(Bytes(target.begin(), target.end()));
    }
    return entry.openData();
}

} // namespace velmora::diskimage::hfs
