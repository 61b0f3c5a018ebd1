#include "diskimage/hfs/fork_copy.h"

#include "diskimage/base/error.h"
#include "diskimage/hfs/format.h"

#include <algorithm>

namespace velmora::diskimage::hfs
{

void copyToFork(const Source& source, std::uint64_t size, const std::string& path, Storage& volume,
                std::uint32_t blockSize, const std::vector<Extent>& extents, BlockState state)
{
    constexpr std::uint64_t pieceSize = 1 << 20;
    if (source.size() != size) {
        throw DiskImageError("\"" + path + "\" has changed: it has " + std::to_string(source.size()) + " bytes, not " +
                             std::to_string(size) + ".");
    }
    // A block may be larger than a piece; its end is filled by the pieces that follow.
    const auto end = ceilDivide(size, blockSize) * blockSize;
    Bytes buffer(std::min(pieceSize, end));
    for (std::uint64_t offset = 0; offset < end; offset += buffer.size()) {
        const auto piece = MutableByteView(buffer).first(std::min<std::uint64_t>(buffer.size(), end - offset));
        const auto fromSource = offset < size ? std::min<std::uint64_t>(piece.size(), size - offset) : 0;
        source.read(offset, piece.first(fromSource));
        std::fill(piece.begin() + static_cast<std::ptrdiff_t>(fromSource), piece.end(), std::uint8_t{0});
        const bool isHole = state == BlockState::zeros &&
                            std::all_of(piece.begin(), piece.end(), [](std::uint8_t byte) { return byte == 0; });
        if (!isHole) {
            writeFork(volume, blockSize, extents, offset, piece);
        }
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
