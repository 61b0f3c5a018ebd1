#include "diskimage/base/checksum.h"

#include <libdeflate.h>

namespace velmora::diskimage
{

std::uint32_t crc32(std::uint32_t crc, ByteView bytes)
{
    // libdeflate takes a null buffer as a request for the first value.
    return bytes.empty() ? crc : libdeflate_crc32(crc, bytes.data(), bytes.size());
}

} // namespace velmora::diskimage
