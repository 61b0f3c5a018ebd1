#include "diskimage/hfs/fork.h"

#include "diskimage/base/error.h"

#include <algorithm>

namespace velmora::diskimage::hfs
{
namespace
{

/// Calls `transfer(volumeOffset, offsetInRange, length)` for each contiguous piece of a range of a fork.
template <typename Transfer>
void forEachPiece(const std::vector<Extent>& extents, const std::vector<std::uint64_t>& starts, std::uint32_t blockSize,
                  std::uint64_t offset, std::uint64_t length, Transfer transfer)
{
    auto i = static_cast<std::size_t>(std::upper_bound(starts.begin(), starts.end(), offset) - starts.begin()) - 1;
    for (std::uint64_t done = 0; done < length; ++i) {
        const auto skipped = offset + done - starts[i];
        const auto there = std::uint64_t{extents[i].count} * blockSize - skipped;
        const auto piece = std::min(there, length - done);
        transfer(std::uint64_t{extents[i].start} * blockSize + skipped, done, piece);
        done += piece;
    }
}

/// The fork's byte at which each extent begins.
std::vector<std::uint64_t> startsOf(const std::vector<Extent>& extents, std::uint32_t blockSize)
{
    std::vector<std::uint64_t> starts;
    starts.reserve(extents.size());
    std::uint64_t next = 0;
    for (const auto& extent : extents) {
        starts.push_back(next);
        next += std::uint64_t{extent.count} * blockSize;
    }
    return starts;
}

class ForkSource : public Source
{
public:
    ForkSource(std::shared_ptr<const Source> volume, std::uint32_t blockSize, std::vector<Extent> extents,
               std::uint64_t logicalSize)
        : m_volume(std::move(volume)),
          m_blockSize(blockSize),
          m_extents(std::move(extents)),
          m_starts(startsOf(m_extents, blockSize)),
          m_size(logicalSize)
    {
    }

    [[nodiscard]] std::uint64_t size() const override { return m_size; }

    void read(std::uint64_t offset, MutableByteView out) const override
    {
        if (offset > m_size || out.size() > m_size - offset) {
            throw DiskImageError("Reading " + std::to_string(out.size()) + " bytes at " + std::to_string(offset) +
                                 " reaches beyond the end of a file on the volume (" + std::to_string(m_size) +
                                 " bytes).");
        }
        if (!out.empty()) {
            forEachPiece(m_extents, m_starts, m_blockSize, offset, out.size(),
                         [&](std::uint64_t place, std::uint64_t done, std::uint64_t length) {
                             m_volume->read(place, out.subspan(done, length));
                         });
        }
    }

private:
    std::shared_ptr<const Source> m_volume;
    std::uint32_t m_blockSize;
    std::vector<Extent> m_extents;
    std::vector<std::uint64_t> m_starts;
    std::uint64_t m_size;
};

} // namespace

ExtentRecord readExtentRecord(const std::uint8_t* p)
{
    ExtentRecord extents;
    for (auto& extent : extents) {
        extent = {getBE32(p), getBE32(p + 4)};
        p += 8;
    }
    return extents;
}

void putExtentRecord(std::uint8_t* p, const ExtentRecord& extents)
{
    for (const auto& extent : extents) {
        putBE32(p, extent.start);
        putBE32(p + 4, extent.count);
        p += 8;
    }
}

ForkData readForkData(const std::uint8_t* p)
{
    return {getBE64(p), getBE32(p + 8), getBE32(p + 12), readExtentRecord(p + 16)};
}

void putForkData(std::uint8_t* p, const ForkData& fork)
{
    putBE64(p, fork.logicalSize);
    putBE32(p + 8, fork.clumpSize);
    putBE32(p + 12, fork.totalBlocks);
    putExtentRecord(p + 16, fork.extents);
}

ForkData contiguousFork(std::uint64_t logicalSize, Extent extent, std::uint32_t clumpSize)
{
    ForkData fork{logicalSize, clumpSize, extent.count, {}};
    if (extent.count > 0) {
        fork.extents[0] = extent;
    }
    return fork;
}

std::unique_ptr<Source> openFork(std::shared_ptr<const Source> volume, std::uint32_t blockSize,
                                 std::vector<Extent> extents, std::uint64_t logicalSize)
{
    return std::make_unique<ForkSource>(std::move(volume), blockSize, std::move(extents), logicalSize);
}

void writeFork(Storage& volume, std::uint32_t blockSize, const std::vector<Extent>& extents, std::uint64_t offset,
               ByteView bytes)
{
    if (!bytes.empty()) {
        forEachPiece(extents, startsOf(extents, blockSize), blockSize, offset, bytes.size(),
                     [&](std::uint64_t place, std::uint64_t done, std::uint64_t length) {
                         volume.write(place, bytes.subspan(done, length));
                     });
    }
}

} // namespace velmora::diskimage::hfs
