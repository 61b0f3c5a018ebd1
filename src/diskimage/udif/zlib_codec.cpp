#include "diskimage/udif/zlib_codec.h"

#include "diskimage/base/error.h"

#include <libdeflate.h>
#include <new>

namespace velmora::diskimage::udif
{

ZlibCompressor::ZlibCompressor(int level) : m_compressor(libdeflate_alloc_compressor(level), libdeflate_free_compressor)
{
    if (!m_compressor)
        throw std::bad_alloc();
}

Bytes ZlibCompressor::compress(ByteView bytes) const
{
    if (bytes.empty())
        return {};
    Bytes stream(bytes.size() - 1);
    stream.resize(
        libdeflate_zlib_compress(m_compressor.get(), bytes.data(), bytes.size(), stream.data(), stream.size()));
    return stream;
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
