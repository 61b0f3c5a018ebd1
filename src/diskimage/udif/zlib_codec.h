#pragma once

#include "diskimage/base/bytes.h"

#include <memory>

struct libdeflate_compressor;

namespace velmora::diskimage::udif
{

/// The level of libdeflate that stands for a zlib level from 1 to 9: its result is no larger, and it is fast.
int libdeflateLevel(int zlibLevel);

/// Compresses chunks to zlib streams. One object a thread.
class ZlibCompressor
{
public:
    /// As small as zlib at this level, 1 to 9.
    explicit ZlibCompressor(int zlibLevel);
    /// The stream, or nothing when it would not be smaller than `bytes`.
    [[nodiscard]] Bytes compress(ByteView bytes);

private:
    std::shared_ptr<libdeflate_compressor> m_compressor;
    Bytes m_stream{}; ///< kept: fresh memory for each chunk costs several percent of the time
};

/// Expands a zlib stream into exactly `size` bytes. Throws DiskImageError when it is damaged or of another length.
Bytes expandZlib(ByteView stream, std::size_t size);

} // namespace velmora::diskimage::udif
