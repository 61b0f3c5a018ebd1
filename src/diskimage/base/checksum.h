#pragma once

#include "diskimage/base/bytes.h"

#include <cstdint>

namespace velmora::diskimage
{

/// Continues the CRC-32 of zlib (reflected polynomial 0xEDB88320, first and last value inverted) over `bytes`; start
/// with 0.
std::uint32_t crc32(std::uint32_t crc, ByteView bytes);

} // namespace velmora::diskimage
