#include "diskimage/udif/zlib_codec.h"

#include "diskimage/base/error.h"

#include <algorithm>
#include <array>
#include <libdeflate.h>
#include <new>

namespace velmora::diskimage::udif
{

namespace
{

/// For each of zlib's levels the fastest of libdeflate's that makes an application no larger than zlib does; measured,
/// with a reserve for other content (docs/performance.md).
constexpr std::array<int, 9> fastLevels{1, 2, 2, 3, 5, 5, 6, 6, 6};

} // namespace

int libdeflateLevel(int zlibLevel)
{
    return fastLevels.at(static_cast<std::size_t>(zlibLevel - 1));
}

ZlibCompressor::ZlibCompressor(int zlibLevel)
    : m_compressor(libdeflate_alloc_compressor(libdeflateLevel(zlibLevel)), libdeflate_free_compressor)
{
    if (!m_compressor)
        throw std::bad_alloc();
}

Bytes ZlibCompressor::compress(ByteView bytes)
{
    if (bytes.empty())
        return {};
    m_stream.resize(std::max(m_stream.size(), bytes.size()));
    const auto size =
        libdeflate_zlib_compress(m_compressor.get(), bytes.data(), bytes.size(), m_stream.data(), bytes.size() - 1);
    return {m_stream.begin(), m_stream.begin() + static_cast<std::ptrdiff_t>(size)};
}

Bytes expandZlib(ByteView stream, std::size_t size)
{
    const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> decompressor(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    if (!decompressor)
        throw std::bad_alloc();
    Bytes bytes(size);
    const auto result = libdeflate_zlib_decompress(decompressor.get(), stream.data(), stream.size(), bytes.data(),
                                                   bytes.size(), nullptr);
    if (result != LIBDEFLATE_SUCCESS)
        throw DiskImageError("the compressed data are damaged");
    return bytes;
}

} // namespace velmora::diskimage::udif
