#pragma once

#include <cstdint>

/// CRC-32 values of joined pieces, without looking at the bytes again.
namespace velmora::diskimage
{

/// The CRC-32 of a piece with `first` followed by one of `secondLength` bytes with `second`.
std::uint32_t crc32Combined(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength);

/// The CRC-32 of `length` zero bytes.
std::uint32_t crc32OfZeros(std::uint64_t length);

} // namespace velmora::diskimage
