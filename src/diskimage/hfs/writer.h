#pragma once

#include "diskimage/hfs/entry.h"

#include <cstdint>
#include <functional>

namespace velmora::diskimage::hfs
{

/// Sizes of the special files: initial size and growth unit, in allocation blocks of 4096 bytes, as in the formatter's
/// argument "c=64,a=16,e=16". 0 takes the stock value for the volume's size.
struct ClumpSizes {
    std::uint32_t catalogBlocks = 64;
    std::uint32_t attributesBlocks = 16;
    std::uint32_t extentsBlocks = 16;
};

/// Reads such an argument ("c=64,a=16,e=16", with or without "-c "). Throws DiskImageError naming the wrong part.
ClumpSizes parseClumpSizes(std::string_view text);

/// What a new volume is made from beside its content.
struct VolumeOptions {
    ClumpSizes clumps{};
    std::int64_t created = 0;        ///< Unix seconds: volume and root folder
    std::uint64_t identifier = 0;    ///< the volume's 64-bit identifier; 0 lets it be derived from the content tree
    std::function<bool()> stopped{}; ///< asked now and then while contents are copied; true ends that with an error
};

/// Bytes of the smallest volume (a multiple of 4096) that holds `root` with all of its metadata. Throws DiskImageError
/// for names that HFS+ cannot hold and for two names in a folder that it holds for equal (naming both).
std::uint64_t requiredBytes(const Entry& root, const VolumeOptions& options);

/// Fills the whole of `volume` (its size a multiple of 4096) with a new HFS+ volume holding `root`, whose name is the
/// volume's, and sets the ids in `root`. `volume` must read as zeros: zeros are not written, so free space stays a
/// hole. Contents are streamed once, in the order of the ids, or copied by the system where both sides are files.
/// Returns the CRC-32 of all forks, one after the other. Throws DiskImageError, when the size does not suffice with the
/// needed size.
std::uint32_t writeVolume(Storage& volume, Entry& root, const VolumeOptions& options);

} // namespace velmora::diskimage::hfs
