#pragma once

#include "diskimage/base/storage.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace velmora::diskimage::hfs
{

/// A run of allocation blocks.
struct Extent {
    std::uint32_t start = 0;
    std::uint32_t count = 0;
    bool operator==(const Extent&) const = default;
};

inline constexpr std::size_t extentsInRecord = 8;
inline constexpr std::size_t extentRecordSize = 64;
inline constexpr std::size_t forkDataSize = 80;

/// Eight extents as they lie in fork data and in records of the extents and attributes trees; unused ones are 0, 0.
using ExtentRecord = std::array<Extent, extentsInRecord>;

ExtentRecord readExtentRecord(const std::uint8_t* p);
void putExtentRecord(std::uint8_t* p, const ExtentRecord& extents);

/// Where a fork lies (TN1150, "Fork Data Structure", 80 bytes).
struct ForkData {
    std::uint64_t logicalSize = 0; ///< bytes
    std::uint32_t clumpSize = 0;   ///< bytes; special files only
    std::uint32_t totalBlocks = 0; ///< of all extents, those in the extents tree included
    ExtentRecord extents{};
    bool operator==(const ForkData&) const = default;
};

ForkData readForkData(const std::uint8_t* p);
void putForkData(std::uint8_t* p, const ForkData& fork);

/// A fork in one run of blocks; all zero when there are none.
ForkData contiguousFork(std::uint64_t logicalSize, Extent extent, std::uint32_t clumpSize = 0);

/// The bytes of a fork, read through its extents, which have been checked against the volume. Shares the volume.
std::unique_ptr<Source> openFork(std::shared_ptr<const Source> volume, std::uint32_t blockSize,
                                 std::vector<Extent> extents, std::uint64_t logicalSize);

/// Writes all of `bytes` over a fork's blocks from the fork's byte `offset` on. The extents have been checked.
void writeFork(Storage& volume, std::uint32_t blockSize, const std::vector<Extent>& extents, std::uint64_t offset,
               ByteView bytes);

} // namespace velmora::diskimage::hfs
